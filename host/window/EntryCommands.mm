#import "host/window/EntryCommands.h"

#import "host/window/Text.h"

namespace {

NSString* const withoutID = @"An event without an EPG unique ID has no metadata";

}  // namespace

@interface EntryCommands ()
- (void)askAboutUnsavedEditsWith:(SEL)commitAction discard:(SEL)discardAction;
- (void)showWhatIsEdited;
- (NSString*)titleOfCopyOf:(Playback*)original;
@end

@implementation EntryCommands

- (id)initWithPlugin:(NSObject<TelvarinManagerEPGPluginProtocol>*)plugin mainWindow:(MainWindow*)mainWindow {
  self = [super init];
  if (self != nil) {
    _plugin = plugin;
    _mainWindow = mainWindow;
    _session = [[EditingSession alloc] initWithPlugin:plugin editorView:[mainWindow editorView]];
  }
  return self;
}

- (void)dealloc {
  [_session release];
  [_idsAsked release];
  [_idsToRemove release];
  [super dealloc];
}

- (EditingSession*)session {
  return _session;
}

- (BOOL)hasChangedStore {
  return _hasChangedStore;
}

- (void)edit:(NSArray*)uniqueIDs {
  // The question was about the entries that were under edit until now.
  if ([[_mainWindow notice] isAsking]) {
    [[_mainWindow notice] stopAsking];
  }
  [_session edit:uniqueIDs];
  [_mainWindow enableButtonsForEntries:[uniqueIDs count]];
}

- (NSString*)nameOfEdited {
  NSArray* edited = [_session editedIDs];
  if ([edited count] != 1) {
    return countText([edited count], "entry", "entries");
  }
  Playback* playback = [[_mainWindow playlist] lastPlaybackOf:[edited lastObject]];
  return playback != nil ? [NSString stringWithFormat:@"“%@”", [playback title]] : [edited lastObject];
}

- (void)showWhatIsEdited {
  [[_mainWindow notice] showMessage:[NSString stringWithFormat:@"Editing %@", [self nameOfEdited]]];
}

// Selecting.

- (void)selectionChanged:(id)sender {
  (void)sender;
  PlaylistView* playlist = [_mainWindow playlist];
  NSArray* selected = [playlist selectedIDs];
  const BOOL onlyWithoutID = [selected count] == 0 && [[[playlist table] selectedRowIndexes] count] > 0 ? YES : NO;
  if ([selected isEqual:[_session editedIDs]]) {
    if (onlyWithoutID) {
      [[_mainWindow notice] showMessage:withoutID];
    }
    return;
  }
  if ([_session hasUnsavedEdits]) {
    [_idsAsked release];
    _idsAsked = [selected copy];
    [playlist selectIDs:[_session editedIDs]];
    [self askAboutUnsavedEditsWith:@selector(commitAndGoOn:) discard:@selector(discardAndGoOn:)];
    return;
  }
  [self edit:selected];
  if ([selected count] > 0) {
    [self showWhatIsEdited];
  } else {
    [[_mainWindow notice] showMessage:onlyWithoutID ? withoutID : @""];
  }
}

- (void)askAboutUnsavedEditsWith:(SEL)commitAction discard:(SEL)discardAction {
  [[_mainWindow notice] ask:[NSString stringWithFormat:@"The changes to %@ are not saved.", [self nameOfEdited]]
                    answers:[NSArray arrayWithObjects:@"Commit", @"Discard", @"Keep Editing", nil]
                    actions:[NSArray arrayWithObjects:NSStringFromSelector(commitAction),
                                                      NSStringFromSelector(discardAction), @"keepEditing:", nil]
                     target:self];
}

- (void)goOn {
  NSArray* uniqueIDs = [_idsAsked autorelease];
  _idsAsked = nil;
  [[_mainWindow playlist] selectIDs:uniqueIDs];
  [self edit:uniqueIDs];
}

- (void)commitAndGoOn:(id)sender {
  [self commit:sender];
  [self goOn];
}

- (void)discardAndGoOn:(id)sender {
  (void)sender;
  [self goOn];
  [[_mainWindow notice] showMessage:@"The changes are discarded."];
}

- (void)keepEditing:(id)sender {
  (void)sender;
  [self showWhatIsEdited];
}

// Saving.

- (void)commit:(id)sender {
  (void)sender;
  if ([[_session editedIDs] count] == 0) {
    return;
  }
  [[_mainWindow notice] stopAsking];
  NSString* name = [self nameOfEdited];
  [_session commit];
  _hasChangedStore = YES;
  [[_mainWindow notice] showMessage:[NSString stringWithFormat:@"%@ committed", name]];
}

