#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <vector>

#include "model/EPGItem.h"

namespace epg::cocoa {

/// An EPG item that is a dictionary of the host's, read and changed in place. Any thread, as far as the plug-in's own
/// uses of the platform's dictionaries go (cocoa/bridge/HostDictionary.h).
class FoundationItem : public EPGItem {
 public:
  explicit FoundationItem(NSDictionary* dictionary);
  ~FoundationItem() override;

  /// The very object, autoreleased.
  NSMutableDictionary* dictionary() const;

  /// Entries under keys that are no strings are there too, as foreign values.
  /// Throws a `HostException` when the dictionary raises an exception.
  PropertyListDictionary values() const override;
  /// Raises the platform's own exception when the host's dictionary cannot be changed.
  void setValues(const std::vector<PropertyListDictionary::Entry>& entries) override;
  void remove(const std::string& key) override;

 private:
  NSMutableDictionary* dictionary_;
};

}  // namespace epg::cocoa
