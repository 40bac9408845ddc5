#pragma once

#import <AppKit/NSControl.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSUInteger, NSBezelStyle) {
#if __MAC_OS_X_VERSION_MAX_ALLOWED >= 101200
  NSBezelStyleRounded = 1,
#endif
  NSBezelStyleRegularSquare = 2
};
static const NSBezelStyle NSRoundedBezelStyle EPG_SINCE_UNTIL(10.0, 10.14,
                                                              "NSBezelStyleRounded") = static_cast<NSBezelStyle>(1);

@interface NSButtonCell : NSActionCell
@end

@interface NSButton : NSControl
@property (copy) NSString* title;
@property NSBezelStyle bezelStyle;
@property (copy) NSString* keyEquivalent;
@end

NS_ASSUME_NONNULL_END
