#import <objc/runtime.h>

#include <atomic>
#include <string>

#import "tests/cocoa/BundleUser.h"
#import "tests/cocoa/MemoryRounds.h"
#import "tests/cocoa/ObjectCount.h"

// The bundle's export, and what a plug-in leaves behind.

/// Raises an exception in every report.
@interface RaisingDelegate : NSObject <TelvarinManagerEPGPluginProtocol_Delegate>
@end

@implementation RaisingDelegate

- (void)epgExportEventCompleted:(BOOL)succeeded error:(NSError*)error {
  (void)succeeded;
  (void)error;
  [NSException raise:NSGenericException format:@"of the delegate"];
}

@end

namespace {

using Bundle = BundleUser;
using BundleExport = BundlePlugin;

TEST_F(BundleExport, ExportWritesTheDayFileAndReportsOnItsThread) {
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:reports];
  [[plugin epgItems] setObject:[NSDictionary dictionaryWithObjectsAndKeys:@"Kids' Corner", @"title", @"Q&A",
                                                                          @"description", only(@"Live"), @"tags", nil]
                        forKey:@"E1"];
  NSMutableArray* events = [NSMutableArray array];
  [events addObject:event(@"E1", @"P-2", localDate(2012, 3, 5, 23, 5))];
  [events addObject:event(@"E1", nil, localDate(2012, 3, 5, 6, 30))];
  [events addObject:@"no event"];
  [plugin exportEvents:events configurationFilename:@"Test"];
  [events removeAllObjects];
  ASSERT_TRUE(eventually([&] { return [reports count] == 1; }));
  EXPECT_TRUE([reports reportAtIndex:0].succeeded);
  EXPECT_FALSE([reports reportAtIndex:0].onMainThread);
  EXPECT_EQ(text([plugin exportPath]), text(exportFolder_));
  const std::string file = text(dayFile());
  EXPECT_NE(file.find("<programs dateFrom=\"05-03-2012\" dateTo=\"05-03-2012\">"), std::string::npos) << file;
  EXPECT_NE(file.find("<title>Kids&#39; Corner</title>"), std::string::npos);
  EXPECT_NE(file.find("<description>Q&amp;A</description>"), std::string::npos);
  EXPECT_NE(file.find("<imgUrl></imgUrl>"), std::string::npos);
  EXPECT_LT(file.find("<hour>6</hour>"), file.find("<hour>23</hour>"));
}

IMP originalExport;
std::atomic<int> exportsBesideTheMainThread{0};

void countedExport(id self, SEL operation, NSArray* events) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (![NSThread isMainThread] && [events isKindOfClass:[NSArray class]] &&
      [[[events lastObject] objectForKey:@"eventEPGPlaybackUniqueID"] isEqual:@"P-1"]) {
    ++exportsBesideTheMainThread;
  }
  [pool drain];
  functionOf<void(id, SEL, NSArray*)>(originalExport)(self, operation, events);
}

TEST_F(BundleExport, ExportThreadEntersThroughItsOperationWithACopyOfTheEvents) {
  Method method = class_getInstanceMethod([plugin class], @selector(exportEventsThread:));
  originalExport = method_setImplementation(method, implementationOf(countedExport));
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:reports];
  [[plugin epgItems] setObject:dictionary(@"title", @"Dawn") forKey:@"E1"];
  NSMutableArray* events = [NSMutableArray arrayWithObject:event(@"E1", @"P-1", localDate(2012, 3, 5, 6, 30))];
  [plugin exportEvents:events configurationFilename:@"Test"];
  [events removeAllObjects];
  EXPECT_TRUE(eventually([&] { return [reports count] == 1; }));
  EXPECT_EQ(exportsBesideTheMainThread, 1);
  EXPECT_NE(text(dayFile()).find("<title>Dawn</title>"), std::string::npos);
  method_setImplementation(method, originalExport);
}

