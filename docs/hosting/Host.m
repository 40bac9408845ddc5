#import <Foundation/Foundation.h>
#import <TelvarinManagerEPGPluginProtocol.h>

@interface Host : NSObject <TelvarinManagerEPGPluginProtocol_Delegate> {
  BOOL _done;
}
@end

@implementation Host

// On the export's own thread.
- (void)epgExportEventCompleted:(BOOL)succeeded error:(NSError *)error {
  NSLog(@"%@", succeeded ? @"exported" : [error localizedDescription]);
  [self performSelectorOnMainThread:@selector(finish) withObject:nil waitUntilDone:NO];
}

- (void)finish {
  _done = YES;
}

- (void)runWithBundle:(NSString *)bundlePath dataFolder:(NSString *)dataFolder {
  NSBundle *bundle = [NSBundle bundleWithPath:bundlePath];
  NSObject<TelvarinManagerEPGPluginProtocol> *plugin =
      [[[bundle principalClass] alloc] initWithBundle:bundle dataFolderPath:dataFolder];
  if (plugin == nil) [NSException raise:NSInvalidArgumentException format:@"%@ is no EPG plug-in", bundlePath];
  [plugin setDelegate:self];

  // An entry with metadata. A host with a window shows [plugin editorView] in between.
  [plugin setEditedEPGUniqueIDs:[NSArray arrayWithObject:@"E1"]];
  [plugin commitEditing];

  NSDate *start = [NSDate date];
  NSDictionary *event = [NSDictionary
      dictionaryWithObjectsAndKeys:@"E1", @"eventEPGUniqueID", @"P1", @"eventEPGPlaybackUniqueID", start,
                                   @"eventEPGStartDateTime", [start dateByAddingTimeInterval:1800],
                                   @"eventEPGEndDateTime", nil];
  [plugin exportEvents:[NSArray arrayWithObject:event]
      configurationFilename:[[plugin configurationFilenames] objectAtIndex:0]];

  // Save and export run on threads that keep the plug-in: when nobody else does, both have ended.
  while (!_done || [plugin retainCount] > 1) {
    [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:0.01]];
  }
  [plugin setDelegate:nil];
  [plugin release];
}

@end

int main(int argc, char **argv) {
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  if (argc == 3) {
    Host *host = [[[Host alloc] init] autorelease];
    [host runWithBundle:[NSString stringWithUTF8String:argv[1]] dataFolder:[NSString stringWithUTF8String:argv[2]]];
  }
  [pool drain];
  return argc == 3 ? 0 : 2;
}
