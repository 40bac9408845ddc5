#pragma once

#import <AppKit/AppKit.h>

#import <TelvarinManagerEPGPluginProtocol.h>

/// Knows which entries are under edit in the plug-in's editor view, and whether there are unsaved edits. The protocol
/// does not tell, so the view's content is compared with what it was at the start.
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

/// Starts to edit these entries and drops unsaved edits. Without entries the editor is disabled.
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
