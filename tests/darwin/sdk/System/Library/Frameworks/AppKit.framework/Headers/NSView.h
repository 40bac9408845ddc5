#pragma once

#import <AppKit/NSResponder.h>

@class NSWindow;

NS_ASSUME_NONNULL_BEGIN

typedef NS_OPTIONS(NSUInteger, NSAutoresizingMaskOptions) {
  NSViewNotSizable = 0,
  NSViewMinXMargin = 1,
  NSViewWidthSizable = 2,
  NSViewMaxXMargin = 4,
  NSViewMinYMargin = 8,
  NSViewHeightSizable = 16,
  NSViewMaxYMargin = 32
};

typedef NS_ENUM(NSUInteger, NSBorderType) { NSNoBorder = 0, NSLineBorder = 1, NSBezelBorder = 2, NSGrooveBorder = 3 };

@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frame EPG_DESIGNATED;
- (nullable instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
@property (nullable, readonly, assign) NSWindow* window;
@property (nullable, readonly, assign) NSView* superview;
@property (copy) NSArray<__kindof NSView*>* subviews;
- (BOOL)isDescendantOf:(NSView*)view;
- (void)addSubview:(NSView*)view;
- (void)removeFromSuperview;
- (void)resizeSubviewsWithOldSize:(NSSize)oldSize;
@property NSAutoresizingMaskOptions autoresizingMask;
@property NSRect frame;
@property NSRect bounds;
- (NSRect)convertRect:(NSRect)rect toView:(nullable NSView*)view;
@property BOOL needsDisplay;
@property (readonly) NSRect visibleRect;
@property (nullable, assign) NSView* nextKeyView;
@end

NS_ASSUME_NONNULL_END
