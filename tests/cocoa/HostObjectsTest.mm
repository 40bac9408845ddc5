#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

#import "cocoa/bridge/ExceptionGuard.h"
#import "tests/cocoa/BundleUser.h"
#import "tests/cocoa/HostDictionaries.h"

// What the plug-in does with objects of a host's own classes, and what a host may do with the plug-in's.

namespace {

std::atomic<bool> changersStop{false};
std::atomic<int> changersRunning{0};

}  // namespace

/// Changes a store from another thread, for as long as nobody stops it.
@interface StoreChanger : NSObject
+ (void)change:(NSMutableDictionary*)store;
@end

@implementation StoreChanger

+ (void)change:(NSMutableDictionary*)store {
  ++changersRunning;
  while (!changersStop) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    for (int number = 0; number < 100; ++number) {
      [store setObject:[NSDictionary dictionaryWithObject:@"T" forKey:@"title"]
                forKey:[NSString stringWithFormat:@"E%d", number]];
    }
    for (int number = 0; number < 100; ++number) {
      [store removeObjectForKey:[NSString stringWithFormat:@"E%d", number]];
    }
    [pool drain];
  }
  --changersRunning;
}

@end

namespace {

using Bundle = BundleUser;

NSMutableDictionary* entry(NSString* title) { return [NSMutableDictionary dictionaryWithObject:title forKey:@"title"]; }

/// The name of what a host's handler catches.
template <typename Call>
std::string raisedBy(const Call& call) {
  return text([epg::cocoa::exceptionRaisedBy(call) name]);
}

RaisingDictionary* raisingItem(NSString* uniqueID) {
  RaisingDictionary* item = [[[RaisingDictionary alloc] init] autorelease];
  [item setObject:uniqueID forKey:@"uniqueID"];
  [item setObject:@"Raising" forKey:@"title"];
  return item;
}

// Exceptions.

TEST_F(Bundle, ExceptionOfAHostsDictionaryReachesTheHostThatCalled) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  RaisingDictionary* item = raisingItem(@"E1");
  RaisingDictionary* store = [[[RaisingDictionary alloc] init] autorelease];
  [store setObject:item forKey:@"E1"];
  NSDictionary* playback = event(@"E1", @"P", [NSDate date]);
  // From now on there is a folder for day files.
  [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return dayFile() != nil; }));
  for (RaisingDictionary* raising : {item, store}) {
    [plugin setEpgItems:store];
    [plugin setEditedItems:[NSMutableArray arrayWithObject:item]];
    [raising setRaises:YES];
    EXPECT_EQ(raisedBy([&] { [plugin duplicateEPGItemWithUniqueID:@"E1" toItemWithUniqueID:@"E2"]; }), "HostTrouble");
    EXPECT_EQ(raisedBy([&] { [plugin xmlEventWithDictionary:playback]; }), "HostTrouble");
    EXPECT_EQ(raisedBy([&] { [plugin writeXMLFileWithEvents:only(playback) forDate:[NSDate date]]; }), "HostTrouble");
    EXPECT_EQ(raisedBy([&] { [plugin commitEditing]; }), "HostTrouble");
    EXPECT_EQ(raisedBy([&] { [plugin setEditedEPGUniqueIDs:only(@"E1")]; }), "HostTrouble");
    [raising setRaises:NO];
    EXPECT_EQ(raisedBy([&] { [plugin setEditedEPGUniqueIDs:only(@"E1")]; }), "nil");
  }
  [store setRaises:YES];
  EXPECT_EQ(raisedBy([&] { [plugin removeEPGItemsWithUniqueIDs:only(@"E1")]; }), "HostTrouble");
  EXPECT_EQ(raisedBy([&] { [plugin saveEPGItemsToFile]; }), "HostTrouble");
  [store setRaises:NO];
  [item setRaises:YES];
  EXPECT_EQ(raisedBy([&] { [plugin xmlEventWithDictionary:item]; }), "HostTrouble");
  [item setRaises:NO];
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  [plugin saveEPGItemsToFile];
  EXPECT_TRUE(
      eventually([&] { return [[[savedStore() objectForKey:@"E1"] objectForKey:@"title"] isEqual:@"Raising"] != NO; }));
  EXPECT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  [plugin release];
}

