#import "cocoa/bridge/EPGDorvaSelinDictionary.h"

#include <algorithm>

@implementation EPGDorvaSelinDictionary

// Every inherited initialiser ends in one of these, and they in the class's own. Not in an inherited one, which GNUstep
// leads back to these.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wobjc-designated-initializers"
#endif

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
#ifdef __clang__
#pragma clang diagnostic pop
#endif

- (NSEnumerator*)keyEnumerator {
  return [[self allKeys] objectEnumerator];
}

- (NSArray*)allValues {
  return [[self entries] allValues];
}

- (NSEnumerator*)objectEnumerator {
  return [[self allValues] objectEnumerator];
}

- (NSArray*)allKeysForObject:(id)object {
  return [[self entries] allKeysForObject:object];
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state objects:(id*)buffer count:(NSUInteger)length {
  return epg::cocoa::nextKeys(self, state, buffer, length);
}

// GNUstep tells clang, and nobody else, that keys conform to NSCopying.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wmismatched-parameter-types"
#endif
- (void)getObjects:(id*)objects andKeys:(id*)keys {
  [[self entries] getObjects:objects andKeys:keys];
}
#ifdef __clang__
#pragma clang diagnostic pop
#endif

#ifdef __APPLE__
- (void)getObjects:(id*)objects andKeys:(id*)keys count:(NSUInteger)count {
  [[self entries] getObjects:objects andKeys:keys count:count];
}

- (void)enumerateKeysAndObjectsUsingBlock:(void (^)(id key, id object, BOOL* stop))block {
  [[self entries] enumerateKeysAndObjectsUsingBlock:block];
}

- (void)enumerateKeysAndObjectsWithOptions:(NSEnumerationOptions)options
                                usingBlock:(void (^)(id key, id object, BOOL* stop))block {
  [[self entries] enumerateKeysAndObjectsWithOptions:options usingBlock:block];
}
#endif

- (BOOL)isEqualToDictionary:(NSDictionary*)other {
  return [[self entries] isEqualToDictionary:other];
}

- (NSString*)description {
  return [epg::cocoa::withoutLiveDictionaries([self entries]) description];
}

- (NSString*)descriptionWithLocale:(id)locale {
  return [epg::cocoa::withoutLiveDictionaries([self entries]) descriptionWithLocale:locale];
}

- (NSString*)descriptionWithLocale:(id)locale indent:(NSUInteger)level {
  return [epg::cocoa::withoutLiveDictionaries([self entries]) descriptionWithLocale:locale indent:level];
}

- (id)copyWithZone:(NSZone*)zone {
  (void)zone;
  return [[self entries] retain];
}

// By hand, as GNUstep's own would copy the values too.
- (id)mutableCopyWithZone:(NSZone*)zone {
  return [[NSMutableDictionary allocWithZone:zone] initWithDictionary:[self entries]];
}

- (Class)classForCoder {
  return [NSMutableDictionary class];
}

@end

namespace epg::cocoa {

NSUInteger nextKeys(NSDictionary* dictionary, NSFastEnumerationState* state, id* buffer, NSUInteger length) {
  if (state->state == 0) {
    // In the pool, which outlives the enumeration; so do the keys, which it holds.
    state->extra[0] = reinterpret_cast<unsigned long>([dictionary allKeys]);
    state->extra[1] = 0;
    state->mutationsPtr = &state->extra[1];
  }
  NSArray* keys = reinterpret_cast<NSArray*>(state->extra[0]);
  const NSUInteger count = std::min<NSUInteger>(length, [keys count] - state->state);
  [keys getObjects:buffer range:NSMakeRange(state->state, count)];
  state->itemsPtr = buffer;
  state->state += count;
  return count;
}

NSDictionary* withoutLiveDictionaries(NSDictionary* entries) {
  NSMutableDictionary* result = [NSMutableDictionary dictionaryWithDictionary:entries];
  NSEnumerator* keys = [entries keyEnumerator];
  while (id key = [keys nextObject]) {
    id object = [entries objectForKey:key];
    if ([object isKindOfClass:[EPGDorvaSelinDictionary class]]) {
      [result setObject:withoutLiveDictionaries([object entries]) forKey:key];
    }
  }
  return result;
}

}  // namespace epg::cocoa
