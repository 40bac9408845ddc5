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

void append(NSView* view, NSMutableArray* state) {
  id object = view;
  if ([view isKindOfClass:[NSTableView class]]) {
    appendTable(object, state);
    return;
  }
  if ([view isKindOfClass:[NSTextField class]]) {
    [state addObject:[NSString stringWithString:[object stringValue]]];
    return;
  }
  NSEnumerator* subviews = [[view subviews] objectEnumerator];
  while (NSView* subview = [subviews nextObject]) {
    append(subview, state);
  }
}

}  // namespace

NSArray* editorState(NSView* view) {
  NSMutableArray* state = [NSMutableArray array];
  append(view, state);
  return state;
}
