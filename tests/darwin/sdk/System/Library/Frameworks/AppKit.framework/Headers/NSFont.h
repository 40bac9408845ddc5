#pragma once

#import <Foundation/Foundation.h>

@interface NSFont : NSObject <NSCopying, NSSecureCoding>
@end
