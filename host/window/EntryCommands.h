#pragma once

#import <AppKit/AppKit.h>

#import <TelvarinManagerEPGPluginProtocol.h>

#import "host/window/EditingSession.h"
#import "host/window/MainWindow.h"

/// What an operator does to entries: selects them for editing, commits, reverts, duplicates and removes. Asks before
/// changes would be lost.
@interface EntryCommands : NSObject {
 @private
  NSObject<TelvarinManagerEPGPluginProtocol>* _plugin;
  MainWindow* _mainWindow;
  EditingSession* _session;
  NSArray* _idsAsked;
  NSArray* _idsToRemove;
  BOOL _removalDropsEdits;
  BOOL _hasChangedStore;
}

/// Neither is retained.
- (id)initWithPlugin:(NSObject<TelvarinManagerEPGPluginProtocol>*)plugin mainWindow:(MainWindow*)mainWindow;

/// Called when the operator has changed the selection in the list.
- (void)selectionChanged:(id)sender;
- (void)commit:(id)sender;
- (void)revert:(id)sender;
- (void)duplicate:(id)sender;
- (void)remove:(id)sender;

/// Starts to edit these entries, without a question.
- (void)edit:(NSArray*)uniqueIDs;
- (EditingSession*)session;
/// What is under edit, in words: a title or a number of entries.
- (NSString*)nameOfEdited;
/// Whether the window may close at once. If not, the operator is asked, and the answer closes the window.
- (BOOL)mayCloseWindow;
/// Whether any of these operations has made the plug-in save its store.
- (BOOL)hasChangedStore;

@end
