#pragma once

#import <AppKit/AppKit.h>

#import "host/window/Playback.h"

/// The list of playbacks and entries: a search field over a table with multiple selection. The search never hides a
/// selected entry: what is under edit is what the operator sees.
@interface PlaylistView : NSView <NSTableViewDataSource, NSTableViewDelegate> {
 @private
  NSSearchField* _searchField;
  NSTableView* _table;
  NSMutableArray* _playbacks;
  NSArray* _shown;
  NSSet* _alwaysShown;
  id _target;
  BOOL _selecting;
}

- (id)initWithFrame:(NSRect)frame;
/// `target` is told `selectionChanged:` when the user selects other lines. It is not retained.
- (void)setTarget:(id)target;

- (void)setPlaybacks:(NSArray*)playbacks;
- (NSArray*)playbacks;
- (void)addPlayback:(Playback*)playback;
/// Removes the copies that the window made under these IDs.
- (void)removeCopies:(NSSet*)uniqueIDs;
/// Nil when the list has none of this entry.
- (Playback*)lastPlaybackOf:(NSString*)uniqueID;
/// What is scheduled, as the plug-in exports it: every playback but the copies.
- (NSArray*)events;

/// EPG unique IDs of the selected lines, each once, in the list's order. Lines of events without one have no share.
- (NSArray*)selectedIDs;
/// Selects every line of these entries, without telling the target. Lines that the search hides come back.
- (void)selectIDs:(NSArray*)uniqueIDs;

- (NSSearchField*)searchField;
- (NSTableView*)table;

@end
