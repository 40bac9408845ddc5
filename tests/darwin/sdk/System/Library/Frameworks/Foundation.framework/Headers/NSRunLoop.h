#pragma once

#import <Foundation/NSObject.h>

@class NSTimer;

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSRunLoopMode;

@interface NSRunLoop : NSObject
@property (class, readonly, strong) NSRunLoop* currentRunLoop;
@property (nullable, readonly, copy) NSRunLoopMode currentMode;
- (void)addTimer:(NSTimer*)timer forMode:(NSRunLoopMode)mode;
@end

NS_ASSUME_NONNULL_END
