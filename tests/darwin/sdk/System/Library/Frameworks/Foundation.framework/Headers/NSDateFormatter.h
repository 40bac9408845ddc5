#pragma once

#import <Foundation/NSDate.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSFormatter : NSObject <NSCopying, NSCoding>
@end

@interface NSDateFormatter : NSFormatter
- (NSString*)stringFromDate:(NSDate*)date;
@property (null_resettable, copy) NSString* dateFormat;
@end

NS_ASSUME_NONNULL_END
