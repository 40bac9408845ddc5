#pragma once

#import <Foundation/Foundation.h>

#include <mutex>

/// Dictionaries that a host gave and goes on using. The threads of saves and exports read them while the main thread,
/// through the plug-in's operations, changes them; these uses of the plug-in's own take turns. A host that changes one
/// by itself meanwhile is on its own.
namespace epg::cocoa {

/// Held while any of these dictionaries is read or changed. Recursive, as one may be inside another. Whoever holds it
/// calls nothing of the host's but the operations of its dictionaries and of the values in them.
std::recursive_mutex& hostDictionaryMutex();

/// Autoreleased, so that it outlives its removal on another thread.
id objectInHostDictionary(NSDictionary* dictionary, id key);
/// These raise the platform's own exception when the host's dictionary cannot be changed. What stood under the key
/// goes only when the pool drains, where nobody waits for it.
void setObjectInHostDictionary(NSMutableDictionary* dictionary, id object, id key);
void removeObjectInHostDictionary(NSMutableDictionary* dictionary, id key);

}  // namespace epg::cocoa
