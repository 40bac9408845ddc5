#pragma once

#import <AppKit/AppKit.h>

#import <TelvarinManagerEPGPluginProtocol.h>

#import "host/window/NoticeBar.h"
#import "host/window/PlaylistView.h"

#ifndef __APPLE__
/// GNUstep has the operations without the protocol.
@protocol NSSplitViewDelegate <NSObject>
@end
#endif

/// The window and where everything in it stands: a row of buttons on top, the list beside the plug-in's editor view in
/// the middle, the notice bar at the foot; their smallest sizes, and the order in which the Tab key visits them.
@interface MainWindow : NSObject <NSSplitViewDelegate> {
 @private
  NSObject<TelvarinManagerEPGPluginProtocol>* _plugin;
  NSWindow* _window;
  PlaylistView* _playlist;
  NSSplitView* _split;
  NSView* _editorView;
  NoticeBar* _notice;
  NSMutableDictionary* _buttons;
  NSPopUpButton* _configurations;
}

/// The plug-in is not retained: its retain count tells whether threads still use it.
- (id)initWithPlugin:(NSObject<TelvarinManagerEPGPluginProtocol>*)plugin title:(NSString*)title;

/// `entries` is told `commit:`, `revert:`, `duplicate:`, `remove:` and `selectionChanged:`, `exporter`
/// `exportPlaybacks:`.
- (void)setEntries:(id)entries exporter:(id)exporter;

- (NSWindow*)window;
- (PlaylistView*)playlist;
- (NSView*)editorView;
- (NoticeBar*)notice;
/// The export configuration that the operator chose.
- (NSString*)configurationName;
/// Enables the buttons that can be used while so many entries are under edit.
- (void)enableButtonsForEntries:(NSUInteger)count;

@end
