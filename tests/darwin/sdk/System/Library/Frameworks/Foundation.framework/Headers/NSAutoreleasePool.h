#pragma once

#import <Foundation/NSObject.h>

@interface NSAutoreleasePool : NSObject
- (void)drain;
@end
