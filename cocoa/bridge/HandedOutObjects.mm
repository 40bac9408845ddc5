#import "cocoa/bridge/HandedOutObjects.h"

#include <utility>

#import "cocoa/bridge/FoundationValues.h"

namespace epg::cocoa {

// No object is made or let go of under the lock: it may be the host's, and may come back here.

HandedOutObjects::~HandedOutObjects() {
  for (const auto& [key, kept] : kept_) {
    [kept.object release];
  }
}

id HandedOutObjects::knownObject(const std::string& key, const PropertyList& value) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto known = kept_.find(key);
  return known != kept_.end() && known->second.value == value ? [[known->second.object retain] autorelease] : nil;
}

id HandedOutObjects::object(const std::string& key, const PropertyList& value) {
  if (id known = knownObject(key, value)) {
    return known;
  }
  Kept kept{value, [toObject(value) retain]};
  id object = nil;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    Kept& known = kept_[key];
    // Another thread may have made one of the same value, which is in use by now.
    if (known.object == nil || known.value != kept.value) {
      std::swap(known, kept);
    }
    object = [known.object retain];
  }
  [kept.object autorelease];
  return [object autorelease];
}

void HandedOutObjects::forget(const std::string& key) {
  Kept kept;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto known = kept_.find(key);
    if (known == kept_.end()) {
      return;
    }
    std::swap(known->second, kept);
    kept_.erase(known);
  }
  [kept.object autorelease];
}

}  // namespace epg::cocoa