- (void)revert:(id)sender {
  (void)sender;
  [[_mainWindow notice] stopAsking];
  [_session revert];
  [[_mainWindow notice] showMessage:[_session hasUnsavedEdits]
                                        ? @"Texts are reverted. Clicked tags stay until they are discarded."
                                        : @"Reverted"];
}

// Duplicating.

- (void)duplicate:(id)sender {
  (void)sender;
  NSArray* edited = [_session editedIDs];
  if ([edited count] != 1) {
    return;
  }
  if ([_session hasUnsavedEdits]) {
    [_idsAsked release];
    _idsAsked = [edited copy];
    [self askAboutUnsavedEditsWith:@selector(commitAndDuplicate:) discard:@selector(discardAndDuplicate:)];
    return;
  }
  PlaylistView* playlist = [_mainWindow playlist];
  NSString* source = [edited lastObject];
  Playback* original = [playlist lastPlaybackOf:source];
  NSString* title = [self titleOfCopyOf:original];
  // Must be unique in the store, where copies of earlier sessions are that this list does not know.
  NSString* target = [NSString stringWithFormat:@"%@ copy %@", source, [[NSUUID UUID] UUIDString]];
  Playback* copy = [[[Playback alloc] initWithUniqueID:target title:title copyOf:original] autorelease];
  [_plugin duplicateEPGItemWithUniqueID:source toItemWithUniqueID:target];
  _hasChangedStore = YES;
  [[playlist searchField] setStringValue:@""];
  [playlist addPlayback:copy];
  [playlist selectIDs:[NSArray arrayWithObject:target]];
  [self edit:[NSArray arrayWithObject:target]];
  [[_mainWindow notice] showMessage:[NSString stringWithFormat:@"Duplicated as “%@”", title]];
}

/// A title that the list does not show yet.
- (NSString*)titleOfCopyOf:(Playback*)original {
  NSSet* titles = [NSSet setWithArray:[[[_mainWindow playlist] playbacks] valueForKey:@"title"]];
  NSString* title = [[original title] stringByAppendingString:@" (copy)"];
  for (int number = 2; [titles containsObject:title]; ++number) {
    title = [NSString stringWithFormat:@"%@ (copy %d)", [original title], number];
  }
  return title;
}

- (void)commitAndDuplicate:(id)sender {
  [self commitAndGoOn:sender];
  [self duplicate:sender];
}

- (void)discardAndDuplicate:(id)sender {
  [self discardAndGoOn:sender];
  [self duplicate:sender];
}

// Removing.

- (void)remove:(id)sender {
  (void)sender;
  NSArray* edited = [_session editedIDs];
  if ([edited count] == 0) {
    return;
  }
  [_idsToRemove release];
  _idsToRemove = [edited copy];
  _removalDropsEdits = [_session hasUnsavedEdits];
  NSString* edits = _removalDropsEdits ? @" and drop the unsaved changes" : @"";
  [[_mainWindow notice] ask:[NSString stringWithFormat:@"Remove the metadata of %@%@?", [self nameOfEdited], edits]
                    answers:[NSArray arrayWithObjects:@"Remove", @"Cancel", nil]
                    actions:[NSArray arrayWithObjects:@"removeForGood:", @"keepEditing:", nil]
                     target:self];
}

- (void)removeForGood:(id)sender {
  if ([_session hasUnsavedEdits] && !_removalDropsEdits) {
    // The edits were made after the question, which did not mention them.
    [self remove:sender];
    return;
  }
  PlaylistView* playlist = [_mainWindow playlist];
  NSString* name = [self nameOfEdited];
  [_plugin removeEPGItemsWithUniqueIDs:_idsToRemove];
  _hasChangedStore = YES;
  // A copy exists only in this list, so its line goes too. An event of the file stays, without metadata.
  [playlist removeCopies:[NSSet setWithArray:_idsToRemove]];
  [playlist selectIDs:[_session editedIDs]];
  [self edit:[playlist selectedIDs]];
  [[_mainWindow notice] showMessage:[NSString stringWithFormat:@"The metadata of %@ is removed", name]];
}

// Closing the window.

- (BOOL)mayCloseWindow {
  if (![_session hasUnsavedEdits]) {
    return YES;
  }
  [self askAboutUnsavedEditsWith:@selector(commitAndClose:) discard:@selector(discardAndClose:)];
  return NO;
}

- (void)commitAndClose:(id)sender {
  [self commit:sender];
  [[_mainWindow window] close];
}

- (void)discardAndClose:(id)sender {
  (void)sender;
  [self edit:[NSArray array]];
  [[_mainWindow window] close];
}

@end
