#pragma once

#import <Foundation/NSObject.h>

@interface NSNull : NSObject <NSCopying, NSSecureCoding>
+ (nonnull NSNull*)null;
@end
