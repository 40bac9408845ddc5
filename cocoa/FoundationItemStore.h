#pragma once

#import <Foundation/Foundation.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "plugin/EPGItemStore.h"

namespace epg::cocoa {

/// The item store as a dictionary of the host's, used in place. The plug-in's own uses are safe from one another
/// (cocoa/HostDictionary.h); a host that changes the dictionary while an export runs must make it one that can be read
/// meanwhile.
class FoundationItemStore : public EPGItemStore {
 public:
  explicit FoundationItemStore(NSMutableDictionary* dictionary) : dictionary_([dictionary retain]) {}
  ~FoundationItemStore() override { [dictionary_ release]; }

  std::shared_ptr<EPGItem> item(const std::string& uniqueID) const override;
  void setItem(const std::string& uniqueID, std::shared_ptr<EPGItem> item) override;
  void removeItem(const std::string& uniqueID) override;
  std::size_t size() const override;
  std::vector<std::string> uniqueIDs() const override;
  EPGItemStoreSnapshot snapshot() const override;

 private:
  NSMutableDictionary* dictionary_;
};

}  // namespace epg::cocoa
