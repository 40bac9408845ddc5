#pragma once

#import <Foundation/NSObject.h>

@interface NSCoder : NSObject
@end
