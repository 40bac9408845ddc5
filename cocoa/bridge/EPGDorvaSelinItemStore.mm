#import "cocoa/bridge/EPGDorvaSelinItemStore.h"

#include <optional>
#include <utility>
#include <vector>

#import "cocoa/bridge/EPGDorvaSelinItem.h"
#import "cocoa/bridge/FoundationItemStore.h"
#import "cocoa/bridge/FoundationValues.h"
#import "cocoa/bridge/HostDictionary.h"
#import "cocoa/bridge/HostException.h"
#include "store/ShardedItemStore.h"

using epg::cocoa::calledByHost;
using epg::cocoa::objectOfRecord;
using epg::cocoa::optionalString;
using epg::cocoa::toString;

namespace {

epg::EPGItemStoreEntry entryOfObject(id object) {
  epg::EPGItemStoreEntry entry;
  entry.item = epg::cocoa::itemOfObject(object);
  if (entry.item == nullptr) {
    entry.value = epg::cocoa::fromObject(object);
  }
  return entry;
}

NSArray* keysOfSnapshot(const epg::EPGItemStoreSnapshot& snapshot) {
  NSMutableArray* keys = [NSMutableArray arrayWithCapacity:snapshot.size()];
  for (const epg::EPGItemStoreRecord* const record : snapshot.records()) {
    [keys addObject:toString(record->uniqueID)];
  }
  return keys;
}

NSDictionary* dictionaryOfSnapshot(const epg::EPGItemStoreSnapshot& snapshot) {
  std::vector<id> keys;
  std::vector<id> objects;
  keys.reserve(snapshot.size());
  objects.reserve(snapshot.size());
  for (const epg::EPGItemStoreRecord* const record : snapshot.records()) {
    keys.push_back(toString(record->uniqueID));
    objects.push_back(epg::cocoa::objectOfRecord(*record));
  }
  return [NSDictionary dictionaryWithObjects:objects.data() forKeys:keys.data() count:keys.size()];
}

}  // namespace

@interface EPGDorvaSelinItemStore ()
- (id)initWithStore:(const std::shared_ptr<epg::cocoa::BridgedItemStore>&)store;
- (const std::shared_ptr<epg::cocoa::BridgedItemStore>&)store;
@end

@implementation EPGDorvaSelinItemStore

// Of its own accord: the inherited initialisers all end in `init`.
- (id)initWithStore:(const std::shared_ptr<epg::cocoa::BridgedItemStore>&)store {
  _store = calledByHost([&] { return new std::shared_ptr<epg::cocoa::BridgedItemStore>(store); });
  return self;
}

- (id)init {
  return [self initWithStore:calledByHost([] { return std::make_shared<epg::cocoa::BridgedItemStore>(); })];
}

- (void)dealloc {
  delete _store;
  [super dealloc];
}

- (const std::shared_ptr<epg::cocoa::BridgedItemStore>&)store {
  return *_store;
}

- (NSUInteger)count {
  const epg::cocoa::BridgedItemStore& store = **_store;
  return calledByHost([&] { return store.snapshot()->size(); });
}

- (id)objectForKey:(id)key {
  const epg::cocoa::BridgedItemStore& store = **_store;
  return calledByHost([&]() -> id {
    const std::optional<std::string> uniqueID = optionalString(key);
    const auto record = uniqueID ? store.record(*uniqueID) : nullptr;
    return record != nullptr ? objectOfRecord(*record) : nil;
  });
}

- (NSArray*)allKeys {
  const epg::cocoa::BridgedItemStore& store = **_store;
  return calledByHost([&] { return keysOfSnapshot(*store.snapshot()); });
}

- (NSDictionary*)entries {
  const epg::cocoa::BridgedItemStore& store = **_store;
  return calledByHost([&] { return dictionaryOfSnapshot(*store.snapshot()); });
}

- (void)setObject:(id)object forKey:(id<NSCopying>)key {
  epg::cocoa::BridgedItemStore& store = **_store;
  calledByHost([&] {
    const std::optional<std::string> uniqueID = optionalString(key);
    if (object == nil || !uniqueID) {
      [NSException raise:NSInvalidArgumentException
                  format:@"The item store takes an item under an EPG unique ID, not %@ under %@", object, key];
    }
    store.setEntry(*uniqueID, entryOfObject(object));
  });
}

- (void)removeObjectForKey:(id)key {
  epg::cocoa::BridgedItemStore& store = **_store;
  calledByHost([&] {
    if (const std::optional<std::string> uniqueID = optionalString(key)) {
      store.removeEntry(*uniqueID);
    }
  });
}

