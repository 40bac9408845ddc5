#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSIndexSet : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>
+ (instancetype)indexSet;
@property (readonly) NSUInteger count;
@property (readonly) NSUInteger firstIndex;
- (NSUInteger)indexGreaterThanIndex:(NSUInteger)index;
@end

@interface NSMutableIndexSet : NSIndexSet
- (void)addIndex:(NSUInteger)index;
@end

NS_ASSUME_NONNULL_END
