#import "cocoa/EPGDorvaSelinItemStore.h"

#include <algorithm>
#include <optional>
#include <utility>

#import "cocoa/EPGDorvaSelinItem.h"
#import "cocoa/FoundationItemStore.h"
#import "cocoa/FoundationValues.h"

using epg::cocoa::optionalString;
using epg::cocoa::toString;

namespace {

id objectOfEntry(const epg::EPGItemStoreEntry& entry) {
  return entry.item != nullptr ? epg::cocoa::objectOfItem(entry.item) : epg::cocoa::toObject(entry.value);
}

epg::EPGItemStoreEntry entryOfObject(id object) {
  epg::EPGItemStoreEntry entry;
  entry.item = epg::cocoa::itemOfObject(object);
  if (entry.item == nullptr) {
    entry.value = epg::cocoa::fromObject(object);
  }
  return entry;
}

NSEnumerator* keyEnumeratorOfSnapshot(const epg::EPGItemStoreSnapshot& snapshot) {
  NSMutableArray* keys = [NSMutableArray arrayWithCapacity:snapshot.size()];
  for (const auto& [uniqueID, entry] : snapshot) {
    [keys addObject:toString(uniqueID)];
  }
  return [keys objectEnumerator];
}

}  // namespace

@interface EPGDorvaSelinItemStore ()
- (id)initWithStore:(const std::shared_ptr<epg::EPGItemStore>&)store;
- (const std::shared_ptr<epg::EPGItemStore>&)store;
@end

@implementation EPGDorvaSelinItemStore

// Of its own accord: the inherited initialisers all end in one of those below.
- (id)initWithStore:(const std::shared_ptr<epg::EPGItemStore>&)store {
  _store = new std::shared_ptr<epg::EPGItemStore>(store);
  _handedOut = [[NSMutableDictionary alloc] init];
  _handedOutMutex = new std::mutex;
  return self;
}

- (id)init {
  return [self initWithStore:std::make_shared<epg::EPGItemStore>()];
}

- (id)initWithCapacity:(NSUInteger)capacity {
  (void)capacity;
  return [self init];
}

- (id)initWithObjects:(const id[])objects forKeys:(const id<NSCopying>[])keys count:(NSUInteger)count {
  self = [self init];
  for (NSUInteger index = 0; self != nil && index < count; ++index) {
    [self setObject:objects[index] forKey:keys[index]];
  }
  return self;
}

- (void)dealloc {
  delete _store;
  [_handedOut release];
  delete _handedOutMutex;
  [super dealloc];
}

- (const std::shared_ptr<epg::EPGItemStore>&)store {
  return *_store;
}

- (NSUInteger)count {
  return (*_store)->snapshot().size();
}

- (id)objectForKey:(id)key {
  const std::optional<std::string> uniqueID = optionalString(key);
  const std::optional<epg::EPGItemStoreEntry> entry = uniqueID ? (*_store)->entry(*uniqueID) : std::nullopt;
  if (!entry) {
    return nil;
  }
  id object = objectOfEntry(*entry);
  // A dictionary keeps what it hands out, and hosts rely on it.
  const std::lock_guard<std::mutex> lock(*_handedOutMutex);
  [_handedOut setObject:object forKey:key];
  return object;
}

- (NSEnumerator*)keyEnumerator {
  return keyEnumeratorOfSnapshot((*_store)->snapshot());
}

- (void)setObject:(id)object forKey:(id<NSCopying>)key {
  const std::optional<std::string> uniqueID = optionalString(key);
  if (object == nil || !uniqueID) {
    [NSException raise:NSInvalidArgumentException
                format:@"The item store takes an item under an EPG unique ID, not %@ under %@", object, key];
  }
  (*_store)->setEntry(*uniqueID, entryOfObject(object));
}

- (void)removeObjectForKey:(id)key {
  if (const std::optional<std::string> uniqueID = optionalString(key)) {
    (*_store)->removeEntry(*uniqueID);
    const std::lock_guard<std::mutex> lock(*_handedOutMutex);
    [[[_handedOut objectForKey:key] retain] autorelease];
    [_handedOut removeObjectForKey:key];
  }
}

// GNUstep's own copies would copy the values too.

- (id)copyWithZone:(NSZone*)zone {
  return [[NSDictionary allocWithZone:zone] initWithDictionary:self];
}

