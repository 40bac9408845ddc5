#pragma once

#import <Foundation/NSDate.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSTimeZone : NSObject <NSCopying, NSSecureCoding>
- (NSInteger)secondsFromGMTForDate:(NSDate*)date;
@property (class, copy) NSTimeZone* defaultTimeZone;
@end

NS_ASSUME_NONNULL_END
