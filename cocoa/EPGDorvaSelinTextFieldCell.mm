#import "cocoa/EPGDorvaSelinTextFieldCell.h"

@implementation EPGDorvaSelinTextFieldCell

#ifndef __APPLE__

- (void)drawInteriorWithFrame:(NSRect)frame inView:(NSView*)controlView {
  [super drawInteriorWithFrame:frame inView:controlView];
  NSString* placeholder = [self placeholderString];
  if ([placeholder length] == 0 || [[self stringValue] length] > 0) {
    return;
  }
  NSDictionary* attributes =
      [NSDictionary dictionaryWithObjectsAndKeys:[self font], NSFontAttributeName, [NSColor grayColor],
                                                 NSForegroundColorAttributeName, nil];
  const CGFloat textHeight = [placeholder sizeWithAttributes:attributes].height;
  NSRect text = [self titleRectForBounds:frame];
  text.origin.y += (NSHeight(text) - textHeight) / 2;
  text.size.height = textHeight;
  [placeholder drawInRect:NSInsetRect(text, 2, 0) withAttributes:attributes];
}

#endif

@end
