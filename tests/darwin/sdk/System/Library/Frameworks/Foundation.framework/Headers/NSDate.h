#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

typedef double NSTimeInterval;

@interface NSDate : NSObject <NSCopying, NSSecureCoding>
@property (readonly) NSTimeInterval timeIntervalSinceReferenceDate;
- (instancetype)init EPG_DESIGNATED;
- (instancetype)initWithTimeIntervalSinceReferenceDate:(NSTimeInterval)seconds EPG_DESIGNATED;
- (nullable instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
@property (readonly) NSTimeInterval timeIntervalSinceNow;
- (NSComparisonResult)compare:(NSDate*)other;
+ (instancetype)dateWithTimeIntervalSinceNow:(NSTimeInterval)seconds;
+ (instancetype)dateWithTimeIntervalSinceReferenceDate:(NSTimeInterval)seconds;
- (instancetype)initWithTimeIntervalSince1970:(NSTimeInterval)seconds;
@end

NS_ASSUME_NONNULL_END
