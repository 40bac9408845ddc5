#pragma once

#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString* NSNibName;

EPG_SINCE(10.5)
@interface NSViewController : NSResponder
- (instancetype)initWithNibName:(nullable NSNibName)name bundle:(nullable NSBundle*)bundle EPG_DESIGNATED;
- (nullable instancetype)initWithCoder:(NSCoder*)coder EPG_DESIGNATED;
@property (strong) IBOutlet NSView* view;
@end

NS_ASSUME_NONNULL_END
