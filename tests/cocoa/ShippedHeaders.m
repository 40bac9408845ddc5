// A host in plain Objective-C that knows nothing of this project but the headers in the bundle, and with them uses the
// operations outside the protocol. Tells the first line that goes wrong.
#import <EPGDorvaSelinKeyConstants.h>
#import <EPGDorvaSelinManagerPlugin.h>
#import <NSString+HTML.h>
#import <TelvarinManagerEPGPluginProtocol.h>
#include <stdio.h>

#define EXPECT(condition)                                      \
  if (!(condition)) {                                          \
    fprintf(stderr, "line %d: not %s\n", __LINE__, #condition); \
    return 1;                                                  \
  }

static int useOperations(NSString *bundlePath, NSString *dataFolder) {
  NSBundle *bundle = [NSBundle bundleWithPath:bundlePath];
  Class principal = [bundle principalClass];
  EXPECT([[principal pluginName] isEqual:@"EPG DorvaSelin"]);
  EPGDorvaSelinManagerPlugin *plugin = [[[principal alloc] initWithBundle:bundle
                                                           dataFolderPath:dataFolder] autorelease];
  NSDate *start = [NSDate dateWithTimeIntervalSinceReferenceDate:0];
  NSDictionary *item = [NSDictionary dictionaryWithObject:@"Kids' Corner" forKey:@"title"];
  NSDictionary *event = [NSDictionary
      dictionaryWithObjectsAndKeys:@"E1", @"eventEPGUniqueID", start, @"eventEPGStartDateTime", start,
                                   @"eventEPGEndDateTime", nil];

  [[plugin epgItems] setObject:item forKey:@"E1"];
  [plugin saveEPGItemsToFileThread:[plugin epgItems]];
  NSString *file = [dataFolder stringByAppendingPathComponent:@"EPGItems.plist"];
  EXPECT([[NSDictionary dictionaryWithContentsOfFile:file] isEqual:[plugin epgItems]]);
  [plugin setEditedItems:[NSMutableArray array]];
  EXPECT([[plugin editedItems] count] == 0);
  [plugin setEpgItems:[NSMutableDictionary dictionaryWithObject:item forKey:@"E1"]];
  EXPECT([[plugin epgItems] count] == 1);

  EXPECT([[[plugin xmlEventWithDictionary:event] name] isEqual:@"program"]);
  EXPECT([[[plugin dateXMLElementWithDate:start] name] isEqual:@"date"]);
  EXPECT([[[plugin timeXMLElementWithDate:start] name] isEqual:@"time"]);
  EXPECT([[[plugin tagsXMLElementWithTags:[NSArray array]] name] isEqual:@"tags"]);
  EXPECT([[plugin shortDateStringWithDate:start] length] == 8);
  EXPECT(![plugin writeXMLFileWithEvents:[NSArray arrayWithObject:event] forDate:start]);
  EXPECT([[[plugin errorWithMessage:@"message"] localizedDescription] isEqual:@"message"]);
  EXPECT([plugin stringValue] == nil);
  EXPECT([principal isDate:start equalToDate:start]);
  EXPECT([[@"Kids'" stringByEscapingSpecialCharacters] isEqual:@"Kids&#39;"]);
  return 0;
}

int main(int argc, char **argv) {
  if (argc != 3) return 2;
  NSAutoreleasePool *pool = [[NSAutoreleasePool alloc] init];
  const int result = useOperations([NSString stringWithUTF8String:argv[1]], [NSString stringWithUTF8String:argv[2]]);
  [pool drain];
  return result;
}
