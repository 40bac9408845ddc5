#pragma once

#import <AppKit/NSResponder.h>
#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

FOUNDATION_EXPORT NSRunLoopMode const NSEventTrackingRunLoopMode;

#if __MAC_OS_X_VERSION_MAX_ALLOWED >= 101200
typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
  NSWindowStyleMaskTitled = 1 << 0,
  NSWindowStyleMaskClosable = 1 << 1,
  NSWindowStyleMaskMiniaturizable = 1 << 2,
  NSWindowStyleMaskResizable = 1 << 3
};
#else
typedef NSUInteger NSWindowStyleMask;
#endif
static const NSWindowStyleMask NSTitledWindowMask EPG_SINCE_UNTIL(10.0, 10.12, "NSWindowStyleMaskTitled") = 1 << 0;
static const NSWindowStyleMask NSClosableWindowMask EPG_SINCE_UNTIL(10.0, 10.12, "NSWindowStyleMaskClosable") = 1 << 1;
static const NSWindowStyleMask NSMiniaturizableWindowMask EPG_SINCE_UNTIL(10.0, 10.12,
                                                                          "NSWindowStyleMaskMiniaturizable") = 1 << 2;
static const NSWindowStyleMask NSResizableWindowMask EPG_SINCE_UNTIL(10.0, 10.12, "NSWindowStyleMaskResizable") = 1
                                                                                                                  << 3;

typedef NS_ENUM(NSUInteger, NSBackingStoreType) { NSBackingStoreBuffered = 2 };

@protocol NSWindowDelegate <NSObject>
@optional
- (BOOL)windowShouldClose:(NSWindow*)sender;
- (void)windowWillClose:(NSNotification*)notification;
- (void)windowDidUpdate:(NSNotification*)notification;
@end

@interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)content
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)defer EPG_DESIGNATED;
@property (copy) NSString* title;
@property (nullable, strong) __kindof NSView* contentView;
@property (nullable, assign) id<NSWindowDelegate> delegate;
@property (getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property NSSize contentMinSize;
@property NSSize contentMaxSize;
@property (nullable, assign) NSView* initialFirstResponder;
@property (nullable, readonly, assign) NSResponder* firstResponder;
@property (readonly, getter=isKeyWindow) BOOL keyWindow;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)center;
- (void)close;
@end

NS_ASSUME_NONNULL_END
