#pragma once

#import <Foundation/NSEnumerator.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSRange.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSMutableCopying, NSSecureCoding, NSFastEnumeration>
@property (readonly) NSUInteger count;
- (ObjectType)objectAtIndex:(NSUInteger)index;
- (instancetype)init EPG_DESIGNATED;
- (instancetype)initWithObjects:(const ObjectType _Nonnull[_Nullable])objects count:(NSUInteger)count EPG_DESIGNATED;
- (nullable instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
+ (instancetype)array;
+ (instancetype)arrayWithObject:(ObjectType)object;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nonnull])objects count:(NSUInteger)count;
+ (instancetype)arrayWithObjects:(ObjectType)first, ... NS_REQUIRES_NIL_TERMINATION;
- (void)getObjects:(ObjectType _Nonnull __unsafe_unretained[_Nonnull])objects range:(NSRange)range;
@property (nullable, nonatomic, readonly) ObjectType lastObject;
- (NSEnumerator<ObjectType>*)objectEnumerator;
- (NSEnumerator<ObjectType>*)reverseObjectEnumerator;
- (NSArray<ObjectType>*)sortedArrayUsingSelector:(SEL)comparator;
- (void)makeObjectsPerformSelector:(SEL)selector;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
- (void)addObject:(ObjectType)object;
- (instancetype)init EPG_DESIGNATED;
- (instancetype)initWithCapacity:(NSUInteger)capacity EPG_DESIGNATED;
- (nullable instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
+ (instancetype)arrayWithCapacity:(NSUInteger)capacity;
- (void)removeAllObjects;
- (void)removeObjectsInArray:(NSArray<ObjectType>*)others;
- (void)setArray:(NSArray<ObjectType>*)other;
@end

NS_ASSUME_NONNULL_END
