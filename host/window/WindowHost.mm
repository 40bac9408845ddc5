#import "host/window/WindowHost.h"

#include <math.h>

#import "host/window/EditorState.h"

namespace {

const NSSize windowSize = {900, 520};
const CGFloat margin = 12;
const CGFloat buttonWidth = 96;
const CGFloat buttonHeight = 26;
const CGFloat popUpWidth = 190;
const CGFloat noticeHeight = 30;
const CGFloat listMinimumWidth = 240;
NSString* const withoutID = @"An event without an EPG unique ID has no metadata";
/// Far longer than a save or an export of any size takes.
const NSTimeInterval longestWaitAtEnd = 60;

NSString* setting(NSString* name) { return [[NSUserDefaults standardUserDefaults] stringForKey:name]; }

NSString* count(NSUInteger number, NSString* one, NSString* many) {
  return [NSString stringWithFormat:@"%lu %@", static_cast<unsigned long>(number), number == 1 ? one : many];
}

/// The view after which the keyboard leaves the editor: the last of the chain that its views form.
NSView* lastKeyView(NSView* editorView) {
  NSMutableSet* seen = [NSMutableSet setWithObject:editorView];
  NSView* last = editorView;
  NSView* next = [editorView nextKeyView];
  while (next != nil && ![seen containsObject:next] && [next isDescendantOf:editorView]) {
    [seen addObject:next];
    last = next;
    next = [next nextKeyView];
  }
  return last;
}

BOOL isInEditor(id responder, NSView* editorView) {
  // While a field is edited, the window's editor stands in for it.
  if ([responder isKindOfClass:[NSText class]] && [responder isFieldEditor]) {
    responder = [responder delegate];
  }
  return [responder isKindOfClass:[NSView class]] && [responder isDescendantOf:editorView] ? YES : NO;
}

}  // namespace

@interface WindowHost ()
- (NSString*)loadPlugin;
- (void)makeMenu;
- (void)makeWindow;
- (NSButton*)addButton:(NSString*)title action:(SEL)action at:(NSPoint)origin;
- (void)edit:(NSArray*)uniqueIDs;
- (void)letEditorBeUsed:(BOOL)used;
- (BOOL)hasUnsavedEdits;
- (NSString*)nameOfEdited;
- (void)updateButtons;
- (void)exportEnded:(NSError*)error;
- (void)askAboutUnsavedEditsWith:(SEL)commitAction discard:(SEL)discardAction;
- (void)commit:(id)sender;
- (void)duplicate:(id)sender;
- (void)remove:(id)sender;
@end

@implementation WindowHost

- (void)dealloc {
  [_description release];
  [_window release];
  [_playlist release];
  [_notice release];
  [_configurations release];
  [_buttons release];
  [_editedIDs release];
  [_stateBeforeEditing release];
  [_tablesBeforeEditing release];
  [_disabledControls release];
  [_idsAsked release];
  [_idsToRemove release];
  [_leftOutOfExport release];
  [super dealloc];
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  (void)notification;
  NSString* problem = [self loadPlugin];
  if (problem != nil) {
    NSLog(@"%@", problem);
    exit(1);
  }
  NSArray* playbacks = playbacksInFile(setting(@"EventsFile"), &problem);
  [self makeWindow];
  [self makeMenu];
  [_playlist setPlaybacks:playbacks != nil ? playbacks : [NSArray array]];
  [_notice showMessage:playbacks != nil ? count([playbacks count], @"playback", @"playbacks") : problem];
  [self edit:[NSArray array]];
  if (setting(@"DescriptionFile") != nil) {
    _description = [[WindowDescription alloc] initWithWindow:_window path:setting(@"DescriptionFile")];
  }
  [_window makeKeyAndOrderFront:nil];
  [_window makeFirstResponder:[_playlist table]];
}

/// Nil when the plug-in is there, otherwise what is wrong.
- (NSString*)loadPlugin {
  NSString* path = setting(@"PluginBundle");
  NSBundle* bundle = path != nil ? [NSBundle bundleWithPath:path] : nil;
  Class principal = [bundle principalClass];
  // By name: with clang and GCC's runtime, the protocol that this file could name is another object.
  if (![principal conformsToProtocol:NSProtocolFromString(@"TelvarinManagerEPGPluginProtocol")]) {
    return [NSString stringWithFormat:@"%@ is no EPG plug-in", path];
  }
  _plugin = [[principal alloc] initWithBundle:bundle dataFolderPath:setting(@"DataFolder")];
  [_plugin setDelegate:self];
  return nil;
}

