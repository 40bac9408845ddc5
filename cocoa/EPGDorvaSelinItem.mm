#import "cocoa/EPGDorvaSelinItem.h"

#include <atomic>
#include <mutex>
#include <unordered_map>

#import "cocoa/FoundationItem.h"
#import "cocoa/FoundationValues.h"

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

using Owners = std::atomic<NSUInteger>;

}  // namespace

@interface EPGDorvaSelinItem ()
- (id)initWithItem:(const std::shared_ptr<epg::EPGItem>&)item;
- (const std::shared_ptr<epg::EPGItem>&)item;
- (BOOL)retainIfOwned;
@end

@implementation EPGDorvaSelinItem

// Of its own accord: the inherited initialisers all end in one of those below.
- (id)initWithItem:(const std::shared_ptr<epg::EPGItem>&)item {
  _item = new std::shared_ptr<epg::EPGItem>(item);
  _retainCount = new Owners(1);
  return self;
}

- (id)init {
  return [self initWithItem:std::make_shared<epg::EPGItem>()];
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

// Looking an object up and letting go of it may meet on two threads; the look-up must then know for certain whether
// the object still has an owner, which the inherited count does not tell.

- (BOOL)retainIfOwned {
  Owners& owners = *static_cast<Owners*>(_retainCount);
  NSUInteger count = owners.load();
  while (count != 0) {
    if (owners.compare_exchange_weak(count, count + 1)) {
      return YES;
    }
  }
  return NO;
}

- (id)retain {
  ++*static_cast<Owners*>(_retainCount);
  return self;
}

- (oneway void)release {
  if (--*static_cast<Owners*>(_retainCount) == 0) {
    [self dealloc];
  }
}

- (NSUInteger)retainCount {
  return *static_cast<Owners*>(_retainCount);
}

- (void)dealloc {
  {
    Registry& all = registry();
    const std::lock_guard<std::mutex> lock(all.mutex);
    const auto found = all.objects.find(_item->get());
    if (found != all.objects.end() && found->second == self) {
      all.objects.erase(found);
    }
  }
  delete _item;
  delete static_cast<Owners*>(_retainCount);
  [super dealloc];
}

- (const std::shared_ptr<epg::EPGItem>&)item {
  return *_item;
}

- (NSUInteger)count {
  return (*_item)->values()->size();
}

- (id)objectForKey:(id)key {
  const std::optional<std::string> name = epg::cocoa::optionalString(key);
  if (!name) {
    return nil;
  }
  const epg::EPGItem::Values values = (*_item)->values();
  const epg::PropertyList* value = values->find(*name);
  return value != nullptr ? epg::cocoa::toObject(*value) : nil;
}

- (NSEnumerator*)keyEnumerator {
  NSMutableArray* keys = [NSMutableArray array];
  const epg::EPGItem::Values values = (*_item)->values();
  for (const auto& [key, value] : *values) {
    [keys addObject:epg::cocoa::toString(key)];
  }
  return [keys objectEnumerator];
}

- (void)setObject:(id)object forKey:(id<NSCopying>)key {
  const std::optional<std::string> name = epg::cocoa::optionalString(key);
  if (object == nil || !name) {
    [NSException raise:NSInvalidArgumentException
                format:@"An EPG item takes a value under a string, not %@ under %@", object, key];
  }
  (*_item)->set(*name, epg::cocoa::fromObject(object));
}

- (void)removeObjectForKey:(id)key {
  if (const std::optional<std::string> name = epg::cocoa::optionalString(key)) {
    (*_item)->remove(*name);
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
