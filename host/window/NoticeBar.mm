#import "host/window/NoticeBar.h"

#include <math.h>

#import "host/window/PlatformNames.h"

namespace {

const CGFloat gap = 8;
const CGFloat answerHeight = 24;
const CGFloat textHeight = 18;
const CGFloat roomInButton = 28;

}  // namespace

@interface NoticeBar ()
- (void)answer:(id)sender;
- (void)layOut;
@end

@implementation NoticeBar

- (id)initWithFrame:(NSRect)frame {
  self = [super initWithFrame:frame];
  if (self != nil) {
    _buttons = [[NSMutableArray alloc] init];
    _text = [[NSTextField alloc] initWithFrame:NSZeroRect];
    [_text setEditable:NO];
    [_text setBordered:NO];
    [_text setBezeled:NO];
    [_text setDrawsBackground:NO];
    [[_text cell] setLineBreakMode:NSLineBreakByTruncatingMiddle];
    [self addSubview:_text];
    [self layOut];
  }
  return self;
}

- (void)dealloc {
  [_text release];
  [_buttons release];
  [_waiting release];
  [super dealloc];
}

- (void)resizeSubviewsWithOldSize:(NSSize)oldSize {
  (void)oldSize;
  [self layOut];
}

- (void)layOut {
  const NSRect bounds = [self bounds];
  CGFloat right = NSMaxX(bounds);
  NSEnumerator* buttons = [_buttons reverseObjectEnumerator];
  while (NSButton* button = [buttons nextObject]) {
    NSDictionary* attributes = [NSDictionary dictionaryWithObject:[button font] forKey:NSFontAttributeName];
    const CGFloat width = ceil([[button title] sizeWithAttributes:attributes].width) + roomInButton;
    right -= width;
    [button setFrame:NSMakeRect(right, (NSHeight(bounds) - answerHeight) / 2, width, answerHeight)];
    right -= gap;
  }
  [_text setFrame:NSMakeRect(0, (NSHeight(bounds) - textHeight) / 2, right, textHeight)];
  [self setNeedsDisplay:YES];
}

- (void)showMessage:(NSString*)message {
  if ([self isAsking]) {
    [_waiting autorelease];
    _waiting = [message copy];
    return;
  }
  NSString* waited = [_waiting autorelease];
  _waiting = nil;
  if ([waited length] > 0) {
    message = [message length] > 0 ? [NSString stringWithFormat:@"%@ · %@", message, waited] : waited;
  }
  [_text setStringValue:message];
}

- (void)ask:(NSString*)question answers:(NSArray*)answers actions:(NSArray*)actions target:(id)target {
  [self stopAsking];
  _target = target;
  [_text setStringValue:question];
  for (NSUInteger index = 0; index < [answers count]; ++index) {
    NSButton* button = [[[NSButton alloc] initWithFrame:NSZeroRect] autorelease];
    [button setTitle:[answers objectAtIndex:index]];
    [button setBezelStyle:NSBezelStyleRounded];
    [button setTarget:self];
    [button setAction:@selector(answer:)];
    [[button cell] setRepresentedObject:[actions objectAtIndex:index]];
    if (index > 0) {
      [[_buttons lastObject] setNextKeyView:button];
    }
    [_buttons addObject:button];
    [self addSubview:button];
  }
  [[_buttons lastObject] setKeyEquivalent:@"\033"];
  [[_buttons lastObject] setNextKeyView:[_buttons objectAtIndex:0]];
  [self layOut];
}

- (void)answer:(id)sender {
  const SEL action = NSSelectorFromString([[sender cell] representedObject]);
  id target = _target;
  // The button is removed while it still handles the click.
  [[sender retain] autorelease];
  [self stopAsking];
  [target performSelector:action withObject:self];
  if (_waiting != nil && ![self isAsking]) {
    [self showMessage:[_text stringValue]];
  }
}

- (BOOL)isAsking {
  return [_buttons count] > 0 ? YES : NO;
}

- (void)stopAsking {
  [_buttons makeObjectsPerformSelector:@selector(removeFromSuperview)];
  [_buttons removeAllObjects];
  [_text setStringValue:@""];
  [self layOut];
}

- (NSString*)text {
  return [_text stringValue];
}

- (NSButton*)firstAnswer {
  return [_buttons count] > 0 ? [_buttons objectAtIndex:0] : nil;
}

@end