TEST_F(Bundle, ExportWithoutFolderReportsTheWriteError) {
  [@"<plist version=\"1.0\"><dict/></plist>" writeToFile:[dataFolder_ stringByAppendingPathComponent:@"Test.epgconf"]
                                              atomically:YES
                                                encoding:NSUTF8StringEncoding
                                                   error:NULL];
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  ReportKeeper* reports = [[ReportKeeper alloc] init];
  [plugin setDelegate:reports];
  [plugin exportEvents:nil configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [reports count] == 1; }));
  const Report report = [reports reportAtIndex:0];
  EXPECT_FALSE(report.succeeded);
  EXPECT_EQ(report.message, "EPG XML File Write Error");
  EXPECT_EQ(report.code, -1);
  EXPECT_EQ(report.domain, text([[plugin errorWithMessage:@""] domain]));
  EXPECT_EQ(report.userInfoEntries, 1u);
  EXPECT_EQ([plugin exportPath], nil);
  [plugin release];
  [reports release];
}

TEST_F(BundleExport, DelegateThatRaisesKeepsNothingFromGoingOn) {
  RaisingDelegate* raising = [[[RaisingDelegate alloc] init] autorelease];
  [plugin setDelegate:raising];
  [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  ReportKeeper* keeper = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:keeper];
  [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [keeper count] == 1; }));
  EXPECT_TRUE([keeper reportAtIndex:0].succeeded);
}

TEST_F(BundleExport, ExportFromInsideAReportIsRefusedOnThatThread) {
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [reports setExporter:plugin];
  [plugin setDelegate:reports];
  [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [reports count] == 2; }));
  const Report refusal = [reports reportAtIndex:1];
  EXPECT_FALSE(refusal.succeeded);
  EXPECT_EQ(refusal.message, "Already Busy Exporting!");
  EXPECT_EQ(refusal.domain + ".TelvarinManager.EPG", text([[plugin errorWithMessage:@""] domain]));
}

TEST_F(BundleExport, DelegateWithoutTheOperationHearsNothingAndTheNextExportRuns) {
  id silent = [[[NSObject alloc] init] autorelease];
  [plugin setDelegate:silent];
  [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return dayFile() != nil; }));
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:reports];
  [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [reports count] == 1; }));
  EXPECT_TRUE([reports reportAtIndex:0].succeeded);
}

TEST_F(BundleExport, XMLElementsAreThoseOfTheDayFile) {
  NSDictionary* item = [NSDictionary
      dictionaryWithObjectsAndKeys:@"A & B <'\"> 日本", @"title", @"x", @"description", @"u", @"imageURL",
                                   [NSArray arrayWithObjects:@"Live", @"Kids' & more", nil], @"tags", nil];
  [[plugin epgItems] setObject:item forKey:@"E1"];
  NSDictionary* playback = event(@"E1", @"P-100", localDate(2012, 3, 5, 6, 5));
  NSXMLElement* program = [plugin xmlEventWithDictionary:playback];
  [plugin exportEvents:only(playback) configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return dayFile() != nil; }));
  NSXMLDocument* document = [[[NSXMLDocument alloc] initWithXMLString:dayFile() options:NSXMLNodeOptionsNone
                                                                error:NULL] autorelease];
  NSArray* written = [[document rootElement] elementsForName:@"program"];
  ASSERT_EQ([written count], 1u);
  // Both sides as text, the file's without the white space between its elements.
  std::string expected;
  const std::string file = text(dayFile());
  for (std::size_t position = file.find("<program "); position < file.find("</programs>"); ++position) {
    if (file[position] == '\n') {
      position = file.find_first_not_of(' ', position + 1) - 1;
    } else {
      expected += file[position];
    }
  }
  EXPECT_EQ(text([[program XMLString] stringByEscapingSpecialCharacters]), expected);
  EXPECT_EQ([plugin xmlEventWithDictionary:event(@"none", nil, localDate(2012, 3, 5, 6, 5))], nil);
  EXPECT_EQ(text([[plugin tagsXMLElementWithTags:nil] XMLString]), "<tags></tags>");
  EXPECT_EQ(text([[plugin dateXMLElementWithDate:localDate(1999, 12, 31, 0, 0)] XMLString]),
            "<date><day>31</day><month>12</month><year>-1</year></date>");
  EXPECT_EQ(text([[plugin timeXMLElementWithDate:localDate(2012, 3, 5, 0, 0)] XMLString]),
            "<time><hour>0</hour><minute>0</minute></time>");
  EXPECT_EQ(text([plugin shortDateStringWithDate:localDate(2012, 3, 4, 18, 0)]), "20120304");
  EXPECT_EQ([plugin shortDateStringWithDate:nil], nil);
}

