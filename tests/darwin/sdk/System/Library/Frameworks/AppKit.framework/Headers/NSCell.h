#pragma once

#import <AppKit/NSView.h>

@class NSFont;

NS_ASSUME_NONNULL_BEGIN

typedef NSInteger NSControlStateValue;
#if __MAC_OS_X_VERSION_MAX_ALLOWED >= 101300
static const NSControlStateValue NSControlStateValueMixed = -1;
static const NSControlStateValue NSControlStateValueOff = 0;
static const NSControlStateValue NSControlStateValueOn = 1;
#endif
static const NSControlStateValue NSMixedState EPG_SINCE_UNTIL(10.0, 10.14, "NSControlStateValueMixed") = -1;
static const NSControlStateValue NSOffState EPG_SINCE_UNTIL(10.0, 10.14, "NSControlStateValueOff") = 0;
static const NSControlStateValue NSOnState EPG_SINCE_UNTIL(10.0, 10.14, "NSControlStateValueOn") = 1;

typedef NS_ENUM(NSUInteger, NSLineBreakMode) {
  NSLineBreakByWordWrapping = 0,
  NSLineBreakByCharWrapping,
  NSLineBreakByClipping,
  NSLineBreakByTruncatingHead,
  NSLineBreakByTruncatingTail,
  NSLineBreakByTruncatingMiddle
};

@interface NSCell : NSObject <NSCopying, NSCoding>
- (instancetype)init EPG_DESIGNATED;
- (instancetype)initTextCell:(NSString*)text EPG_DESIGNATED;
- (instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
@property (copy) NSString* stringValue;
@property NSLineBreakMode lineBreakMode;
@property (nullable, strong) id representedObject;
@end

@interface NSActionCell : NSCell
@end

NS_ASSUME_NONNULL_END
