#import "cocoa/HostDictionary.h"

namespace epg::cocoa {

std::recursive_mutex& hostDictionaryMutex() {
  // Left to the end of the process: detached threads may still use it while static objects are destroyed.
  static std::recursive_mutex* const mutex = new std::recursive_mutex;
  return *mutex;
}

id objectInHostDictionary(NSDictionary* dictionary, id key) {
  const std::lock_guard<std::recursive_mutex> lock(hostDictionaryMutex());
  return [[[dictionary objectForKey:key] retain] autorelease];
}

void setObjectInHostDictionary(NSMutableDictionary* dictionary, id object, id key) {
  const std::lock_guard<std::recursive_mutex> lock(hostDictionaryMutex());
  objectInHostDictionary(dictionary, key);
  [dictionary setObject:object forKey:key];
}

void removeObjectInHostDictionary(NSMutableDictionary* dictionary, id key) {
  const std::lock_guard<std::recursive_mutex> lock(hostDictionaryMutex());
  objectInHostDictionary(dictionary, key);
  [dictionary removeObjectForKey:key];
}

}  // namespace epg::cocoa
