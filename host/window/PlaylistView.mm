#import "host/window/PlaylistView.h"

#import "host/window/PlaylistTable.h"

namespace {

const CGFloat searchHeight = 24;
const CGFloat searchGap = 8;
const CGFloat startWidth = 130;
const CGFloat titleWidth = 200;
const CGFloat channelWidth = 110;

NSTableColumn* column(NSString* identifier, NSString* title, CGFloat width, CGFloat largest) {
  NSTableColumn* result = [[[NSTableColumn alloc] initWithIdentifier:identifier] autorelease];
  [[result headerCell] setStringValue:title];
  [result setWidth:width];
  [result setMinWidth:largest == width ? width : width / 2];
  [result setMaxWidth:largest];
  [result setEditable:NO];
  [[result dataCell] setLineBreakMode:NSLineBreakByTruncatingTail];
  return result;
}

}  // namespace

@interface PlaylistView ()
- (void)makeSearchField;
- (void)makeTable;
- (void)search:(id)sender;
- (void)showMatches;
- (void)showMatchesAndIDs:(NSArray*)uniqueIDs;
- (BOOL)hidesAnyOf:(NSSet*)uniqueIDs;
@end

@implementation PlaylistView

- (id)initWithFrame:(NSRect)frame {
  self = [super initWithFrame:frame];
  if (self != nil) {
    _playbacks = [[NSMutableArray alloc] init];
    _shown = [[NSArray alloc] init];
    _alwaysShown = [[NSSet alloc] init];
    [self makeSearchField];
    [self makeTable];
    [_searchField setNextKeyView:_table];
  }
  return self;
}

- (void)setTarget:(id)target {
  _target = target;
}

- (void)makeSearchField {
  const NSRect bounds = [self bounds];
  _searchField =
      [[NSSearchField alloc] initWithFrame:NSMakeRect(0, NSMaxY(bounds) - searchHeight, NSWidth(bounds), searchHeight)];
  [_searchField setAutoresizingMask:NSViewWidthSizable | NSViewMinYMargin];
  [[_searchField cell] setPlaceholderString:@"Search"];
  [[_searchField cell] setSendsWholeSearchString:NO];
  [_searchField setTarget:self];
  [_searchField setAction:@selector(search:)];
  [[NSNotificationCenter defaultCenter] addObserver:self
                                           selector:@selector(search:)
                                               name:NSControlTextDidChangeNotification
                                             object:_searchField];
  [self addSubview:_searchField];
}

- (void)makeTable {
  const NSRect bounds = [self bounds];
  NSScrollView* scrollView = [[[NSScrollView alloc]
      initWithFrame:NSMakeRect(0, 0, NSWidth(bounds), NSHeight(bounds) - searchHeight - searchGap)] autorelease];
  [scrollView setAutoresizingMask:NSViewWidthSizable | NSViewHeightSizable];
  [scrollView setHasVerticalScroller:YES];
  [scrollView setBorderType:NSBezelBorder];
  _table = [[PlaylistTable alloc] initWithFrame:[[scrollView contentView] bounds]];
  [_table addTableColumn:column(@"startText", @"Start", startWidth, startWidth)];
  [_table addTableColumn:column(@"title", @"Entry", titleWidth, CGFLOAT_MAX)];
  [_table addTableColumn:column(@"channel", @"Channel", channelWidth, channelWidth)];
  [_table setColumnAutoresizingStyle:NSTableViewUniformColumnAutoresizingStyle];
  [_table setAllowsMultipleSelection:YES];
  [_table setAllowsColumnReordering:NO];
  [_table setGridStyleMask:NSTableViewGridNone];
#ifndef __APPLE__
  // GNUstep heeds this alone, which Apple took away.
  [_table setDrawsGrid:NO];
#endif
  [_table setDataSource:self];
  [_table setDelegate:self];
  [scrollView setDocumentView:_table];
  [_table sizeToFit];
  [self addSubview:scrollView];
}

- (void)dealloc {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  [_table setDataSource:nil];
  [_table setDelegate:nil];
  [_table release];
  [_searchField release];
  [_playbacks release];
  [_shown release];
  [_alwaysShown release];
  [super dealloc];
}

- (void)setPlaybacks:(NSArray*)playbacks {
  [_playbacks setArray:playbacks];
  [self showMatches];
}

- (NSArray*)playbacks {
  return _playbacks;
}

- (void)addPlayback:(Playback*)playback {
  [_playbacks addObject:playback];
  [self showMatches];
}

