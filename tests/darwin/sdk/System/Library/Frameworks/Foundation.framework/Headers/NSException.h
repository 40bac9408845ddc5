#pragma once

#import <Foundation/NSObject.h>

@class NSDictionary<KeyType, ObjectType>;

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSExceptionName;
FOUNDATION_EXPORT NSExceptionName const NSGenericException;
FOUNDATION_EXPORT NSExceptionName const NSInvalidArgumentException;
FOUNDATION_EXPORT NSExceptionName const NSMallocException;

@interface NSException : NSObject <NSCopying, NSSecureCoding>
+ (NSException*)exceptionWithName:(NSExceptionName)name
                           reason:(nullable NSString*)reason
                         userInfo:(nullable NSDictionary*)userInfo;
- (void)raise;
+ (void)raise:(NSExceptionName)name format:(NSString*)format, ... NS_FORMAT_FUNCTION(2, 3);
@end

NS_ASSUME_NONNULL_END