TEST_F(Bundle, ExceptionOfAHostsListReachesTheHostAndNothingHasBegun) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:reports];
  RaisingArray* list = [[[RaisingArray alloc] init] autorelease];
  EXPECT_EQ(raisedBy([&] { [plugin setEditedEPGUniqueIDs:list]; }), "HostTrouble");
  EXPECT_EQ(raisedBy([&] { [plugin removeEPGItemsWithUniqueIDs:list]; }), "HostTrouble");
  EXPECT_EQ(raisedBy([&] { [plugin tagsXMLElementWithTags:list]; }), "HostTrouble");
  EXPECT_EQ(raisedBy([&] { [plugin exportEvents:list configurationFilename:@"Test"]; }), "HostTrouble");
  EXPECT_EQ([reports count], 0u);
  [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [reports count] == 1; }));
  EXPECT_TRUE([reports reportAtIndex:0].succeeded);
  [plugin setDelegate:nil];
  [plugin release];
}

TEST_F(Bundle, ExceptionOnTheExportThreadIsItsReportAndTheNextExportRuns) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:reports];
  RaisingDictionary* item = raisingItem(@"E1");
  RaisingDictionary* store = [[[RaisingDictionary alloc] init] autorelease];
  [store setObject:item forKey:@"E1"];
  [plugin setEpgItems:store];
  RaisingDictionary* playback = [[[RaisingDictionary alloc] init] autorelease];
  [playback setObject:@"E1" forKey:@"eventEPGUniqueID"];
  NSUInteger exports = 0;
  for (RaisingDictionary* raising : {item, store, playback}) {
    for (const bool raises : {true, false}) {
      [raising setRaises:raises];
      [plugin exportEvents:[NSArray arrayWithObjects:event(@"E1", @"P", [NSDate date]), playback, nil]
          configurationFilename:@"Test"];
      ++exports;
      ASSERT_TRUE(eventually([&] { return [reports count] == exports && [plugin retainCount] == 1; }));
      const Report report = [reports reportAtIndex:exports - 1];
      EXPECT_EQ(report.succeeded, !raises) << exports;
      EXPECT_EQ(report.message, raises ? "EPG XML File Write Error" : "") << exports;
      EXPECT_FALSE(report.onMainThread);
      EXPECT_EQ(dayFile() == nil, exports == 1);
    }
  }
  [plugin setDelegate:nil];
  [plugin release];
}

TEST_F(Bundle, ExceptionOnTheSaveThreadIsLoggedAndTheNextSaveRuns) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  RaisingDictionary* item = raisingItem(@"E1");
  [[plugin epgItems] setObject:item forKey:@"E1"];
  [item setRaises:YES];
  testing::internal::CaptureStderr();
  [plugin saveEPGItemsToFile];
  EXPECT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_NE(log.find("An error occured while trying to write the EPG items to disk ("), std::string::npos) << log;
  EXPECT_NE(log.find("HostTrouble"), std::string::npos) << log;
  EXPECT_EQ(savedStore(), nil);
  [item setRaises:NO];
  [plugin saveEPGItemsToFile];
  EXPECT_TRUE(eventually([&] { return [savedStore() count] == 1; }));
  [plugin release];
}

TEST_F(Bundle, NoExceptionButThePlatformsLeavesAnOperation) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSString* endless = [[[EndlessString alloc] init] autorelease];
  NSMutableDictionary* store = [plugin epgItems];
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  [plugin commitEditing];
  NSMutableDictionary* item = [store objectForKey:@"E1"];
  [item setObject:@"A" forKey:@"title"];
  EXPECT_EQ(raisedBy([&] { [endless stringByEscapingSpecialCharacters]; }), "NSGenericException");
  EXPECT_EQ(raisedBy([&] { [store objectForKey:endless]; }), "NSGenericException");
  EXPECT_EQ(raisedBy([&] { [store setObject:entry(@"B") forKey:endless]; }), "NSGenericException");
  EXPECT_EQ(raisedBy([&] { [store setObject:endless forKey:@"E2"]; }), "NSGenericException");
  EXPECT_EQ(raisedBy([&] { [store removeObjectForKey:endless]; }), "NSGenericException");
  EXPECT_EQ(raisedBy([&] { [item objectForKey:endless]; }), "NSGenericException");
  EXPECT_EQ(raisedBy([&] { [item setObject:@"B" forKey:endless]; }), "NSGenericException");
  EXPECT_EQ(raisedBy([&] { [item setObject:endless forKey:@"title"]; }), "NSGenericException");
  EXPECT_EQ(raisedBy([&] { [item removeObjectForKey:endless]; }), "NSGenericException");
  EXPECT_EQ(raisedBy([&] { [plugin errorWithMessage:endless]; }), "NSGenericException");
  EXPECT_EQ(raisedBy([&] { [plugin setEditedEPGUniqueIDs:only(endless)]; }), "NSGenericException");
  EXPECT_EQ(raisedBy([&] { [plugin exportEvents:[NSArray array] configurationFilename:endless]; }),
            "NSGenericException");
  EXPECT_EQ(text([item objectForKey:@"title"]), "A");
  [plugin release];
}

