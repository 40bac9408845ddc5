#import "host/window/WindowDescription.h"

#import "host/window/KeyboardFocus.h"

namespace {

const NSTimeInterval betweenLooks = 0.04;
/// The first rows of a table; the rest is left out.
const NSInteger mostRows = 200;

NSNumber* numberOf(CGFloat length) { return [NSNumber numberWithDouble:static_cast<double>(length)]; }

/// Left, bottom, width and height in the content's coordinates.
NSArray* placeOf(NSRect rect, NSView* view) {
  const NSRect inWindow = [view convertRect:rect toView:[[view window] contentView]];
  return [NSArray arrayWithObjects:numberOf(NSMinX(inWindow)), numberOf(NSMinY(inWindow)), numberOf(NSWidth(inWindow)),
                                   numberOf(NSHeight(inWindow)), nil];
}

NSDictionary* descriptionOfTable(NSTableView* table) {
  NSMutableArray* rows = [NSMutableArray array];
  for (NSInteger row = 0; row < [table numberOfRows] && row < mostRows; ++row) {
    NSMutableDictionary* cells = [NSMutableDictionary dictionary];
    for (NSUInteger index = 0; index < [[table tableColumns] count]; ++index) {
      NSTableColumn* column = [[table tableColumns] objectAtIndex:index];
      const NSInteger columnIndex = static_cast<NSInteger>(index);
      id value = [[table dataSource] tableView:table objectValueForTableColumn:column row:row];
      const NSRect visible = NSIntersectionRect([table frameOfCellAtColumn:columnIndex row:row], [table visibleRect]);
      [cells setObject:[NSDictionary dictionaryWithObjectsAndKeys:[value description], @"value",
                                                                  placeOf(visible, table), @"place", nil]
                forKey:[column identifier]];
    }
    [cells setObject:[NSNumber numberWithBool:[table isRowSelected:row]] forKey:@"selected row"];
    [rows addObject:cells];
  }
  return [NSDictionary dictionaryWithObjectsAndKeys:@"table", @"kind", rows, @"rows",
                                                    placeOf([table visibleRect], table), @"place", nil];
}

NSMutableDictionary* descriptionOfControl(NSControl* control, NSString* kind, NSString* text) {
  NSMutableDictionary* description = [NSMutableDictionary dictionary];
  [description setObject:kind forKey:@"kind"];
  [description setObject:[NSString stringWithString:text] forKey:@"text"];
  [description setObject:placeOf([control bounds], control) forKey:@"place"];
  [description setObject:[NSNumber numberWithBool:[control isEnabled]] forKey:@"enabled"];
  return description;
}

void appendDescriptions(NSView* view, NSMutableArray* descriptions) {
  id object = view;
  NSMutableDictionary* description = nil;
  if ([view isKindOfClass:[NSTableView class]]) {
    description = [NSMutableDictionary dictionaryWithDictionary:descriptionOfTable(object)];
  } else if ([view isKindOfClass:[NSPopUpButton class]]) {
    description = descriptionOfControl(object, @"pop-up", [object titleOfSelectedItem]);
  } else if ([view isKindOfClass:[NSButton class]]) {
    description = descriptionOfControl(object, @"button", [object title]);
  } else if ([view isKindOfClass:[NSTextField class]]) {
    NSString* kind = [object isEditable] ? @"field" : @"label";
    description = descriptionOfControl(object, kind, [object stringValue]);
    NSString* placeholder = [[object cell] placeholderString];
    if (placeholder != nil) {
      [description setObject:placeholder forKey:@"placeholder"];
    }
  }
  if (description != nil) {
    [description setObject:[NSNumber numberWithBool:viewWithKeyboard([view window]) == view] forKey:@"has keyboard"];
    [descriptions addObject:description];
    return;
  }
  NSEnumerator* subviews = [[view subviews] objectEnumerator];
  while (NSView* subview = [subviews nextObject]) {
    appendDescriptions(subview, descriptions);
  }
}

}  // namespace

@implementation WindowDescription

- (id)initWithWindow:(NSWindow*)window path:(NSString*)path {
  self = [super init];
  if (self != nil) {
    _window = window;
    _path = [path copy];
    // Not only after events: some of what the window shows comes from other threads.
    _timer = [NSTimer scheduledTimerWithTimeInterval:betweenLooks
                                              target:self
                                            selector:@selector(describe:)
                                            userInfo:nil
                                             repeats:YES];
    [[NSRunLoop currentRunLoop] addTimer:_timer forMode:NSEventTrackingRunLoopMode];
  }
  return self;
}

- (void)stop {
  [_timer invalidate];
  _timer = nil;
}

- (void)dealloc {
  [_path release];
  [_written release];
  [super dealloc];
}

- (void)describe:(NSTimer*)timer {
  (void)timer;
  NSString* mode = [[NSRunLoop currentRunLoop] currentMode];
  const BOOL mouseIsDown = [mode isEqualToString:NSEventTrackingRunLoopMode];
  NSMutableArray* views = [NSMutableArray array];
  appendDescriptions([_window contentView], views);
  NSDictionary* description =
      [NSDictionary dictionaryWithObjectsAndKeys:views, @"views", [_window title], @"title",
                                                 [NSNumber numberWithBool:[_window isKeyWindow]], @"key",
                                                 [NSNumber numberWithBool:mouseIsDown], @"mouse is down", nil];
  if ([description isEqual:_written]) {
    return;
  }
  NSData* data = [NSPropertyListSerialization dataWithPropertyList:description
                                                            format:NSPropertyListXMLFormat_v1_0
                                                           options:0
                                                             error:nullptr];
  if ([data writeToFile:_path atomically:YES]) {
    [_written release];
    _written = [description retain];
  }
}

@end