TEST_F(BundleExport, DayFileIsNamedAfterTheGivenDate) {
  EXPECT_FALSE([plugin writeXMLFileWithEvents:[NSArray array] forDate:[NSDate date]]);
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:reports];
  [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [reports count] == 1; }));
  EXPECT_TRUE([plugin writeXMLFileWithEvents:[NSArray array] forDate:localDate(2012, 3, 4, 18, 0)]);
  EXPECT_TRUE(
      [[NSFileManager defaultManager] fileExistsAtPath:[exportFolder_ stringByAppendingPathComponent:@"20120304.xml"]]);
  EXPECT_FALSE([plugin writeXMLFileWithEvents:[NSArray array] forDate:nil]);
}

TEST_F(BundleExport, TildeAndNamedUserBecomeHomeFolders) {
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:reports];
  NSUInteger exports = 0;
  for (NSString* path : {@"~/No Such Folder", @"~root/No Such Folder", @"~nobody-of-that-name/x"}) {
    NSString* configuration = [NSString
        stringWithFormat:@"<plist version=\"1.0\"><dict><key>exportPath</key><string>%@</string></dict></plist>", path];
    [configuration writeToFile:[dataFolder_ stringByAppendingPathComponent:@"Home.epgconf"]
                    atomically:YES
                      encoding:NSUTF8StringEncoding
                         error:NULL];
    ++exports;
    ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
    [plugin exportEvents:[NSArray array] configurationFilename:@"Home"];
    ASSERT_TRUE(eventually([&] { return [reports count] == exports; }));
    EXPECT_EQ(text([plugin exportPath]), text([path stringByExpandingTildeInPath]));
  }
}

TEST_F(Bundle, CreateEditExportDropLeavesNoObjectBehind) {
  if (!ObjectCount::works) GTEST_SKIP() << "NOT TESTED: objects cannot be counted with this compiler";
  const ObjectCount plugins("EPGDorvaSelinManagerPlugin");
  const ObjectCount items("EPGDorvaSelinItem");
  const ObjectCount stores("EPGDorvaSelinItemStore");
  const ObjectCount snapshots("EPGDorvaSelinItemStoreSnapshot");
  NSObject* strange = [[NSObject alloc] init];
  ReportKeeper* reports = [[ReportKeeper alloc] init];
  const NSUInteger holdsOnBundle = [bundle_ retainCount];
  const int rounds = repeatForMemory([&] {
    EPGDorvaSelinManagerPlugin* plugin = newPlugin();
    [plugin setDelegate:reports];
    [plugin setEditedEPGUniqueIDs:[NSArray arrayWithObjects:@"E1", @"E2", nil]];
    [[[plugin editedItems] objectAtIndex:0] setObject:@"Title" forKey:@"title"];
    [[[plugin editedItems] objectAtIndex:1] setObject:strange forKey:@"strange"];
    [plugin commitEditing];
    [[[plugin epgItems] objectForKey:@"E2"] removeObjectForKey:@"strange"];
    [plugin duplicateEPGItemWithUniqueID:@"E1" toItemWithUniqueID:@"E3"];
    EXPECT_EQ(text([[[plugin epgItems] objectForKey:@"E3"] objectForKey:@"title"]), "Title");
    [plugin exportEvents:only(event(@"E1", @"P", [NSDate date])) configurationFilename:@"Test"];
    [plugin release];
  });
  EXPECT_EQ([reports count], static_cast<NSUInteger>(rounds));
  EXPECT_EQ(plugins.made(), rounds);
  EXPECT_EQ(plugins.alive(), 0);
  EXPECT_EQ(snapshots.alive(), 0);
  EXPECT_EQ(stores.made(), rounds);
  EXPECT_EQ(stores.alive(), 0);
  EXPECT_GE(items.made(), 2 * rounds);
  EXPECT_EQ(items.alive(), 0);
  // What the objects held of the host's.
  EXPECT_EQ([strange retainCount], 1u);
  EXPECT_EQ([reports retainCount], 1u);
  EXPECT_EQ([bundle_ retainCount], holdsOnBundle);
  [strange release];
  [reports release];
}

}  // namespace
