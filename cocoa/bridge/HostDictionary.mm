#import "cocoa/bridge/HostDictionary.h"

#include <mutex>

#import "cocoa/bridge/ExceptionGuard.h"

namespace epg::cocoa {

namespace {

/// Recursive, as a host may observe a change and look at what was changed.
std::recursive_mutex& platformDictionaryMutex() {
  // Left to the end of the process: detached threads may still use it while static objects are destroyed.
  static std::recursive_mutex* const mutex = new std::recursive_mutex;
  return *mutex;
}

/// The classes behind the platform's mutable dictionaries, which differ by the way one is made.
NSSet* platformClasses() {
  static NSSet* const classes = [] {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSMutableDictionary* empty = [NSMutableDictionary dictionary];
    NSMutableDictionary* copied = [[[NSDictionary dictionaryWithObject:@"" forKey:@""] mutableCopy] autorelease];
    NSMutableDictionary* given = [NSMutableDictionary dictionaryWithDictionary:copied];
    NSMutableSet* result = [[NSMutableSet alloc] initWithObjects:[empty class], [copied class], [given class], nil];
#ifdef __APPLE__
    CFMutableDictionaryRef bridged =
        CFDictionaryCreateMutable(nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
    [result addObject:[reinterpret_cast<id>(bridged) class]];
    CFRelease(bridged);
#endif
    [pool drain];
    return result;
  }();
  return classes;
}

/// Runs the body while no other of the plug-in's threads uses a dictionary of the platform's own. A key of the host's
/// may raise an exception, which passes no destructors where the runtime is that of 32 bits: the lock is let go of
/// first.
template <typename Body>
void inTurn(NSDictionary* dictionary, const Body& body) {
  if (!isPlatformDictionary(dictionary)) {
    body();
    return;
  }
  NSException* raised = nil;
  {
    const std::lock_guard<std::recursive_mutex> turn(platformDictionaryMutex());
    raised = exceptionRaisedBy(body);
  }
  if (raised != nil) [raised raise];
}

void replaceObject(NSMutableDictionary* dictionary, id object, id key) {
  [[[dictionary objectForKey:key] retain] autorelease];
  [dictionary setObject:object forKey:key];
}

}  // namespace

bool isPlatformDictionary(NSDictionary* dictionary) {
  return [platformClasses() containsObject:[dictionary class]] != NO;
}

std::vector<std::pair<id, id>> entriesOfHostDictionary(NSDictionary* dictionary) {
  std::vector<std::pair<id, id>> entries;
  inTurn(dictionary, [&] {
    entries.reserve([dictionary count]);
    NSEnumerator* keys = [dictionary keyEnumerator];
    while (id key = [keys nextObject]) {
      // Nothing where a host's dictionary has lost the key since it was asked for them.
      if (id object = [dictionary objectForKey:key]) {
        entries.emplace_back([[key retain] autorelease], [[object retain] autorelease]);
      }
    }
  });
  return entries;
}

id objectInHostDictionary(NSDictionary* dictionary, id key) {
  id object = nil;
  inTurn(dictionary, [&] { object = [[[dictionary objectForKey:key] retain] autorelease]; });
  return object;
}

void setObjectInHostDictionary(NSMutableDictionary* dictionary, id object, id key) {
  inTurn(dictionary, [&] { replaceObject(dictionary, object, key); });
}

void setObjectsInHostDictionary(NSMutableDictionary* dictionary, const std::vector<std::pair<id, id>>& entries) {
  inTurn(dictionary, [&] {
    for (const auto& [key, object] : entries) replaceObject(dictionary, object, key);
  });
}

void removeObjectInHostDictionary(NSMutableDictionary* dictionary, id key) {
  inTurn(dictionary, [&] {
    [[[dictionary objectForKey:key] retain] autorelease];
    [dictionary removeObjectForKey:key];
  });
}

}  // namespace epg::cocoa
