#import "host/window/MainMenu.h"

namespace {

NSMenu* addMenu(NSMenu* menu, NSString* title) {
  NSMenu* submenu = [[[NSMenu alloc] initWithTitle:title] autorelease];
  id entry = [menu addItemWithTitle:title action:nullptr keyEquivalent:@""];
  [menu setSubmenu:submenu forItem:entry];
  return submenu;
}

/// `items` holds titles, actions and keys in turn.
void addItems(NSMenu* menu, NSArray* items, id target) {
  for (NSUInteger index = 0; index < [items count]; index += 3) {
    id item = [menu addItemWithTitle:[items objectAtIndex:index]
                              action:NSSelectorFromString([items objectAtIndex:index + 1])
                       keyEquivalent:[items objectAtIndex:index + 2]];
    [item setTarget:target];
  }
}

}  // namespace

NSMenu* mainMenu(id entries, id exporter) {
  NSMenu* menu = [[[NSMenu alloc] initWithTitle:@"EPG Window"] autorelease];

  NSMenu* file = addMenu(menu, @"File");
  addItems(file, [NSArray arrayWithObjects:@"Commit", @"commit:", @"s", nil], entries);
  addItems(file, [NSArray arrayWithObjects:@"Export", @"exportPlaybacks:", @"e", nil], exporter);
  addItems(file, [NSArray arrayWithObjects:@"Close", @"performClose:", @"w", @"Quit", @"terminate:", @"q", nil], nil);

  NSMenu* edit = addMenu(menu, @"Edit");
  addItems(edit,
           [NSArray arrayWithObjects:@"Cut", @"cut:", @"x", @"Copy", @"copy:", @"c", @"Paste", @"paste:", @"v",
                                     @"Select All", @"selectAll:", @"a", nil],
           nil);
  addItems(edit,
           [NSArray arrayWithObjects:@"Revert", @"revert:", @"r", @"Duplicate", @"duplicate:", @"d", @"Remove",
                                     @"remove:", @"\b", nil],
           entries);
  addItems(edit,
           [NSArray arrayWithObjects:@"Find", @"find:", @"f", @"Go to List", @"goToList:", @"l", @"Go to Editor",
                                     @"goToEditor:", @"t", @"Go to Question", @"goToQuestion:", @"g", nil],
           nil);
  return menu;
}
