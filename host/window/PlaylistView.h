#pragma once

#import <AppKit/AppKit.h>

#import "host/window/Playback.h"

/// The list of playbacks and entries: a search field over a table with multiple selection. The search never hides a
/// selected entry, so that the operator sees what is under edit.
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
/// `target` is told `selectionChanged:` when the operator selects other lines. It is not retained.
- (void)setTarget:(id)target;

- (void)setPlaybacks:(NSArray*)playbacks;
- (NSArray*)playbacks;
- (void)addPlayback:(Playback*)playback;
/// Removes the copies that the window made under these IDs.
- (void)removeCopies:(NSSet*)uniqueIDs;
/// The last line of this entry; nil when there is none.
- (Playback*)lastPlaybackOf:(NSString*)uniqueID;
/// The events for the plug-in's export: those of all lines but the copies.
- (NSArray*)events;

/// EPG unique IDs of the selected lines, each once, in the list's order. Events without an ID are left out.
- (NSArray*)selectedIDs;
/// Selects every line of these entries, also those that the search hides. The target is not told.
- (void)selectIDs:(NSArray*)uniqueIDs;

- (NSSearchField*)searchField;
- (NSTableView*)table;

@end