- (id)mutableCopyWithZone:(NSZone*)zone {
  return [[NSMutableDictionary allocWithZone:zone] initWithDictionary:self];
}

- (Class)classForCoder {
  return [NSMutableDictionary class];
}

@end

@interface EPGDorvaSelinItemStoreSnapshot ()
- (id)initWithSnapshot:(epg::EPGItemStoreSnapshot)snapshot;
- (const epg::EPGItemStoreSnapshot&)snapshot;
@end

@implementation EPGDorvaSelinItemStoreSnapshot

// Of its own accord: the inherited initialisers all end in one of those below.
- (id)initWithSnapshot:(epg::EPGItemStoreSnapshot)snapshot {
  _snapshot = new epg::EPGItemStoreSnapshot(std::move(snapshot));
  return self;
}

- (id)init {
  return [self initWithSnapshot:epg::EPGItemStoreSnapshot()];
}

- (id)initWithObjects:(const id[])objects forKeys:(const id<NSCopying>[])keys count:(NSUInteger)count {
  NSDictionary* dictionary = [NSDictionary dictionaryWithObjects:objects forKeys:keys count:count];
  return [self initWithSnapshot:epg::cocoa::snapshotOfObject(dictionary)];
}

- (void)dealloc {
  delete _snapshot;
  [super dealloc];
}

- (const epg::EPGItemStoreSnapshot&)snapshot {
  return *_snapshot;
}

- (NSUInteger)count {
  return _snapshot->size();
}

- (id)objectForKey:(id)key {
  const std::optional<std::string> uniqueID = optionalString(key);
  const auto found = std::find_if(_snapshot->begin(), _snapshot->end(),
                                  [&](const auto& entry) { return uniqueID && entry.first == *uniqueID; });
  return found != _snapshot->end() ? objectOfEntry(found->second) : nil;
}

- (NSEnumerator*)keyEnumerator {
  return keyEnumeratorOfSnapshot(*_snapshot);
}

- (id)copyWithZone:(NSZone*)zone {
  (void)zone;
  return [self retain];
}

- (id)mutableCopyWithZone:(NSZone*)zone {
  return [[NSMutableDictionary allocWithZone:zone] initWithDictionary:self];
}

- (Class)classForCoder {
  return [NSDictionary class];
}

@end

namespace epg::cocoa {

NSMutableDictionary* objectOfStore(const std::shared_ptr<EPGItemStore>& store) {
  if (const FoundationItemStore* hosts = dynamic_cast<const FoundationItemStore*>(store.get())) {
    return hosts->dictionary();
  }
  return store != nullptr ? [[[EPGDorvaSelinItemStore alloc] initWithStore:store] autorelease] : nil;
}

std::shared_ptr<EPGItemStore> storeOfObject(NSMutableDictionary* object) {
  if (object == nil) {
    return nullptr;
  }
  if ([object isKindOfClass:[EPGDorvaSelinItemStore class]]) {
    return [static_cast<EPGDorvaSelinItemStore*>(object) store];
  }
  return std::make_shared<FoundationItemStore>(object);
}

NSDictionary* objectOfSnapshot(EPGItemStoreSnapshot snapshot) {
  return [[[EPGDorvaSelinItemStoreSnapshot alloc] initWithSnapshot:std::move(snapshot)] autorelease];
}

EPGItemStoreSnapshot snapshotOfObject(NSDictionary* object) {
  if ([object isKindOfClass:[EPGDorvaSelinItemStoreSnapshot class]]) {
    return [static_cast<EPGDorvaSelinItemStoreSnapshot*>(object) snapshot];
  }
  if ([object isKindOfClass:[EPGDorvaSelinItemStore class]]) {
    return [static_cast<EPGDorvaSelinItemStore*>(object) store]->snapshot();
  }
  EPGItemStoreSnapshot snapshot;
  snapshot.reserve([object count]);
  NSEnumerator* keys = [object keyEnumerator];
  while (id key = [keys nextObject]) {
    if ([key isKindOfClass:[NSString class]]) {
      snapshot.emplace_back(fromString(key), entryOfObject([object objectForKey:key]));
    } else {
      snapshot.emplace_back(fromString([key description]), EPGItemStoreEntry{nullptr, foreignObject(key)});
    }
  }
  std::sort(snapshot.begin(), snapshot.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  return snapshot;
}

}  // namespace epg::cocoa
