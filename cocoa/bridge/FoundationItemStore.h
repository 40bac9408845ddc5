#pragma once

#import <Foundation/Foundation.h>

#include <memory>
#include <string>

#include "model/EPGItemStore.h"

namespace epg::cocoa {

/// The item store as a dictionary of the host's, used in place. The plug-in's own uses of a dictionary of the
/// platform's classes are safe from one another (cocoa/bridge/HostDictionary.h); a host that changes it while an export
/// runs, or gives one of a class of its own, must make it one that can be read meanwhile.
class FoundationItemStore : public EPGItemStore {
 public:
  explicit FoundationItemStore(NSMutableDictionary* dictionary) : dictionary_([dictionary retain]) {}
  ~FoundationItemStore() override { [dictionary_ release]; }

  /// Throws a `HostException` when the dictionary raises an exception; from the others, which only the host's own calls
  /// lead to, the platform's exception comes as it is.
  std::shared_ptr<EPGItem> item(const std::string& uniqueID) const override;
  void setItem(const SharedText& uniqueID, std::shared_ptr<EPGItem> item) override;
  void removeItem(const std::string& uniqueID) override;
  std::shared_ptr<const EPGItemStoreSnapshot> snapshot() const override;

 private:
  NSMutableDictionary* dictionary_;
};

}  // namespace epg::cocoa