- (void)makeMenu {
  NSMenu* menu = [[[NSMenu alloc] initWithTitle:@"EPG Window"] autorelease];
  NSArray* titles = [NSArray arrayWithObjects:@"File", @"Edit", nil];
  // Title, operation, key.
  NSArray* fileItems = [NSArray arrayWithObjects:@"Commit", @"commit:", @"s", @"Export", @"exportPlaybacks:", @"e",
                                                 @"Close", @"performClose:", @"w", @"Quit", @"terminate:", @"q", nil];
  NSArray* editItems = [NSArray
      arrayWithObjects:@"Cut", @"cut:", @"x", @"Copy", @"copy:", @"c", @"Paste", @"paste:", @"v", @"Select All",
                       @"selectAll:", @"a", @"Revert", @"revert:", @"r", @"Duplicate", @"duplicate:", @"d", @"Remove",
                       @"remove:", @"\b", @"Find", @"find:", @"f", @"Go to List", @"goToList:", @"l", @"Go to Editor",
                       @"goToEditor:", @"t", @"Go to Question", @"goToQuestion:", @"g", nil];
  NSArray* all = [NSArray arrayWithObjects:fileItems, editItems, nil];
  for (NSUInteger index = 0; index < [titles count]; ++index) {
    NSMenu* submenu = [[[NSMenu alloc] initWithTitle:[titles objectAtIndex:index]] autorelease];
    NSArray* items = [all objectAtIndex:index];
    for (NSUInteger item = 0; item < [items count]; item += 3) {
      [submenu addItemWithTitle:[items objectAtIndex:item]
                         action:NSSelectorFromString([items objectAtIndex:item + 1])
                  keyEquivalent:[items objectAtIndex:item + 2]];
    }
    id<NSMenuItem> entry = [menu addItemWithTitle:[titles objectAtIndex:index] action:nullptr keyEquivalent:@""];
    [menu setSubmenu:submenu forItem:entry];
  }
  [NSApp setMainMenu:menu];
#ifndef __APPLE__
  [_window setMenu:menu];
#endif
}

- (void)makeWindow {
  const NSUInteger style =
      NSTitledWindowMask | NSClosableWindowMask | NSMiniaturizableWindowMask | NSResizableWindowMask;
  _window = [[NSWindow alloc] initWithContentRect:NSMakeRect(100, 100, windowSize.width, windowSize.height)
                                        styleMask:style
                                          backing:NSBackingStoreBuffered
                                            defer:NO];
  [_window setReleasedWhenClosed:NO];
  [_window setTitle:[NSString stringWithFormat:@"%@ – %@", [[_plugin class] pluginName],
                                               [setting(@"EventsFile") lastPathComponent]]];
  [_window setDelegate:self];
  NSView* content = [_window contentView];
  const NSSize size = [content bounds].size;
  const CGFloat bottom = margin + noticeHeight + margin;
  const CGFloat middleHeight = size.height - bottom - margin - buttonHeight - margin;

  _notice = [[NoticeBar alloc] initWithFrame:NSMakeRect(margin, margin, size.width - 2 * margin, noticeHeight)];
  [_notice setAutoresizingMask:NSViewWidthSizable | NSViewMaxYMargin];
  [content addSubview:_notice];

  _buttons = [[NSMutableDictionary alloc] init];
  const CGFloat top = size.height - margin - buttonHeight;
  NSArray* names = [NSArray arrayWithObjects:@"Commit", @"Revert", @"Duplicate", @"Remove", nil];
  const SEL actions[] = {@selector(commit:), @selector(revert:), @selector(duplicate:), @selector(remove:)};
  NSView* previous = nil;
  for (NSUInteger index = 0; index < [names count]; ++index) {
    const NSPoint origin = NSMakePoint(margin + static_cast<CGFloat>(index) * (buttonWidth + margin / 2), top);
    NSButton* button = [self addButton:[names objectAtIndex:index] action:actions[index] at:origin];
    [previous setNextKeyView:button];
    previous = button;
  }
  NSButton* exportButton = [self addButton:@"Export"
                                    action:@selector(exportPlaybacks:)
                                        at:NSMakePoint(size.width - margin - buttonWidth, top)];
  [exportButton setAutoresizingMask:NSViewMinXMargin | NSViewMinYMargin];
  _configurations =
      [[NSPopUpButton alloc] initWithFrame:NSMakeRect(size.width - margin - buttonWidth - margin / 2 - popUpWidth, top,
                                                      popUpWidth, buttonHeight)
                                 pullsDown:NO];
  [_configurations setAutoresizingMask:NSViewMinXMargin | NSViewMinYMargin];
  [_configurations addItemsWithTitles:[_plugin configurationFilenames]];
  [content addSubview:_configurations];
  [previous setNextKeyView:_configurations];
  [_configurations setNextKeyView:exportButton];

  NSSplitView* split = [[[NSSplitView alloc]
      initWithFrame:NSMakeRect(margin, bottom, size.width - 2 * margin, middleHeight)] autorelease];
  [split setVertical:YES];
  [split setAutoresizingMask:NSViewWidthSizable | NSViewHeightSizable];
  [split setDelegate:self];
  const CGFloat listWidth = floor(NSWidth([split bounds]) * 0.52);
  _playlist = [[PlaylistView alloc] initWithFrame:NSMakeRect(0, 0, listWidth, middleHeight) target:self];
  [split addSubview:_playlist];
  _editorView = [_plugin editorView];
  [_editorView setFrame:NSMakeRect(0, 0, NSWidth([split bounds]) - listWidth - [split dividerThickness], middleHeight)];
  [split addSubview:_editorView];
  [content addSubview:split];
  [split adjustSubviews];

  const NSSize smallest = [_plugin minimumEditorViewSize];
  const NSSize largest = [_plugin maximumEditorViewSize];
  const CGFloat besideEditor = 2 * margin + listMinimumWidth + [split dividerThickness];
  const CGFloat aboveAndBelow = size.height - middleHeight;
  // Wide enough for the row of buttons, too.
  [_window setContentMinSize:NSMakeSize(fmax(smallest.width + besideEditor, 740), smallest.height + aboveAndBelow)];
  [_window setContentMaxSize:NSMakeSize(largest.width + besideEditor, largest.height + aboveAndBelow)];

  NSView* last = lastKeyView(_editorView);
  [[_playlist table] setNextKeyView:[_editorView nextKeyView] != nil ? [_editorView nextKeyView] : _editorView];
  [last setNextKeyView:[_buttons objectForKey:@"Commit"]];
  [exportButton setNextKeyView:[_playlist searchField]];
  [_window setInitialFirstResponder:[_playlist table]];
  [_window center];
}

