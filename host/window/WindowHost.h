#pragma once

#import <AppKit/AppKit.h>

#import <TelvarinManagerEPGPluginProtocol.h>

#import "host/window/EntryCommands.h"
#import "host/window/MainWindow.h"
#import "host/window/PlaybackExport.h"
#import "host/window/WindowDescription.h"

/// The start and the end of the window's program: loads a plug-in that it knows only by the protocol, opens the window
/// over its editor view, and waits for its threads before the program ends.
///
/// Settings, read from the user defaults (so also from arguments): "PluginBundle", "DataFolder", "EventsFile"
/// and, for tests, "DescriptionFile".
@interface WindowHost : NSObject <NSApplicationDelegate, NSWindowDelegate> {
 @private
  NSObject<TelvarinManagerEPGPluginProtocol>* _plugin;
  MainWindow* _mainWindow;
  EntryCommands* _entries;
  PlaybackExport* _exporter;
  WindowDescription* _description;
}
@end
