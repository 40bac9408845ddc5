#import "host/window/EditorState.h"

namespace {

void appendTable(NSTableView* table, NSMutableArray* state) {
  id<NSTableViewDataSource> source = [table dataSource];
  const NSInteger rows = [source numberOfRowsInTableView:table];
  NSEnumerator* columns = [[table tableColumns] objectEnumerator];
  while (NSTableColumn* column = [columns nextObject]) {
    for (NSInteger row = 0; row < rows; ++row) {
      id value = [source tableView:table objectValueForTableColumn:column row:row];
      [state addObject:value != nil ? value : [NSNull null]];
    }
  }
}

void appendState(NSView* view, BOOL tablesOnly, NSMutableArray* state) {
  id object = view;
  if ([view isKindOfClass:[NSTableView class]]) {
    appendTable(object, state);
    return;
  }
  if ([view isKindOfClass:[NSTextField class]]) {
    if (!tablesOnly) {
      [state addObject:[NSString stringWithString:[object stringValue]]];
    }
    return;
  }
  NSEnumerator* subviews = [[view subviews] objectEnumerator];
  while (NSView* subview = [subviews nextObject]) {
    appendState(subview, tablesOnly, state);
  }
}

void appendEnabledControls(NSView* view, NSMutableArray* controls) {
  id object = view;
  if ([view isKindOfClass:[NSControl class]]) {
    if ([object isEnabled]) {
      [controls addObject:object];
    }
    return;
  }
  NSEnumerator* subviews = [[view subviews] objectEnumerator];
  while (NSView* subview = [subviews nextObject]) {
    appendEnabledControls(subview, controls);
  }
}

}  // namespace

NSArray* editorState(NSView* view) {
  NSMutableArray* state = [NSMutableArray array];
  appendState(view, NO, state);
  return state;
}

NSArray* tableState(NSView* view) {
  NSMutableArray* state = [NSMutableArray array];
  appendState(view, YES, state);
  return state;
}

NSArray* disabledControls(NSView* view) {
  NSMutableArray* controls = [NSMutableArray array];
  appendEnabledControls(view, controls);
  for (NSUInteger index = 0; index < [controls count]; ++index) {
    [[controls objectAtIndex:index] setEnabled:NO];
  }
  return controls;
}
