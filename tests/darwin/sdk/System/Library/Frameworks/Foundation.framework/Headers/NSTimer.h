#pragma once

#import <Foundation/NSDate.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSTimer : NSObject
+ (NSTimer*)scheduledTimerWithTimeInterval:(NSTimeInterval)seconds
                                    target:(id)target
                                  selector:(SEL)selector
                                  userInfo:(nullable id)userInfo
                                   repeats:(BOOL)repeats;
- (void)invalidate;
@end

NS_ASSUME_NONNULL_END
