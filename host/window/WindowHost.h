#pragma once

#import <AppKit/AppKit.h>

#import <TelvarinManagerEPGPluginProtocol.h>

#import "host/window/NoticeBar.h"
#import "host/window/PlaylistView.h"
#import "host/window/WindowDescription.h"

#ifndef __APPLE__
/// GNUstep has the operations without the protocol.
@protocol NSSplitViewDelegate <NSObject>
@end
#endif

/// A host with one window: the list of entries and playbacks, the editor view of a plug-in that it knows only by the
/// protocol, and the plug-in's other operations as buttons and menu items.
///
/// Settings, read from the user defaults (so also from arguments): "PluginBundle", "DataFolder", "EventsFile"
/// and, for tests, "DescriptionFile".
@interface WindowHost : NSObject <TelvarinManagerEPGPluginProtocol_Delegate,
                                  NSApplicationDelegate,
                                  NSWindowDelegate,
                                  NSSplitViewDelegate> {
 @private
  NSObject<TelvarinManagerEPGPluginProtocol>* _plugin;
  NSWindow* _window;
  WindowDescription* _description;
  PlaylistView* _playlist;
  NSView* _editorView;
  NoticeBar* _notice;
  NSPopUpButton* _configurations;
  NSMutableDictionary* _buttons;
  NSArray* _editedIDs;
  NSArray* _stateBeforeEditing;
  NSArray* _tablesBeforeEditing;
  NSArray* _disabledControls;
  NSArray* _idsAsked;
  NSArray* _idsToRemove;
  NSString* _leftOutOfExport;
  BOOL _tableChanged;
  BOOL _removalDropsEdits;
  BOOL _exportRefused;
  BOOL _storeChanged;
}
@end
