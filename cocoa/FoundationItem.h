#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <vector>

#include "model/EPGItem.h"

namespace epg::cocoa {

/// An EPG item that is a dictionary of the host's, read and changed in place. As safe across threads as the host's
/// own use of its dictionary.
class FoundationItem : public EPGItem {
 public:
  explicit FoundationItem(NSDictionary* dictionary);
  ~FoundationItem() override;

  /// The very object, autoreleased.
  NSMutableDictionary* dictionary() const;

  /// Throws std::runtime_error with the platform's description when the dictionary raises an exception.
  Values values() const override;
  /// Raises the platform's own exception when the host's dictionary cannot be changed.
  void setValues(const std::vector<PropertyListDictionary::Entry>& entries) override;
  void remove(const std::string& key) override;

 private:
  NSMutableDictionary* dictionary_;
};

}  // namespace epg::cocoa