- (NSButton*)addButton:(NSString*)title action:(SEL)action at:(NSPoint)origin {
  NSButton* button =
      [[[NSButton alloc] initWithFrame:NSMakeRect(origin.x, origin.y, buttonWidth, buttonHeight)] autorelease];
  [button setTitle:title];
  [button setBezelStyle:NSRoundedBezelStyle];
  [button setTarget:self];
  [button setAction:action];
  [button setAutoresizingMask:NSViewMaxXMargin | NSViewMinYMargin];
  [_buttons setObject:button forKey:title];
  [[_window contentView] addSubview:button];
  return button;
}

- (CGFloat)splitView:(NSSplitView*)splitView constrainMinCoordinate:(CGFloat)proposed ofSubviewAt:(NSInteger)index {
  (void)splitView;
  (void)index;
  return fmax(proposed, listMinimumWidth);
}

- (CGFloat)splitView:(NSSplitView*)splitView constrainMaxCoordinate:(CGFloat)proposed ofSubviewAt:(NSInteger)index {
  (void)index;
  const CGFloat room = NSWidth([splitView bounds]) - [splitView dividerThickness];
  return fmin(proposed, room - [_plugin minimumEditorViewSize].width);
}

// Both sides grow and shrink with the window, the list only as far as the editor keeps its smallest size.
- (void)splitView:(NSSplitView*)splitView resizeSubviewsWithOldSize:(NSSize)oldSize {
  const CGFloat room = NSWidth([splitView bounds]) - [splitView dividerThickness];
  const CGFloat share = oldSize.width > 0 ? NSWidth([_playlist frame]) / oldSize.width : 0.5;
  CGFloat listWidth = floor(NSWidth([splitView bounds]) * share);
  listWidth = fmin(fmax(listWidth, listMinimumWidth), room - [_plugin minimumEditorViewSize].width);
  const CGFloat height = NSHeight([splitView bounds]);
  [_playlist setFrame:NSMakeRect(0, 0, listWidth, height)];
  [_editorView setFrame:NSMakeRect(listWidth + [splitView dividerThickness], 0, room - listWidth, height)];
}

// Editing.

