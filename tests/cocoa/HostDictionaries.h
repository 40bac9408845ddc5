#pragma once

#import <Foundation/Foundation.h>

/// A host's own dictionary, which raises "HostTrouble" when it is read, as long as it is told to.
@interface RaisingDictionary : NSMutableDictionary {
 @private
  NSMutableDictionary* _entries;
  BOOL _raises;
}
- (void)setRaises:(BOOL)raises;
@end

/// A host's own key, in a dictionary where a string would stand, which raises "HostTrouble" when it is compared.
@interface RaisingKey : NSObject <NSCopying> {
 @private
  NSString* _string;
}
+ (RaisingKey*)keyInPlaceOf:(NSString*)string;
@end

/// A host's own string, which says that it is longer than memory.
@interface EndlessString : NSString
@end

/// A host's own list, which raises "HostTrouble" when it is read or copied.
@interface RaisingArray : NSArray
@end

/// A host's own dictionary that any thread may use, because it locks itself.
@interface LockedDictionary : NSMutableDictionary {
 @private
  NSMutableDictionary* _entries;
  NSRecursiveLock* _lock;
  void* _readers;
}
- (NSRecursiveLock*)lock;
/// How many look-ups other threads than the main one have begun, waiting ones included.
- (int)lookUpsBesideTheMainThread;
@end
