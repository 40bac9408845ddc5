#import "cocoa/bridge/EPGDorvaSelinItem.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#import "cocoa/bridge/FoundationItem.h"
#import "cocoa/bridge/FoundationValues.h"
#import "cocoa/bridge/HandedOutObjects.h"
#import "cocoa/bridge/HostException.h"
#include "store/MemoryItem.h"

using epg::cocoa::calledByHost;

namespace {

/// The objects there are, by item. Not holding them: an object is found here only until its last owner lets go.
struct Registry {
  std::mutex mutex;
  std::unordered_map<const epg::EPGItem*, EPGDorvaSelinItem*> objects;
};

Registry& registry() {
  // Objects may be let go of while the process ends, after static objects would be gone.
  static Registry* const instance = new Registry;
  return *instance;
}

/// Null when there is none under the key, which may be any object.
const epg::PropertyListDictionary::Entry* entryUnder(const epg::PropertyListDictionary& values, id key) {
  const std::optional<std::string> name = epg::cocoa::optionalString(key);
  const auto found = std::find_if(values.begin(), values.end(), [&](const auto& entry) {
    const id foreign = epg::cocoa::foreignKey(entry.second);
    return foreign != nil ? [foreign isEqual:key] != NO : name && entry.first == *name;
  });
  return found != values.end() ? &*found : nullptr;
}

id keyOf(std::string_view name, const epg::PropertyList& value) {
  const id foreign = epg::cocoa::foreignKey(value);
  return foreign != nil ? foreign : epg::cocoa::toString(name);
}

}  // namespace

struct EPGDorvaSelinItemParts {
  explicit EPGDorvaSelinItemParts(const std::shared_ptr<epg::EPGItem>& ofItem) : item(ofItem) {}

  std::shared_ptr<epg::EPGItem> item;
  std::atomic<NSUInteger> owners{1};
  epg::cocoa::HandedOutObjects handedOut;
};

@interface EPGDorvaSelinItem ()
- (id)initWithItem:(const std::shared_ptr<epg::EPGItem>&)item;
- (const std::shared_ptr<epg::EPGItem>&)item;
- (BOOL)retainIfOwned;
@end

@implementation EPGDorvaSelinItem

// Of its own accord: the inherited initialisers all end in `init`.
- (id)initWithItem:(const std::shared_ptr<epg::EPGItem>&)item {
  _parts = calledByHost([&] { return new EPGDorvaSelinItemParts(item); });
  return self;
}

- (id)init {
  return [self initWithItem:calledByHost([] { return std::make_shared<epg::MemoryItem>(); })];
}

// Looking an object up and letting go of it may meet on two threads; the look-up must then know for certain whether
// the object still has an owner, which the inherited count does not tell.

- (BOOL)retainIfOwned {
  NSUInteger count = _parts->owners.load();
  while (count != 0) {
    if (_parts->owners.compare_exchange_weak(count, count + 1)) {
      return YES;
    }
  }
  return NO;
}

- (id)retain {
  ++_parts->owners;
  return self;
}

- (oneway void)release {
  if (--_parts->owners == 0) {
    [self dealloc];
  }
}

- (NSUInteger)retainCount {
  return _parts->owners;
}

#ifdef __APPLE__
// Weak references, too, are for the count kept here, not the runtime's own.

- (BOOL)allowsWeakReference {
  return _parts->owners != 0 ? YES : NO;
}

- (BOOL)retainWeakReference {
  return [self retainIfOwned];
}
#endif

- (void)dealloc {
  {
    Registry& all = registry();
    const std::lock_guard<std::mutex> lock(all.mutex);
    const auto found = all.objects.find(_parts->item.get());
    if (found != all.objects.end() && found->second == self) {
      all.objects.erase(found);
    }
  }
  // Last, as references that are weak ask until then whether there is still an owner.
  EPGDorvaSelinItemParts* const parts = _parts;
  [super dealloc];
  delete parts;
}

