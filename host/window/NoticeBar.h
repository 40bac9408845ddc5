#pragma once

#import <AppKit/AppKit.h>

/// A line at the foot of the window: what happened last, or a question with buttons for answers, which stays until it
/// is answered. The rest of the window can be used meanwhile.
@interface NoticeBar : NSView {
 @private
  NSTextField* _text;
  NSMutableArray* _buttons;
  NSString* _waiting;
  id _target;
}

- (id)initWithFrame:(NSRect)frame;

/// During a question the message waits. When the question is answered, it is shown behind the message that the answer
/// leads to.
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
