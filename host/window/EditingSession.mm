#import "host/window/EditingSession.h"

#import "host/window/EditorState.h"
#import "host/window/KeyboardFocus.h"

@interface EditingSession ()
- (void)letEditorBeUsed:(BOOL)used;
@end

@implementation EditingSession

- (id)initWithPlugin:(NSObject<TelvarinManagerEPGPluginProtocol>*)plugin editorView:(NSView*)editorView {
  self = [super init];
  if (self != nil) {
    _plugin = plugin;
    _editorView = editorView;
    _editedIDs = [[NSArray alloc] init];
  }
  return self;
}

- (void)dealloc {
  [_editedIDs release];
  [_stateBeforeEditing release];
  [_tablesBeforeEditing release];
  [_disabledControls release];
  [super dealloc];
}

- (void)edit:(NSArray*)uniqueIDs {
  [_editedIDs autorelease];
  _editedIDs = [uniqueIDs copy];
  [self letEditorBeUsed:[uniqueIDs count] > 0];
  [_plugin setEditedEPGUniqueIDs:uniqueIDs];
  [_stateBeforeEditing release];
  _stateBeforeEditing = [editorState(_editorView) retain];
  [_tablesBeforeEditing release];
  _tablesBeforeEditing = [tableState(_editorView) retain];
  _tableChanged = NO;
}

/// While nothing is under edit, input would be lost.
- (void)letEditorBeUsed:(BOOL)used {
  if (used) {
    for (NSUInteger index = 0; index < [_disabledControls count]; ++index) {
      [[_disabledControls objectAtIndex:index] setEnabled:YES];
    }
    [_disabledControls release];
    _disabledControls = nil;
  } else if (_disabledControls == nil) {
    NSWindow* window = [_editorView window];
    if (isKeyboardInside(_editorView)) {
      [window makeFirstResponder:[window initialFirstResponder]];
    }
    _disabledControls = [disabledControls(_editorView) retain];
  }
}

- (NSArray*)editedIDs {
  return _editedIDs;
}

- (BOOL)hasUnsavedEdits {
  return [_editedIDs count] > 0 && (_tableChanged || ![editorState(_editorView) isEqual:_stateBeforeEditing]);
}

- (void)commit {
  [_plugin commitEditing];
  // After a commit the editor works on the store itself, until the entries are named again.
  [self edit:[[_editedIDs retain] autorelease]];
}

- (void)revert {
  [_plugin revertEditing];
}

- (void)noteTableChange {
  if (!_tableChanged && [_editedIDs count] > 0 && isKeyboardInside(_editorView) &&
      [[[_editorView window] firstResponder] isKindOfClass:[NSTableView class]]) {
    _tableChanged = [tableState(_editorView) isEqual:_tablesBeforeEditing] ? NO : YES;
  }
}

@end