// Dictionaries of a host's own.

TEST_F(Bundle, StoreOfAHostMayHoldALockOfItsOwnAroundTheHostsCalls) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:reports];
  LockedDictionary* store = [[[LockedDictionary alloc] init] autorelease];
  [store setObject:entry(@"A") forKey:@"E1"];
  [plugin setEpgItems:store];
  [[store lock] lock];
  [plugin exportEvents:only(event(@"E1", @"P", [NSDate date])) configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [store lookUpsBesideTheMainThread] == 1; }));
  // The export waits for the host's lock; the host's own call must not wait for the export.
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  [plugin commitEditing];
  [[store lock] unlock];
  ASSERT_TRUE(eventually([&] { return [reports count] == 1; }));
  EXPECT_TRUE([reports reportAtIndex:0].succeeded);
  [plugin setDelegate:nil];
  [plugin release];
}

TEST_F(Bundle, KeyOfAHostThatRaisesKeepsNobodyElseFromTheDictionary) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:reports];
  NSMutableDictionary* store = [NSMutableDictionary dictionaryWithObject:entry(@"A") forKey:@"E1"];
  [store setObject:entry(@"B") forKey:[RaisingKey keyInPlaceOf:@"E2"]];
  [plugin setEpgItems:store];
  EXPECT_EQ(raisedBy([&] { [plugin removeEPGItemsWithUniqueIDs:only(@"E2")]; }), "HostTrouble");
  EXPECT_EQ(raisedBy([&] { [plugin duplicateEPGItemWithUniqueID:@"E2" toItemWithUniqueID:@"E3"]; }), "HostTrouble");
  EXPECT_EQ(raisedBy([&] { [plugin duplicateEPGItemWithUniqueID:@"E1" toItemWithUniqueID:@"E2"]; }), "HostTrouble");
  // Another thread would wait for ever, and report nothing, if the plug-in still held the dictionary.
  [plugin exportEvents:only(event(@"E1", @"P", [NSDate date])) configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [reports count] == 1; }));
  [plugin setDelegate:nil];
  [plugin release];
}

TEST_F(Bundle, RemovingLeavesWhatIsNoItemInAHostsStore) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableDictionary* store = [NSMutableDictionary dictionaryWithObject:@"no item" forKey:@"E1"];
  [store setObject:entry(@"A") forKey:@"E2"];
  [plugin setEpgItems:store];
  [plugin removeEPGItemsWithUniqueIDs:[NSArray arrayWithObjects:@"E1", @"E2", @"E3", nil]];
  EXPECT_EQ(text([[store allKeys] componentsJoinedByString:@" "]), "E1");
  [plugin release];
}

// The plug-in's dictionaries.

/// The keys as a `for … in` gets them, a few at a time.
std::vector<std::string> enumeratedKeys(NSDictionary* dictionary) {
  std::vector<std::string> keys;
  NSFastEnumerationState state = {};
  id buffer[2] = {nil, nil};
  while (const NSUInteger count = [dictionary countByEnumeratingWithState:&state objects:buffer count:2]) {
    for (NSUInteger index = 0; index < count; ++index) {
      keys.push_back(text(state.itemsPtr[index]));
    }
  }
  std::sort(keys.begin(), keys.end());
  return keys;
}

