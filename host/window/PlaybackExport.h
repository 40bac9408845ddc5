#pragma once

#import <Foundation/Foundation.h>

#import <TelvarinManagerEPGPluginProtocol.h>

#import "host/window/EntryCommands.h"
#import "host/window/MainWindow.h"

/// Exports the playbacks of the list with the chosen configuration, and tells how it ended. The plug-in's delegate.
@interface PlaybackExport : NSObject <TelvarinManagerEPGPluginProtocol_Delegate> {
 @private
  NSObject<TelvarinManagerEPGPluginProtocol>* _plugin;
  MainWindow* _mainWindow;
  EntryCommands* _entries;
  NSString* _leftOut;
  BOOL _isRefused;
}

/// None of them is retained.
- (id)initWithPlugin:(NSObject<TelvarinManagerEPGPluginProtocol>*)plugin
          mainWindow:(MainWindow*)mainWindow
             entries:(EntryCommands*)entries;

- (void)exportPlaybacks:(id)sender;

@end
