#pragma once

#import <Foundation/NSEnumerator.h>
#import <Foundation/NSObject.h>

@class NSArray<ObjectType>;

NS_ASSUME_NONNULL_BEGIN

@interface NSSet<__covariant ObjectType> : NSObject <NSCopying, NSMutableCopying, NSSecureCoding, NSFastEnumeration>
@property (readonly) NSUInteger count;
- (BOOL)containsObject:(ObjectType)object;
+ (instancetype)set;
+ (instancetype)setWithObject:(ObjectType)object;
+ (instancetype)setWithArray:(NSArray<ObjectType>*)array;
- (instancetype)initWithObjects:(ObjectType)first, ... NS_REQUIRES_NIL_TERMINATION;
- (instancetype)initWithArray:(NSArray<ObjectType>*)array;
@end

@interface NSMutableSet<ObjectType> : NSSet <ObjectType>
- (void)addObject:(ObjectType)object;
@end

NS_ASSUME_NONNULL_END
