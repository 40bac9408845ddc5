#import "host/window/PlaybackExport.h"

#import "host/window/Text.h"

@interface PlaybackExport ()
- (void)exportEnded:(NSError*)error;
@end

@implementation PlaybackExport

- (id)initWithPlugin:(NSObject<TelvarinManagerEPGPluginProtocol>*)plugin
          mainWindow:(MainWindow*)mainWindow
             entries:(EntryCommands*)entries {
  self = [super init];
  if (self != nil) {
    _plugin = plugin;
    _mainWindow = mainWindow;
    _entries = entries;
  }
  return self;
}

- (void)dealloc {
  [_leftOut release];
  [super dealloc];
}

- (void)exportPlaybacks:(id)sender {
  (void)sender;
  NSArray* events = [[_mainWindow playlist] events];
  NSString* leftOut = [[_entries session] hasUnsavedEdits]
                          ? [NSString stringWithFormat:@" without the unsaved changes to %@", [_entries nameOfEdited]]
                          : @"";
  NSString* count = countText([events count], "playback", "playbacks");
  [[_mainWindow notice] showMessage:[NSString stringWithFormat:@"Exporting %@%@…", count, leftOut]];
  _isRefused = NO;
  [_plugin exportEvents:events configurationFilename:[_mainWindow configurationName]];
  // A refused export leaves the words of the one that is still running.
  if (!_isRefused) {
    [_leftOut release];
    _leftOut = [leftOut copy];
  }
}

/// On the export's own thread, or within `exportPlaybacks:` when the export is refused.
- (void)epgExportEventCompleted:(BOOL)succeeded error:(NSError*)error {
  (void)succeeded;
  if ([NSThread isMainThread]) {
    _isRefused = YES;
  }
  [self performSelectorOnMainThread:@selector(exportEnded:) withObject:error waitUntilDone:NO];
}

- (void)exportEnded:(NSError*)error {
  NSString* message = error != nil ? [error localizedDescription]
                                   : [NSString stringWithFormat:@"Exported to %@%@", [_plugin exportPath], _leftOut];
  [[_mainWindow notice] showMessage:message];
}

@end
