#import "host/window/WindowHost.h"

#import "host/window/MainMenu.h"
#import "host/window/Text.h"

namespace {

/// Far longer than a save or an export of any size takes.
const NSTimeInterval longestWaitAtEnd = 60;

NSString* setting(NSString* name) { return [[NSUserDefaults standardUserDefaults] stringForKey:name]; }

}  // namespace

@interface WindowHost ()
- (NSString*)loadPlugin;
- (void)makeWindow;
- (void)waitForThreads;
@end

@implementation WindowHost

- (void)dealloc {
  [_description release];
  [_exporter release];
  [_entries release];
  [_mainWindow release];
  [super dealloc];
}

// The start.

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  (void)notification;
  NSString* problem = [self loadPlugin];
  if (problem != nil) {
    NSLog(@"%@", problem);
    exit(1);
  }
  NSArray* playbacks = playbacksInFile(setting(@"EventsFile"), &problem);
  [self makeWindow];
  [[_mainWindow playlist] setPlaybacks:playbacks != nil ? playbacks : [NSArray array]];
  [[_mainWindow notice] showMessage:playbacks != nil ? countText([playbacks count], "playback", "playbacks") : problem];
  [_entries edit:[NSArray array]];
  NSWindow* window = [_mainWindow window];
  if (setting(@"DescriptionFile") != nil) {
    _description = [[WindowDescription alloc] initWithWindow:window path:setting(@"DescriptionFile")];
  }
  [window makeKeyAndOrderFront:nil];
  [window makeFirstResponder:[[_mainWindow playlist] table]];
}

/// Nil when the plug-in is there, otherwise what is wrong.
- (NSString*)loadPlugin {
  NSString* path = setting(@"PluginBundle");
  NSBundle* bundle = path != nil ? [NSBundle bundleWithPath:path] : nil;
  Class principal = [bundle principalClass];
  // By name: with clang and GCC's runtime, the protocol that this file could name is another object.
  if (![principal conformsToProtocol:NSProtocolFromString(@"TelvarinManagerEPGPluginProtocol")]) {
    return [NSString stringWithFormat:@"%@ is no EPG plug-in", path];
  }
  _plugin = [[principal alloc] initWithBundle:bundle dataFolderPath:setting(@"DataFolder")];
  return nil;
}

- (void)makeWindow {
  NSString* title =
      [NSString stringWithFormat:@"%@ – %@", [[_plugin class] pluginName], [setting(@"EventsFile") lastPathComponent]];
  _mainWindow = [[MainWindow alloc] initWithPlugin:_plugin title:title];
  _entries = [[EntryCommands alloc] initWithPlugin:_plugin mainWindow:_mainWindow];
  _exporter = [[PlaybackExport alloc] initWithPlugin:_plugin mainWindow:_mainWindow entries:_entries];
  [_plugin setDelegate:_exporter];
  [_mainWindow setEntries:_entries exporter:_exporter];
  [[_mainWindow window] setDelegate:self];
  NSMenu* menu = mainMenu(_entries, _exporter);
  [NSApp setMainMenu:menu];
#ifndef __APPLE__
  [[_mainWindow window] setMenu:menu];
#endif
}

- (void)windowDidUpdate:(NSNotification*)notification {
  (void)notification;
  [[_entries session] noteTableChange];
}

// Ways around the window for the keyboard, from the menu.

- (void)find:(id)sender {
  (void)sender;
  [[_mainWindow window] makeFirstResponder:[[_mainWindow playlist] searchField]];
}

- (void)goToList:(id)sender {
  (void)sender;
  [[_mainWindow window] makeFirstResponder:[[_mainWindow playlist] table]];
}

- (void)goToEditor:(id)sender {
  (void)sender;
  if ([[[_entries session] editedIDs] count] > 0) {
    [[_mainWindow window] makeFirstResponder:[[_mainWindow editorView] nextKeyView]];
  } else {
    [[_mainWindow notice] showMessage:@"Nothing is selected to edit"];
  }
}

- (void)goToQuestion:(id)sender {
  (void)sender;
  if ([[_mainWindow notice] isAsking]) {
    [[_mainWindow window] makeFirstResponder:[[_mainWindow notice] firstAnswer]];
  }
}

// The end.

- (BOOL)windowShouldClose:(id)sender {
  (void)sender;
  return [_entries mayCloseWindow];
}

- (void)windowWillClose:(NSNotification*)notification {
  (void)notification;
  [_description stop];
  [NSApp terminate:self];
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)application {
  (void)application;
  return [_entries mayCloseWindow] ? NSTerminateNow : NSTerminateCancel;
}

/// Saves and exports run on threads that keep the plug-in, and that the end of the process would cut short.
- (void)waitForThreads {
  NSDate* end = [NSDate dateWithTimeIntervalSinceNow:longestWaitAtEnd];
  while ([_plugin retainCount] > 1 && [end timeIntervalSinceNow] > 0) {
    [NSThread sleepForTimeInterval:0.005];
  }
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  (void)notification;
  [self waitForThreads];
  if ([_entries hasChangedStore]) {
    // A save that was asked for while another one wrote was dropped. Removing nothing saves the whole store.
    [_plugin removeEPGItemsWithUniqueIDs:[NSArray array]];
    [self waitForThreads];
  }
  [_plugin setDelegate:nil];
}

@end