- (void)edit:(NSArray*)uniqueIDs {
  // A question was about what is under edit until now.
  if ([_notice isAsking]) {
    [_notice stopAsking];
  }
  [_editedIDs autorelease];
  _editedIDs = [uniqueIDs copy];
  [self letEditorBeUsed:[uniqueIDs count] > 0];
  [_plugin setEditedEPGUniqueIDs:uniqueIDs];
  [_stateBeforeEditing release];
  _stateBeforeEditing = [editorState(_editorView) retain];
  [_tablesBeforeEditing release];
  _tablesBeforeEditing = [tableState(_editorView) retain];
  _tableChanged = NO;
  [self updateButtons];
}

/// What would be typed while nothing is under edit would belong to nothing.
- (void)letEditorBeUsed:(BOOL)used {
  if (used) {
    for (NSUInteger index = 0; index < [_disabledControls count]; ++index) {
      [[_disabledControls objectAtIndex:index] setEnabled:YES];
    }
    [_disabledControls release];
    _disabledControls = nil;
  } else if (_disabledControls == nil) {
    if (isInEditor([_window firstResponder], _editorView)) {
      [_window makeFirstResponder:[_playlist table]];
    }
    _disabledControls = [disabledControls(_editorView) retain];
  }
}

// After every event. A tag that was clicked off and on again is where it was, but the working copies are not.
- (void)windowDidUpdate:(NSNotification*)notification {
  (void)notification;
  if (!_tableChanged && [_editedIDs count] > 0 && [[_window firstResponder] isKindOfClass:[NSTableView class]] &&
      isInEditor([_window firstResponder], _editorView)) {
    _tableChanged = [tableState(_editorView) isEqual:_tablesBeforeEditing] ? NO : YES;
  }
}

- (BOOL)hasUnsavedEdits {
  return [_editedIDs count] > 0 && (_tableChanged || ![editorState(_editorView) isEqual:_stateBeforeEditing]);
}

- (NSString*)nameOfEdited {
  if ([_editedIDs count] != 1) {
    return count([_editedIDs count], @"entry", @"entries");
  }
  NSEnumerator* playbacks = [[_playlist playbacks] objectEnumerator];
  while (Playback* playback = [playbacks nextObject]) {
    if ([[playback uniqueID] isEqual:[_editedIDs lastObject]]) {
      return [NSString stringWithFormat:@"“%@”", [playback title]];
    }
  }
  return [_editedIDs lastObject];
}

- (void)updateButtons {
  const BOOL any = [_editedIDs count] > 0 ? YES : NO;
  [[_buttons objectForKey:@"Commit"] setEnabled:any];
  [[_buttons objectForKey:@"Revert"] setEnabled:any];
  [[_buttons objectForKey:@"Duplicate"] setEnabled:[_editedIDs count] == 1 ? YES : NO];
  [[_buttons objectForKey:@"Remove"] setEnabled:any];
}

- (void)selectionChanged:(id)sender {
  (void)sender;
  NSArray* selected = [_playlist selectedIDs];
  const BOOL onlyWithoutID = [selected count] == 0 && [[[_playlist table] selectedRowIndexes] count] > 0 ? YES : NO;
  if ([selected isEqual:_editedIDs]) {
    if (onlyWithoutID) {
      [_notice showMessage:withoutID];
    }
    return;
  }
  if ([self hasUnsavedEdits]) {
    [_idsAsked release];
    _idsAsked = [selected copy];
    [_playlist selectIDs:_editedIDs];
    [self askAboutUnsavedEditsWith:@selector(commitAndGoOn:) discard:@selector(discardAndGoOn:)];
    return;
  }
  [self edit:selected];
  [_notice showMessage:[selected count] > 0 ? [NSString stringWithFormat:@"Editing %@", [self nameOfEdited]]
                       : onlyWithoutID      ? withoutID
                                            : @""];
}

- (void)askAboutUnsavedEditsWith:(SEL)commitAction discard:(SEL)discardAction {
  [_notice ask:[NSString stringWithFormat:@"The changes to %@ are not saved.", [self nameOfEdited]]
       answers:[NSArray arrayWithObjects:@"Commit", @"Discard", @"Keep Editing", nil]
       actions:[NSArray arrayWithObjects:NSStringFromSelector(commitAction), NSStringFromSelector(discardAction),
                                         @"keepEditing:", nil]
        target:self];
}

- (void)goOn {
  NSArray* uniqueIDs = [_idsAsked autorelease];
  _idsAsked = nil;
  [_playlist selectIDs:uniqueIDs];
  [self edit:uniqueIDs];
}