- (const std::shared_ptr<epg::EPGItem>&)item {
  return _parts->item;
}

- (NSUInteger)count {
  const EPGDorvaSelinItemParts& parts = *_parts;
  return calledByHost([&] { return parts.item->values().size(); });
}

- (id)objectForKey:(id)key {
  EPGDorvaSelinItemParts& parts = *_parts;
  return calledByHost([&]() -> id {
    const epg::PropertyListDictionary values = parts.item->values();
    const auto* const entry = entryUnder(values, key);
    return entry != nullptr ? parts.handedOut.object(std::string(entry->first), entry->second) : nil;
  });
}

- (NSArray*)allKeys {
  const EPGDorvaSelinItemParts& parts = *_parts;
  return calledByHost([&]() -> NSArray* {
    const epg::PropertyListDictionary values = parts.item->values();
    NSMutableArray* keys = [NSMutableArray arrayWithCapacity:values.size()];
    for (const auto& [key, value] : values) {
      [keys addObject:keyOf(key, value)];
    }
    return keys;
  });
}

- (NSDictionary*)entries {
  EPGDorvaSelinItemParts& parts = *_parts;
  return calledByHost([&] {
    const epg::PropertyListDictionary values = parts.item->values();
    std::vector<id> keys;
    std::vector<id> objects;
    for (const auto& [key, value] : values) {
      keys.push_back(keyOf(key, value));
      objects.push_back(parts.handedOut.object(std::string(key), value));
    }
    return [NSDictionary dictionaryWithObjects:objects.data() forKeys:keys.data() count:keys.size()];
  });
}

- (void)setObject:(id)object forKey:(id<NSCopying>)key {
  EPGDorvaSelinItemParts& parts = *_parts;
  calledByHost([&] {
    const std::optional<std::string> name = epg::cocoa::optionalString(key);
    if (object == nil || !name) {
      [NSException raise:NSInvalidArgumentException
                  format:@"An EPG item takes a value under a string, not %@ under %@", object, key];
    }
    parts.item->set(*name, epg::cocoa::fromObject(object));
    parts.handedOut.forget(*name);
  });
}

- (void)removeObjectForKey:(id)key {
  EPGDorvaSelinItemParts& parts = *_parts;
  calledByHost([&] {
    const epg::PropertyListDictionary values = parts.item->values();
    if (const auto* const entry = entryUnder(values, key)) {
      const std::string name(entry->first);
      parts.item->remove(name);
      parts.handedOut.forget(name);
    }
  });
}

@end

namespace epg::cocoa {

NSMutableDictionary* objectOfItem(const std::shared_ptr<EPGItem>& item) {
  if (item == nullptr) {
    return nil;
  }
  if (const FoundationItem* hosts = dynamic_cast<const FoundationItem*>(item.get())) {
    return hosts->dictionary();
  }
  Registry& all = registry();
  const std::lock_guard<std::mutex> lock(all.mutex);
  EPGDorvaSelinItem*& known = all.objects[item.get()];
  if (known == nil || ![known retainIfOwned]) {
    known = [[EPGDorvaSelinItem alloc] initWithItem:item];
  }
  return [known autorelease];
}

NSMutableDictionary* knownObjectOfItem(const std::shared_ptr<EPGItem>& item) {
  Registry& all = registry();
  const std::lock_guard<std::mutex> lock(all.mutex);
  const auto known = all.objects.find(item.get());
  return known != all.objects.end() && [known->second retainIfOwned] ? [known->second autorelease] : nil;
}

std::shared_ptr<EPGItem> itemOfObject(id object) {
  if ([object isKindOfClass:[EPGDorvaSelinItem class]]) {
    return [static_cast<EPGDorvaSelinItem*>(object) item];
  }
  if ([object isKindOfClass:[NSDictionary class]]) {
    return std::make_shared<FoundationItem>(object);
  }
  return nullptr;
}

}  // namespace epg::cocoa
