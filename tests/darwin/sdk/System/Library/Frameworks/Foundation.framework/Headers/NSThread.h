#pragma once

#import <Foundation/NSDate.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSThread : NSObject
+ (void)detachNewThreadSelector:(SEL)selector toTarget:(id)target withObject:(nullable id)argument;
+ (void)sleepForTimeInterval:(NSTimeInterval)seconds;
@property (class, readonly) BOOL isMainThread EPG_SINCE(10.5);
@end

@interface NSObject (NSThreadPerformAdditions)
- (void)performSelectorOnMainThread:(SEL)selector withObject:(nullable id)argument waitUntilDone:(BOOL)wait;
@end

NS_ASSUME_NONNULL_END
