#pragma once

#import <Foundation/Foundation.h>

@class NSEvent;

NS_ASSUME_NONNULL_BEGIN

@interface NSResponder : NSObject <NSCoding>
- (instancetype)init EPG_DESIGNATED;
- (nullable instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
- (void)keyDown:(NSEvent*)event;
- (void)mouseDown:(NSEvent*)event;
@end

@interface NSObject (NSNibAwaking)
- (void)awakeFromNib;
@end

NS_ASSUME_NONNULL_END