- (void)commitAndGoOn:(id)sender {
  [self commit:sender];
  [self goOn];
}

- (void)discardAndGoOn:(id)sender {
  (void)sender;
  [self goOn];
  [_notice showMessage:@"The changes are discarded."];
}

- (void)keepEditing:(id)sender {
  (void)sender;
  [_notice showMessage:[NSString stringWithFormat:@"Editing %@", [self nameOfEdited]]];
}

- (void)commit:(id)sender {
  (void)sender;
  if ([_editedIDs count] == 0) {
    return;
  }
  [_notice stopAsking];
  NSString* name = [self nameOfEdited];
  [_plugin commitEditing];
  _storeChanged = YES;
  // Named anew, because until then what is clicked in the editor would change the store itself.
  [self edit:[[_editedIDs retain] autorelease]];
  [_notice showMessage:[NSString stringWithFormat:@"%@ committed", name]];
}

- (void)revert:(id)sender {
  (void)sender;
  [_notice stopAsking];
  [_plugin revertEditing];
  [_notice showMessage:[self hasUnsavedEdits] ? @"Texts are reverted. Clicked tags stay until they are discarded."
                                              : @"Reverted"];
}

- (void)duplicate:(id)sender {
  (void)sender;
  if ([_editedIDs count] != 1) {
    return;
  }
  if ([self hasUnsavedEdits]) {
    [_idsAsked release];
    _idsAsked = [_editedIDs copy];
    [self askAboutUnsavedEditsWith:@selector(commitAndDuplicate:) discard:@selector(discardAndDuplicate:)];
    return;
  }
  NSString* source = [_editedIDs lastObject];
  NSMutableSet* titles = [NSMutableSet set];
  Playback* original = nil;
  NSEnumerator* playbacks = [[_playlist playbacks] objectEnumerator];
  while (Playback* playback = [playbacks nextObject]) {
    [titles addObject:[playback title]];
    if ([[playback uniqueID] isEqual:source]) {
      original = playback;
    }
  }
  NSString* title = [[original title] stringByAppendingString:@" (copy)"];
  for (int number = 2; [titles containsObject:title]; ++number) {
    title = [NSString stringWithFormat:@"%@ (copy %d)", [original title], number];
  }
  // Unique by itself: the plug-in also keeps the copies of earlier sessions, of which this list knows nothing.
  NSString* target = [NSString stringWithFormat:@"%@ copy %@", source, [[NSUUID UUID] UUIDString]];
  Playback* copy = [[[Playback alloc] initWithUniqueID:target title:title copyOf:original] autorelease];
  [_plugin duplicateEPGItemWithUniqueID:source toItemWithUniqueID:target];
  _storeChanged = YES;
  [[_playlist searchField] setStringValue:@""];
  [_playlist addPlayback:copy];
  [_playlist selectIDs:[NSArray arrayWithObject:target]];
  [self edit:[NSArray arrayWithObject:target]];
  [_notice showMessage:[NSString stringWithFormat:@"Duplicated as “%@”", title]];
}

- (void)commitAndDuplicate:(id)sender {
  [self commitAndGoOn:sender];
  [self duplicate:sender];
}

- (void)discardAndDuplicate:(id)sender {
  [self discardAndGoOn:sender];
  [self duplicate:sender];
}

- (void)remove:(id)sender {
  (void)sender;
  if ([_editedIDs count] > 0) {
    [_idsToRemove release];
    _idsToRemove = [_editedIDs copy];
    _removalDropsEdits = [self hasUnsavedEdits];
    NSString* edits = _removalDropsEdits ? @" and drop the unsaved changes" : @"";
    [_notice ask:[NSString stringWithFormat:@"Remove the metadata of %@%@?", [self nameOfEdited], edits]
         answers:[NSArray arrayWithObjects:@"Remove", @"Cancel", nil]
         actions:[NSArray arrayWithObjects:@"removeForGood:", @"keepEditing:", nil]
          target:self];
  }
}