@end

@interface EPGDorvaSelinItemStoreSnapshot ()
- (id)initWithSnapshot:(std::shared_ptr<const epg::EPGItemStoreSnapshot>)snapshot;
- (const std::shared_ptr<const epg::EPGItemStoreSnapshot>&)snapshot;
@end

@implementation EPGDorvaSelinItemStoreSnapshot

// Of its own accord: the inherited initialisers all end in one of those below.
- (id)initWithSnapshot:(std::shared_ptr<const epg::EPGItemStoreSnapshot>)snapshot {
  _snapshot = calledByHost([&] { return new std::shared_ptr<const epg::EPGItemStoreSnapshot>(std::move(snapshot)); });
  return self;
}

- (id)init {
  return [self initWithSnapshot:calledByHost([] { return epg::ShardedItemStore().snapshot(); })];
}

- (id)initWithObjects:(const id[])objects forKeys:(const id<NSCopying>[])keys count:(NSUInteger)count {
  NSDictionary* dictionary = [NSDictionary dictionaryWithObjects:objects forKeys:keys count:count];
  return [self initWithSnapshot:calledByHost([&] { return epg::cocoa::snapshotOfObject(dictionary); })];
}

- (void)dealloc {
  delete _snapshot;
  [super dealloc];
}

- (const std::shared_ptr<const epg::EPGItemStoreSnapshot>&)snapshot {
  return *_snapshot;
}

- (NSUInteger)count {
  return (*_snapshot)->size();
}

- (id)objectForKey:(id)key {
  const epg::EPGItemStoreSnapshot& snapshot = **_snapshot;
  return calledByHost([&]() -> id {
    const std::optional<std::string> uniqueID = optionalString(key);
    const epg::EPGItemStoreRecord* const found = uniqueID ? snapshot.find(*uniqueID) : nullptr;
    return found != nullptr ? objectOfRecord(*found) : nil;
  });
}

- (NSEnumerator*)keyEnumerator {
  const epg::EPGItemStoreSnapshot& snapshot = **_snapshot;
  return [calledByHost([&] { return keysOfSnapshot(snapshot); }) objectEnumerator];
}

- (NSEnumerator*)objectEnumerator {
  const epg::EPGItemStoreSnapshot& snapshot = **_snapshot;
  return [calledByHost([&] { return dictionaryOfSnapshot(snapshot); }) objectEnumerator];
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state objects:(id*)buffer count:(NSUInteger)length {
  return epg::cocoa::nextKeys(self, state, buffer, length);
}

- (NSString*)description {
  return [epg::cocoa::withoutLiveDictionaries(self) description];
}

- (NSString*)descriptionWithLocale:(id)locale {
  return [epg::cocoa::withoutLiveDictionaries(self) descriptionWithLocale:locale];
}

- (NSString*)descriptionWithLocale:(id)locale indent:(NSUInteger)level {
  return [epg::cocoa::withoutLiveDictionaries(self) descriptionWithLocale:locale indent:level];
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

NSMutableDictionary* objectOfStore(const std::shared_ptr<BridgedItemStore>& store) {
  return [[[EPGDorvaSelinItemStore alloc] initWithStore:store] autorelease];
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

NSDictionary* objectOfSnapshot(std::shared_ptr<const EPGItemStoreSnapshot> snapshot) {
  return [[[EPGDorvaSelinItemStoreSnapshot alloc] initWithSnapshot:std::move(snapshot)] autorelease];
}

std::shared_ptr<const EPGItemStoreSnapshot> snapshotOfObject(NSDictionary* object) {
  if ([object isKindOfClass:[EPGDorvaSelinItemStoreSnapshot class]]) {
    return [static_cast<EPGDorvaSelinItemStoreSnapshot*>(object) snapshot];
  }
  if ([object isKindOfClass:[EPGDorvaSelinItemStore class]]) {
    return [static_cast<EPGDorvaSelinItemStore*>(object) store]->snapshot();
  }
  ShardedItemStore copy;
  std::vector<id> foreignKeys;
  for (const auto& [key, value] : entriesOfHostDictionary(object)) {
    if ([key isKindOfClass:[NSString class]]) {
      copy.setEntry(fromString(key), entryOfObject(value));
    } else {
      foreignKeys.push_back(key);
    }
  }
  // Last, so that none is lost behind a text that reads like it.
  for (id key : foreignKeys)
    copy.setEntry(fromString([key description]), EPGItemStoreEntry{nullptr, foreignObject(key)});
  return copy.snapshot();
}

}  // namespace epg::cocoa
