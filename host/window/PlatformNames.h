#pragma once

#import <AppKit/AppKit.h>

// Today's names of what AppKit called otherwise until 10.12, for headers that are older; those then are deprecated now.

#if defined(__APPLE__) && __MAC_OS_X_VERSION_MAX_ALLOWED < 101200
enum : NSUInteger {
  NSWindowStyleMaskTitled = NSTitledWindowMask,
  NSWindowStyleMaskClosable = NSClosableWindowMask,
  NSWindowStyleMaskMiniaturizable = NSMiniaturizableWindowMask,
  NSWindowStyleMaskResizable = NSResizableWindowMask
};
#endif

#if !defined(__APPLE__) || __MAC_OS_X_VERSION_MAX_ALLOWED < 101200
const NSBezelStyle NSBezelStyleRounded = NSRoundedBezelStyle;
#endif