- (void)removeForGood:(id)sender {
  if ([self hasUnsavedEdits] && !_removalDropsEdits) {
    // Made since the question, which did not speak of them.
    [self remove:sender];
    return;
  }
  NSString* name = [self nameOfEdited];
  [_plugin removeEPGItemsWithUniqueIDs:_idsToRemove];
  _storeChanged = YES;
  // A copy that only this window knows goes with its metadata; an event of the file stays, without.
  NSMutableArray* gone = [NSMutableArray array];
  NSEnumerator* playbacks = [[_playlist playbacks] objectEnumerator];
  while (Playback* playback = [playbacks nextObject]) {
    if ([playback isCopy] && [_idsToRemove containsObject:[playback uniqueID]]) {
      [gone addObject:playback];
    }
  }
  for (NSUInteger index = 0; index < [gone count]; ++index) {
    [_playlist removePlayback:[gone objectAtIndex:index]];
  }
  [_playlist selectIDs:_editedIDs];
  [self edit:[_playlist selectedIDs]];
  [_notice showMessage:[NSString stringWithFormat:@"The metadata of %@ is removed", name]];
}

// Export.

- (void)exportPlaybacks:(id)sender {
  (void)sender;
  NSMutableArray* events = [NSMutableArray array];
  NSEnumerator* playbacks = [[_playlist playbacks] objectEnumerator];
  while (Playback* playback = [playbacks nextObject]) {
    if (![playback isCopy]) {
      [events addObject:[playback event]];
    }
  }
  NSString* leftOut = [self hasUnsavedEdits]
                          ? [NSString stringWithFormat:@" without the unsaved changes to %@", [self nameOfEdited]]
                          : @"";
  [_notice showMessage:[NSString stringWithFormat:@"Exporting %@%@…", count([events count], @"playback", @"playbacks"),
                                                  leftOut]];
  _exportRefused = NO;
  [_plugin exportEvents:events configurationFilename:[_configurations titleOfSelectedItem]];
  if (!_exportRefused) {
    [_leftOutOfExport release];
    _leftOutOfExport = [leftOut copy];
  }
}

// On the export's own thread, or within exportPlaybacks: when it is refused.
- (void)epgExportEventCompleted:(BOOL)succeeded error:(NSError*)error {
  (void)succeeded;
  if ([NSThread isMainThread]) {
    _exportRefused = YES;
  }
  [self performSelectorOnMainThread:@selector(exportEnded:) withObject:error waitUntilDone:NO];
}

- (void)exportEnded:(NSError*)error {
  NSString* message = error != nil
                          ? [error localizedDescription]
                          : [NSString stringWithFormat:@"Exported to %@%@", [_plugin exportPath], _leftOutOfExport];
  [_notice showMessage:message];
}

// Ways around the window for the keyboard.

- (void)find:(id)sender {
  (void)sender;
  [_window makeFirstResponder:[_playlist searchField]];
}

- (void)goToList:(id)sender {
  (void)sender;
  [_window makeFirstResponder:[_playlist table]];
}

- (void)goToEditor:(id)sender {
  (void)sender;
  if ([_editedIDs count] > 0) {
    [_window makeFirstResponder:[_editorView nextKeyView]];
  } else {
    [_notice showMessage:@"Nothing is selected to edit"];
  }
}

- (void)goToQuestion:(id)sender {
  (void)sender;
  if ([_notice isAsking]) {
    [_window makeFirstResponder:[_notice firstAnswer]];
  }
}

// The end.

- (BOOL)windowShouldClose:(id)sender {
  (void)sender;
  if (![self hasUnsavedEdits]) {
    return YES;
  }
  [self askAboutUnsavedEditsWith:@selector(commitAndClose:) discard:@selector(discardAndClose:)];
  return NO;
}

- (void)commitAndClose:(id)sender {
  [self commit:sender];
  [_window close];
}

- (void)discardAndClose:(id)sender {
  (void)sender;
  [self edit:[NSArray array]];
  [_window close];
}

- (void)windowWillClose:(NSNotification*)notification {
  (void)notification;
  [_description stop];
  [NSApp terminate:self];
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)application {
  (void)application;
  return [self windowShouldClose:_window] ? NSTerminateNow : NSTerminateCancel;
}

/// Saves and exports run on threads that keep the plug-in, and that the end of the process would cut short.
- (void)waitForThreads {
  NSDate* end = [NSDate dateWithTimeIntervalSinceNow:longestWaitAtEnd];
  while ([_plugin retainCount] > 1 && [end timeIntervalSinceNow] > 0) {
    [NSThread sleepForTimeInterval:0.005];
  }
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  (void)notification;
  [self waitForThreads];
  if (_storeChanged) {
    // A save that was asked for while another one wrote was dropped. Removing nothing saves the whole store.
    [_plugin removeEPGItemsWithUniqueIDs:[NSArray array]];
    [self waitForThreads];
  }
  [_plugin setDelegate:nil];
}

@end
