#import "cocoa/EPGDorvaSelinTagsTableView.h"

#include "editor/EPGDorvaSelinViewController.h"

@interface EPGDorvaSelinTagsTableView ()
- (void)clickCheckboxOfRow:(NSInteger)row;
@end

@implementation EPGDorvaSelinTagsTableView

- (void)keyDown:(NSEvent*)event {
  if (![[event characters] isEqualToString:@" "]) {
    [super keyDown:event];
    return;
  }
  NSIndexSet* rows = [self selectedRowIndexes];
  for (NSUInteger row = [rows firstIndex]; row != NSNotFound; row = [rows indexGreaterThanIndex:row]) {
    [self clickCheckboxOfRow:static_cast<NSInteger>(row)];
  }
  [self reloadData];
}

- (void)clickCheckboxOfRow:(NSInteger)row {
  NSTableColumn* column = [self tableColumnWithIdentifier:@"selected"];
  id<NSTableViewDataSource> source = [self dataSource];
  const NSInteger state = [[source tableView:self objectValueForTableColumn:column row:row] integerValue];
  NSNumber* proposed = [NSNumber numberWithInteger:state == epg::TagStateOn ? epg::TagStateOff : epg::TagStateOn];
  [source tableView:self setObjectValue:proposed forTableColumn:column row:row];
}

@end
