#pragma once

#import <Foundation/NSObject.h>

EPG_SINCE(10.8)
@interface NSUUID : NSObject <NSCopying, NSSecureCoding>
+ (nonnull instancetype)UUID;
@property (nonnull, readonly, copy) NSString* UUIDString;
@end
