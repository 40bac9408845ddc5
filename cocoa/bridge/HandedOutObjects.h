#pragma once

#import <Foundation/Foundation.h>

#include <mutex>
#include <string>
#include <unordered_map>

#include "plist/PropertyList.h"

namespace epg::cocoa {

/// The objects that an item has handed out for its values. Hosts rely on a dictionary to keep what it holds, so an
/// object lives here, and is the one handed out again, for as long as its value stands. Any thread.
class HandedOutObjects {
 public:
  HandedOutObjects() = default;
  HandedOutObjects(const HandedOutObjects&) = delete;
  HandedOutObjects& operator=(const HandedOutObjects&) = delete;
  ~HandedOutObjects();

  /// The object for what stands under the key now, autoreleased.
  id object(const std::string& key, const PropertyList& value);
  /// What was handed out under the key lives on until the pool drains.
  void forget(const std::string& key);

 private:
  struct Kept {
    PropertyList value;  ///< What the object was made of.
    id object = nil;
  };

  id knownObject(const std::string& key, const PropertyList& value);

  std::mutex mutex_;
  std::unordered_map<std::string, Kept> kept_;
};

}  // namespace epg::cocoa