TEST_F(Bundle, ItsDictionariesCanBeWalkedThroughInEveryWay) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableDictionary* store = [plugin epgItems];
  NSMutableDictionary* expected = [NSMutableDictionary dictionary];
  for (NSString* key : {@"E1", @"E2", @"E3"}) {
    [store
        setObject:[NSDictionary dictionaryWithObjectsAndKeys:key, @"uniqueID", @"T", @"title", only(@"x"), @"tags", nil]
           forKey:key];
    [expected setObject:[[[store objectForKey:key] copy] autorelease] forKey:key];
  }
  NSDictionary* snapshot =
      [[[NSClassFromString(@"EPGDorvaSelinItemStoreSnapshot") alloc] initWithDictionary:store] autorelease];
  for (NSDictionary* all : {static_cast<NSDictionary*>(store), snapshot}) {
    EXPECT_EQ([all count], 3u);
    EXPECT_EQ(enumeratedKeys(all), (std::vector<std::string>{"E1", "E2", "E3"}));
    NSArray* values = [all allValues];
    ASSERT_EQ([values count], 3u);
    EXPECT_EQ([[NSSet setWithArray:values] count], 3u);
    EXPECT_TRUE([values containsObject:[store objectForKey:@"E2"]]);
    EXPECT_EQ([[[all objectEnumerator] allObjects] count], 3u);
    EXPECT_EQ([[all allKeys] count], 3u);
    EXPECT_TRUE([all isEqual:expected]);
    EXPECT_TRUE([expected isEqual:all]);
    EXPECT_TRUE([[[all copy] autorelease] isEqual:expected]);
    EXPECT_TRUE([[[all mutableCopy] autorelease] isEqual:expected]);
    EXPECT_EQ(text([all description]), text([expected description]));
    id objects[3] = {};
    id keys[3] = {};
    [all getObjects:objects andKeys:keys];
    for (int index = 0; index < 3; ++index) {
      EXPECT_EQ(objects[index], [all objectForKey:keys[index]]);
    }
    EXPECT_EQ([[NSSet setWithObjects:keys count:3] count], 3u);
  }
  NSDictionary* item = [store objectForKey:@"E1"];
  EXPECT_EQ(enumeratedKeys(item), (std::vector<std::string>{"tags", "title", "uniqueID"}));
  EXPECT_TRUE([[item allValues] containsObject:@"T"]);
  EXPECT_TRUE([[[item objectEnumerator] allObjects] containsObject:@"E1"]);
  EXPECT_EQ(text([[item allKeysForObject:@"T"] lastObject]), "title");
  EXPECT_TRUE([item isEqual:[expected objectForKey:@"E1"]]);
  EXPECT_EQ(text([item description]), text([[expected objectForKey:@"E1"] description]));
  // What was walked past is what is handed out.
  NSArray* values = [store allValues];
  EXPECT_NE([values indexOfObjectIdenticalTo:[store objectForKey:@"E3"]], static_cast<NSUInteger>(NSNotFound));
  [store removeAllObjects];
  EXPECT_EQ([store count], 0u);
  EXPECT_EQ([values count], 3u);
  EXPECT_TRUE([store isEqual:[NSDictionary dictionary]]);
  [plugin release];
}

TEST_F(Bundle, StoreCanBeWalkedThroughWhileAnotherThreadChangesIt) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableDictionary* store = [plugin epgItems];
  changersStop = false;
  [NSThread detachNewThreadSelector:@selector(change:) toTarget:[StoreChanger class] withObject:store];
  ASSERT_TRUE(eventually([] { return changersRunning == 1; }));
  const auto walk = [&] {
    for (int round = 0; round < 2000; ++round) {
      NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
      [[[store copy] autorelease] count];
      [[[store mutableCopy] autorelease] count];
      [[store allValues] count];
      [[store allKeys] count];
      [[store description] length];
      [store isEqual:[NSDictionary dictionaryWithObject:@"x" forKey:@"y"]];
      for (const std::string& key : enumeratedKeys(store)) {
        [store objectForKey:[NSString stringWithUTF8String:key.c_str()]];
      }
      [inner drain];
    }
  };
  EXPECT_EQ(raisedBy(walk), "nil");
  changersStop = true;
  EXPECT_TRUE(eventually([] { return changersRunning == 0; }));
  [plugin release];
}

}  // namespace
