#pragma once

#import <Foundation/NSDate.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSDateFormatter : NSObject <NSCopying, NSCoding>
- (NSString*)stringFromDate:(NSDate*)date;
@property (null_resettable, copy) NSString* dateFormat;
@end

NS_ASSUME_NONNULL_END
