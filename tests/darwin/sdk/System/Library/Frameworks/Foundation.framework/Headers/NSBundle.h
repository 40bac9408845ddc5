#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSBundle : NSObject
+ (nullable instancetype)bundleWithPath:(NSString*)path;
- (nullable NSString*)pathForResource:(nullable NSString*)name ofType:(nullable NSString*)extension;
@property (nullable, readonly) Class principalClass;
@end

NS_ASSUME_NONNULL_END
