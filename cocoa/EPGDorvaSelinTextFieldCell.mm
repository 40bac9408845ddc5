#import "cocoa/EPGDorvaSelinTextFieldCell.h"

#ifndef __APPLE__

/// The placeholder over the text that is being edited in a field. The platform's editor covers the cell, so an empty
/// field that has the keyboard would look like one without a placeholder.
@interface EPGDorvaSelinPlaceholderView : NSView {
 @private
  EPGDorvaSelinTextFieldCell* _cell;  ///< Not retained: it takes this view away before it goes.
  NSText* _editor;                    ///< Not retained, the window's.
}
- (id)initWithFrame:(NSRect)frame cell:(EPGDorvaSelinTextFieldCell*)cell editor:(NSText*)editor;
- (void)takeAway;
@end

@interface EPGDorvaSelinTextFieldCell ()
- (void)drawPlaceholderWithFrame:(NSRect)frame;
@end

@implementation EPGDorvaSelinPlaceholderView

- (id)initWithFrame:(NSRect)frame cell:(EPGDorvaSelinTextFieldCell*)cell editor:(NSText*)editor {
  self = [super initWithFrame:frame];
  if (self != nil) {
    _cell = cell;
    _editor = editor;
    [[NSNotificationCenter defaultCenter] addObserver:self
                                             selector:@selector(textChanged:)
                                                 name:NSTextDidChangeNotification
                                               object:editor];
  }
  return self;
}

- (void)takeAway {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  _editor = nil;
  [self removeFromSuperview];
}

- (void)textChanged:(NSNotification*)notification {
  (void)notification;
  [[self superview] setNeedsDisplay:YES];
}

- (NSView*)hitTest:(NSPoint)point {
  (void)point;
  return nil;
}

- (void)drawRect:(NSRect)dirty {
  (void)dirty;
  if (_editor != nil && [[_editor string] length] == 0) {
    [_cell drawPlaceholderWithFrame:[self bounds]];
  }
}

@end

#endif

@implementation EPGDorvaSelinTextFieldCell

#ifndef __APPLE__

- (void)dealloc {
  [_placeholderView takeAway];
  [super dealloc];
}

// A copy is of the same bits, and shows no placeholder over anything.
- (id)copyWithZone:(NSZone*)zone {
  EPGDorvaSelinTextFieldCell* copy = [super copyWithZone:zone];
  copy->_placeholderView = nil;
  return copy;
}

- (void)drawPlaceholderWithFrame:(NSRect)frame {
  NSString* placeholder = [self placeholderString];
  if ([placeholder length] == 0) {
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

- (void)drawInteriorWithFrame:(NSRect)frame inView:(NSView*)controlView {
  [super drawInteriorWithFrame:frame inView:controlView];
  if ([[self stringValue] length] == 0) {
    [self drawPlaceholderWithFrame:frame];
  }
}

- (void)showPlaceholderInView:(NSView*)controlView frame:(NSRect)frame editor:(NSText*)editor {
  [_placeholderView takeAway];
  _placeholderView = [[[EPGDorvaSelinPlaceholderView alloc] initWithFrame:[self drawingRectForBounds:frame]
                                                                     cell:self
                                                                   editor:editor] autorelease];
  [controlView addSubview:_placeholderView];
}

- (void)editWithFrame:(NSRect)frame
               inView:(NSView*)controlView
               editor:(NSText*)editor
             delegate:(id)object
                event:(NSEvent*)event {
  [super editWithFrame:frame inView:controlView editor:editor delegate:object event:event];
  [self showPlaceholderInView:controlView frame:frame editor:editor];
}

- (void)selectWithFrame:(NSRect)frame
                 inView:(NSView*)controlView
                 editor:(NSText*)editor
               delegate:(id)object
                  start:(NSInteger)start
                 length:(NSInteger)length {
  [super selectWithFrame:frame inView:controlView editor:editor delegate:object start:start length:length];
  [self showPlaceholderInView:controlView frame:frame editor:editor];
}

- (void)endEditing:(NSText*)editor {
  [_placeholderView takeAway];
  _placeholderView = nil;
  [super endEditing:editor];
}

#endif

@end
