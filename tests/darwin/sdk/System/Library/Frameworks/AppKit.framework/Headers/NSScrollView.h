#pragma once

#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSClipView : NSView
@end

@interface NSScrollView : NSView
@property (nullable, assign) __kindof NSView* documentView;
@property (strong) NSClipView* contentView;
@property NSBorderType borderType;
@property BOOL hasVerticalScroller;
@end

NS_ASSUME_NONNULL_END
