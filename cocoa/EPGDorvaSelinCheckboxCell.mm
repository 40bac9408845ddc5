#import "cocoa/EPGDorvaSelinCheckboxCell.h"

@implementation EPGDorvaSelinCheckboxCell

#ifndef __APPLE__

namespace {

/// The dash, in parts of the box's size.
const CGFloat dashWidth = 0.5;
const CGFloat dashHeight = 0.125;

}  // namespace

- (void)drawImage:(NSImage*)image withFrame:(NSRect)frame inView:(NSView*)controlView {
  if ([self state] != NSMixedState) {
    [super drawImage:image withFrame:frame inView:controlView];
    return;
  }
  NSImage* box = [NSImage imageNamed:@"NSSwitch"];
  [super drawImage:box withFrame:frame inView:controlView];
  const NSSize size = [box size];
  const NSSize dash = NSMakeSize(round(size.width * dashWidth), round(size.height * dashHeight));
  [[NSColor controlTextColor] set];
  NSRectFill(NSMakeRect(NSMidX(frame) - dash.width / 2, NSMidY(frame) - dash.height / 2, dash.width, dash.height));
}

#endif

@end
