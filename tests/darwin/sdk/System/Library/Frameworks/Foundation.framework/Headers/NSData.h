#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSData : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>
@property (readonly) NSUInteger length;
@property (readonly) const void* bytes NS_RETURNS_INNER_POINTER;
- (BOOL)writeToFile:(NSString*)path atomically:(BOOL)atomically;
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
@end

NS_ASSUME_NONNULL_END