- (void)removeCopies:(NSSet*)uniqueIDs {
  NSMutableArray* copies = [NSMutableArray array];
  NSEnumerator* playbacks = [_playbacks objectEnumerator];
  while (Playback* playback = [playbacks nextObject]) {
    if ([playback isCopy] && [playback isOfAny:uniqueIDs]) {
      [copies addObject:playback];
    }
  }
  [_playbacks removeObjectsInArray:copies];
  [self showMatches];
}

- (Playback*)lastPlaybackOf:(NSString*)uniqueID {
  NSEnumerator* playbacks = [_playbacks reverseObjectEnumerator];
  while (Playback* playback = [playbacks nextObject]) {
    if ([[playback uniqueID] isEqual:uniqueID]) {
      return playback;
    }
  }
  return nil;
}

- (NSArray*)events {
  NSMutableArray* events = [NSMutableArray array];
  NSEnumerator* playbacks = [_playbacks objectEnumerator];
  while (Playback* playback = [playbacks nextObject]) {
    if (![playback isCopy]) {
      [events addObject:[playback event]];
    }
  }
  return events;
}

- (void)search:(id)sender {
  (void)sender;
  NSArray* selected = [self selectedIDs];
  [self showMatchesAndIDs:selected];
  [self selectIDs:selected];
}

- (void)showMatchesAndIDs:(NSArray*)uniqueIDs {
  [_alwaysShown release];
  _alwaysShown = [[NSSet alloc] initWithArray:uniqueIDs];
  [self showMatches];
}

- (void)showMatches {
  NSMutableArray* shown = [NSMutableArray array];
  NSEnumerator* playbacks = [_playbacks objectEnumerator];
  while (Playback* playback = [playbacks nextObject]) {
    if ([playback matches:[_searchField stringValue]] || [playback isOfAny:_alwaysShown]) {
      [shown addObject:playback];
    }
  }
  [_shown release];
  _shown = [shown copy];
  _selecting = YES;
  [_table reloadData];
  _selecting = NO;
}

- (NSArray*)selectedIDs {
  NSMutableArray* uniqueIDs = [NSMutableArray array];
  NSMutableSet* seen = [NSMutableSet set];
  NSIndexSet* rows = [_table selectedRowIndexes];
  for (NSUInteger row = [rows firstIndex]; row < [_shown count]; row = [rows indexGreaterThanIndex:row]) {
    Playback* playback = [_shown objectAtIndex:row];
    NSString* uniqueID = [playback uniqueID];
    if (uniqueID != nil && ![seen containsObject:uniqueID]) {
      [seen addObject:uniqueID];
      [uniqueIDs addObject:uniqueID];
    }
  }
  return uniqueIDs;
}

- (BOOL)hidesAnyOf:(NSSet*)uniqueIDs {
  NSSet* shown = [NSSet setWithArray:_shown];
  NSEnumerator* playbacks = [_playbacks objectEnumerator];
  while (Playback* playback = [playbacks nextObject]) {
    if ([playback isOfAny:uniqueIDs] && ![shown containsObject:playback]) {
      return YES;
    }
  }
  return NO;
}

- (void)selectIDs:(NSArray*)uniqueIDs {
  NSMutableIndexSet* rows = [NSMutableIndexSet indexSet];
  NSSet* wanted = [NSSet setWithArray:uniqueIDs];
  if ([self hidesAnyOf:wanted]) {
    [self showMatchesAndIDs:uniqueIDs];
  }
  for (NSUInteger row = 0; row < [_shown count]; ++row) {
    Playback* playback = [_shown objectAtIndex:row];
    if ([playback isOfAny:wanted]) {
      [rows addIndex:row];
    }
  }
  _selecting = YES;
  [_table selectRowIndexes:rows byExtendingSelection:NO];
  _selecting = NO;
  if ([rows count] > 0) {
    [_table scrollRowToVisible:static_cast<NSInteger>([rows firstIndex])];
  }
}

- (NSSearchField*)searchField {
  return _searchField;
}

- (NSTableView*)table {
  return _table;
}

- (NSInteger)numberOfRowsInTableView:(NSTableView*)tableView {
  (void)tableView;
  return static_cast<NSInteger>([_shown count]);
}

- (id)tableView:(NSTableView*)tableView objectValueForTableColumn:(NSTableColumn*)tableColumn row:(NSInteger)row {
  (void)tableView;
  return [[_shown objectAtIndex:static_cast<NSUInteger>(row)] valueForKey:[tableColumn identifier]];
}

- (void)tableViewSelectionDidChange:(NSNotification*)notification {
  (void)notification;
  if (!_selecting) {
    [_target performSelector:@selector(selectionChanged:) withObject:self];
  }
}

@end
