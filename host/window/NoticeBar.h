#pragma once

#import <AppKit/AppKit.h>

/// A line at the foot of the window: what happened last, or a question with up to three answers, which stays until
/// it is answered. Nothing of it stands in the way of the rest of the window.
@interface NoticeBar : NSView {
 @private
  NSTextField* _text;
  NSMutableArray* _buttons;
  NSString* _waiting;
  id _target;
}

- (id)initWithFrame:(NSRect)frame;

/// While a question is asked, the last message waits and is shown when the question is gone, behind what the answer led
/// to.
- (void)showMessage:(NSString*)message;
/// `answers` holds button titles, the safest last, and `actions` the names of the target's operations in the same
/// order. The question goes away before the operation is called.
- (void)ask:(NSString*)question answers:(NSArray*)answers actions:(NSArray*)actions target:(id)target;
- (BOOL)isAsking;
- (void)stopAsking;
- (NSString*)text;
/// The first answer's button, nil when nothing is asked.
- (NSButton*)firstAnswer;

@end
