#pragma once

#import <Foundation/Foundation.h>

#include <utility>
#include <vector>

/// Dictionaries that a host gave and goes on using. The threads of saves and exports read them while the main thread,
/// through the plug-in's operations, changes them. Where a dictionary is one of the platform's own classes, these uses
/// of the plug-in's take turns; a host that changes it by itself meanwhile is on its own. A dictionary of a class of
/// the host's own is called as it is: whether it can be used from several threads is the host's affair, and it may hold
/// a lock of its own, which must not meet one of the plug-in's.
namespace epg::cocoa {

/// Whether the plug-in's uses of the dictionary take turns.
bool isPlatformDictionary(NSDictionary* dictionary);

/// Keys and objects as they stand together at one moment, autoreleased.
std::vector<std::pair<id, id>> entriesOfHostDictionary(NSDictionary* dictionary);
/// Autoreleased, so that it outlives its removal on another thread.
id objectInHostDictionary(NSDictionary* dictionary, id key);
/// These raise the platform's own exception when the host's dictionary cannot be changed. What stood under the key
/// goes only when the pool drains, where nobody waits for it.
void setObjectInHostDictionary(NSMutableDictionary* dictionary, id object, id key);
/// Keys and objects, all in one turn.
void setObjectsInHostDictionary(NSMutableDictionary* dictionary, const std::vector<std::pair<id, id>>& entries);
void removeObjectInHostDictionary(NSMutableDictionary* dictionary, id key);

}  // namespace epg::cocoa
