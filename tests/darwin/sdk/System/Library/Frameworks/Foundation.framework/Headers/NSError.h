#pragma once

#import <Foundation/NSDictionary.h>
#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSErrorDomain;
typedef NSString* NSErrorUserInfoKey;
FOUNDATION_EXPORT NSErrorUserInfoKey const NSLocalizedDescriptionKey;

@interface NSError : NSObject <NSCopying, NSSecureCoding>
+ (instancetype)errorWithDomain:(NSErrorDomain)domain
                           code:(NSInteger)code
                       userInfo:(nullable NSDictionary<NSErrorUserInfoKey, id>*)userInfo;
@property (readonly, copy) NSString* localizedDescription;
@end

NS_ASSUME_NONNULL_END
