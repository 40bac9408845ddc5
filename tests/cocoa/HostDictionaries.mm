#import "tests/cocoa/HostDictionaries.h"

#include <atomic>

namespace {

void raiseTrouble() { [NSException raise:@"HostTrouble" format:@"a host's object cannot be read"]; }

std::atomic<int>& counter(void* readers) { return *static_cast<std::atomic<int>*>(readers); }

}  // namespace

@implementation RaisingDictionary

- (id)init {
  _entries = [[NSMutableDictionary alloc] init];
  return self;
}

- (void)dealloc {
  [_entries release];
  [super dealloc];
}

- (void)setRaises:(BOOL)raises {
  _raises = raises;
}

- (NSUInteger)count {
  return [_entries count];
}

- (id)objectForKey:(id)key {
  if (_raises) raiseTrouble();
  return [_entries objectForKey:key];
}

- (NSEnumerator*)keyEnumerator {
  if (_raises) raiseTrouble();
  return [_entries keyEnumerator];
}

- (void)setObject:(id)object forKey:(id<NSCopying>)key {
  [_entries setObject:object forKey:key];
}

- (void)removeObjectForKey:(id)key {
  [_entries removeObjectForKey:key];
}

@end

@implementation RaisingKey

+ (RaisingKey*)keyInPlaceOf:(NSString*)string {
  RaisingKey* key = [[[RaisingKey alloc] init] autorelease];
  key->_string = [string copy];
  return key;
}

- (void)dealloc {
  [_string release];
  [super dealloc];
}

- (id)copyWithZone:(NSZone*)zone {
  (void)zone;
  return [self retain];
}

- (NSUInteger)hash {
  return [_string hash];
}

- (BOOL)isEqual:(id)other {
  (void)other;
  [NSException raise:@"HostTrouble" format:@"A key is compared"];
  return NO;
}

@end

@implementation EndlessString

- (NSUInteger)length {
  return NSUIntegerMax / 2;
}

- (unichar)characterAtIndex:(NSUInteger)index {
  (void)index;
  return 'a';
}

- (NSUInteger)hash {
  return 1;
}

- (BOOL)isEqual:(id)other {
  return other == self;
}

- (id)copyWithZone:(NSZone*)zone {
  (void)zone;
  return [self retain];
}

@end

@implementation RaisingArray

- (NSUInteger)count {
  return 1;
}

- (id)objectAtIndex:(NSUInteger)index {
  (void)index;
  raiseTrouble();
  return nil;
}

- (id)copyWithZone:(NSZone*)zone {
  (void)zone;
  raiseTrouble();
  return nil;
}

@end

@implementation LockedDictionary

- (id)init {
  _entries = [[NSMutableDictionary alloc] init];
  _lock = [[NSRecursiveLock alloc] init];
  _readers = new std::atomic<int>(0);
  return self;
}

- (void)dealloc {
  delete static_cast<std::atomic<int>*>(_readers);
  [_lock release];
  [_entries release];
  [super dealloc];
}

- (NSRecursiveLock*)lock {
  return _lock;
}

- (int)lookUpsBesideTheMainThread {
  return counter(_readers);
}

- (NSUInteger)count {
  [_lock lock];
  const NSUInteger count = [_entries count];
  [_lock unlock];
  return count;
}

- (id)objectForKey:(id)key {
  if (![NSThread isMainThread]) ++counter(_readers);
  [_lock lock];
  id object = [[[_entries objectForKey:key] retain] autorelease];
  [_lock unlock];
  return object;
}

- (NSEnumerator*)keyEnumerator {
  [_lock lock];
  NSEnumerator* keys = [[_entries allKeys] objectEnumerator];
  [_lock unlock];
  return keys;
}

- (void)setObject:(id)object forKey:(id<NSCopying>)key {
  [_lock lock];
  [_entries setObject:object forKey:key];
  [_lock unlock];
}

- (void)removeObjectForKey:(id)key {
  [_lock lock];
  [_entries removeObjectForKey:key];
  [_lock unlock];
}

@end
