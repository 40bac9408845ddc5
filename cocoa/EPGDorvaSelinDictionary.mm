#import "cocoa/EPGDorvaSelinDictionary.h"

@implementation EPGDorvaSelinDictionary

// Every inherited initialiser ends in one of these.

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
