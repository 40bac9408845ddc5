#pragma once

#import <AppKit/AppKit.h>

#import <TelvarinManagerEPGPluginProtocol.h>

/// What is under edit in the plug-in's editor view, and whether it was changed there since. The plug-in's protocol does
/// not tell of changes, so the view is compared with what it held before.
@interface EditingSession : NSObject {
 @private
  NSObject<TelvarinManagerEPGPluginProtocol>* _plugin;
  NSView* _editorView;
  NSArray* _editedIDs;
  NSArray* _stateBeforeEditing;
  NSArray* _tablesBeforeEditing;
  NSArray* _disabledControls;
  BOOL _tableChanged;
}

/// The plug-in and its view are not retained.
- (id)initWithPlugin:(NSObject<TelvarinManagerEPGPluginProtocol>*)plugin editorView:(NSView*)editorView;

/// Puts these entries under edit and drops what was not committed. Without any the editor cannot be used.
- (void)edit:(NSArray*)uniqueIDs;
/// EPG unique IDs; empty when nothing is under edit.
- (NSArray*)editedIDs;
- (BOOL)hasUnsavedEdits;
/// The entries stay under edit.
- (void)commit;
- (void)revert;
/// To be called after every event in the window. A tag that was clicked off and on again looks as before, but the
/// plug-in's working copies have changed.
- (void)noteTableChange;

@end
