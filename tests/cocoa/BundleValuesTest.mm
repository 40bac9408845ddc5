#include <stdio.h>

#include <string>
#include <vector>

#import "tests/cocoa/BundleUser.h"

// Values of every kind, through the bundle's items and its store.

namespace {

using Bundle = BundleUser;
using BundleValues = BundlePlugin;

NSDictionary* valuesOfEveryKind() {
  const unsigned char bytes[] = {0, 1, 254, 255};
  NSMutableDictionary* values = [NSMutableDictionary dictionary];
  [values setObject:[NSNumber numberWithBool:YES] forKey:@"yes"];
  [values setObject:[NSNumber numberWithBool:NO] forKey:@"no"];
  [values setObject:[NSNumber numberWithInt:-7] forKey:@"integer"];
  [values setObject:[NSNumber numberWithLongLong:INT64_MIN] forKey:@"smallest"];
  [values setObject:[NSNumber numberWithLongLong:INT64_MAX] forKey:@"large"];
  [values setObject:[NSNumber numberWithUnsignedLongLong:UINT64_MAX] forKey:@"largest"];
  [values setObject:[NSNumber numberWithDouble:0.1] forKey:@"real"];
  [values setObject:[NSNumber numberWithDouble:1.0] forKey:@"whole real"];
  [values setObject:[NSDate dateWithTimeIntervalSinceReferenceDate:123456789.0625] forKey:@"date"];
  [values setObject:[NSData dataWithBytes:bytes length:sizeof bytes] forKey:@"data"];
  [values setObject:@"Ä 日本 🛰 \n" forKey:@"string 🗝"];
  const unichar zero[] = {'a', 0, 'b'};
  [values setObject:[NSString stringWithCharacters:zero length:3] forKey:@"with zero"];
  [values setObject:[NSArray arrayWithObjects:@"x", [NSNumber numberWithInt:1],
                                              [NSDictionary dictionaryWithObject:[NSArray array] forKey:@"k"], nil]
             forKey:@"nested"];
  return values;
}

/// A character of every kind, those among them that need an escape in some form of property lists.
NSString* everyCharacter() {
  NSMutableString* string = [NSMutableString string];
  for (unichar unit = 1; unit < 0x180; ++unit) {
    [string appendFormat:@"%C", unit];
  }
  [string appendString:@"€\uFFFD\uD7FF日本🛰"];
  return string;
}

bool isBoolean(id number) { return [number isKindOfClass:[[NSNumber numberWithBool:YES] class]] != NO; }

TEST_F(BundleValues, ValuesOfEveryKindCrossUnchanged) {
  [[plugin epgItems] setObject:dictionary(@"title", @"") forKey:@"E1"];
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  NSMutableDictionary* item = [[plugin editedItems] lastObject];
  NSDictionary* values = valuesOfEveryKind();
  [item addEntriesFromDictionary:values];
  NSEnumerator* keys = [values keyEnumerator];
  while (NSString* key = [keys nextObject]) {
    EXPECT_TRUE([[item objectForKey:key] isEqual:[values objectForKey:key]]) << text(key);
  }
  EXPECT_TRUE(isBoolean([item objectForKey:@"yes"]));
  EXPECT_TRUE(isBoolean([item objectForKey:@"no"]));
  EXPECT_FALSE(isBoolean([item objectForKey:@"integer"]));
  EXPECT_EQ(*[[item objectForKey:@"whole real"] objCType], 'd');
  EXPECT_EQ([[item objectForKey:@"largest"] unsignedLongLongValue], UINT64_MAX);
  EXPECT_EQ([[item objectForKey:@"date"] timeIntervalSinceReferenceDate], 123456789.0625);
}

TEST_F(BundleValues, StringsThatAreNoUnicodeCrossUnchanged) {
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  NSMutableDictionary* item = [[plugin editedItems] lastObject];
  NSMutableString* strange = [NSMutableString string];
  for (const int unit : {0x61, 0xD800, 0xDC80, 0xD800, 0x62, 0xDC80, 0xDFFF, 0xD83D, 0xDEF0, 0xDBFF}) {
    [strange appendFormat:@"%C", static_cast<unichar>(unit)];
  }
  ASSERT_EQ([strange length], 10u);
  [item setObject:strange forKey:@"title"];
  NSString* back = [item objectForKey:@"title"];
  ASSERT_EQ([back length], [strange length]);
  for (NSUInteger index = 0; index < [strange length]; ++index) {
    EXPECT_EQ([back characterAtIndex:index], [strange characterAtIndex:index]) << index;
  }
}

NSString* stringOfUnits(const std::vector<int>& units) {
  NSMutableString* string = [NSMutableString string];
  for (const int unit : units) {
    [string appendFormat:@"%C", static_cast<unichar>(unit)];
  }
  return string;
}

TEST_F(BundleValues, StringsThatBeginWithAMarkOfTheByteOrderCrossUnchanged) {
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  NSMutableDictionary* item = [[plugin editedItems] lastObject];
  for (const std::vector<int>& units : std::vector<std::vector<int>>{
           {0xFEFF}, {0xFFFE}, {0xFEFF, 0x51}, {0xFFFE, 0x51}, {0xFEFF, 0xFEFF, 0x51}, {0x51, 0xFEFF}}) {
    NSString* given = stringOfUnits(units);
    ASSERT_EQ([given length], units.size());
    [item setObject:given forKey:@"title"];
    NSString* back = [item objectForKey:@"title"];
    ASSERT_EQ([back length], units.size());
    for (std::size_t index = 0; index < units.size(); ++index) {
      EXPECT_EQ([back characterAtIndex:index], units[index]) << index;
    }
    EXPECT_TRUE([back isEqualToString:given]);
    EXPECT_EQ([back hash], [given hash]);
  }
}

TEST_F(BundleValues, AnIDThatBeginsWithAMarkOfTheByteOrderIsAnIDOfItsOwn) {
  NSMutableDictionary* hosts = [NSMutableDictionary dictionary];
  [hosts setObject:dictionary(@"title", @"plain") forKey:@"Q"];
  [hosts setObject:dictionary(@"title", @"marked") forKey:stringOfUnits({0xFEFF, 0x51})];
  [plugin setEpgItems:hosts];
  NSXMLElement* program = [plugin xmlEventWithDictionary:event(stringOfUnits({0xFEFF, 0x51}), @"P", [NSDate date])];
  EXPECT_EQ(text([[[program elementsForName:@"title"] lastObject] stringValue]), "marked");
  program = [plugin xmlEventWithDictionary:event(stringOfUnits({0xFFFE, 0x51}), @"P", [NSDate date])];
  EXPECT_EQ(program, nil);
}

TEST_F(BundleValues, OnlyARowOfBytesThatSpellsACharacterComesBackAsThatCharacter) {
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  NSMutableDictionary* item = [[plugin editedItems] lastObject];
  // "é" in another encoding, the end of one, its bytes the wrong way round, and a character in between.
  for (const std::vector<int>& units : std::vector<std::vector<int>>{
           {0xDCE9}, {0xDCC3, 0x61}, {0xDCA9, 0xDCC3}, {0xDCC3, 0x2D, 0xDCA9}, {0xDCC3, 0xD800, 0xDCA9}}) {
    NSString* given = stringOfUnits(units);
    [item setObject:given forKey:@"title"];
    EXPECT_TRUE([[item objectForKey:@"title"] isEqualToString:given]);
  }
  [item setObject:stringOfUnits({0x61, 0xDCC3, 0xDCA9, 0x62}) forKey:@"title"];
  EXPECT_EQ(text([item objectForKey:@"title"]), "aéb");
}

TEST_F(BundleValues, ConfigurationWhoseNameIsNoUTF8IsLeftOutAsByThePlatform) {
  const std::string folder = [dataFolder_ fileSystemRepresentation];
  ASSERT_EQ(rename((folder + "/Test.epgconf").c_str(), (folder + "/N\344chte.epgconf").c_str()), 0);
  EXPECT_TRUE([[plugin configurationFilenames] isEqual:only(@"Default EPG Settings")]);
}

TEST_F(Bundle, UnknownKeysSurviveFileEditDuplicateAndSave) {
  NSMutableDictionary* values = [NSMutableDictionary dictionaryWithDictionary:valuesOfEveryKind()];
  // What the file's form can hold: whole seconds, and no zero character.
  [values setObject:[NSDate dateWithTimeIntervalSinceReferenceDate:123456789] forKey:@"date"];
  [values removeObjectForKey:@"with zero"];
  EPGDorvaSelinManagerPlugin* first = newPlugin();
  [[first epgItems] setObject:values forKey:@"E1"];
  [first saveEPGItemsToFileThread:[first epgItems]];
  [first release];

  EPGDorvaSelinManagerPlugin* second = newPlugin();
  [second setEditedEPGUniqueIDs:only(@"E1")];
  [second commitEditing];
  ASSERT_TRUE(eventually([&] { return [second retainCount] == 1; }));
  [second duplicateEPGItemWithUniqueID:@"E1" toItemWithUniqueID:@"E2"];
  ASSERT_TRUE(eventually([&] { return [second retainCount] == 1; }));
  [second release];

  EPGDorvaSelinManagerPlugin* third = newPlugin();
  [values setObject:@"E1" forKey:@"uniqueID"];
  for (NSString* uniqueID : {@"E1", @"E2"}) {
    NSDictionary* saved = [[third epgItems] objectForKey:uniqueID];
    NSEnumerator* keys = [values keyEnumerator];
    while (NSString* key = [keys nextObject]) {
      EXPECT_TRUE([[saved objectForKey:key] isEqual:[values objectForKey:key]])
          << text(key) << ": " << text([[saved objectForKey:key] description]);
    }
    EXPECT_EQ([saved count], [values count]);
    EXPECT_TRUE(isBoolean([saved objectForKey:@"yes"]));
    EXPECT_FALSE(isBoolean([saved objectForKey:@"integer"]));
    EXPECT_EQ(*[[saved objectForKey:@"whole real"] objCType], 'd');
  }
  [third release];
}

TEST_F(Bundle, ValueThatIsNoPropertyListComesBackAndMakesTheWriteFailSilently) {
  ASSERT_TRUE(writeStore(dictionary(@"E1", dictionary(@"title", @"Old"))));
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSObject* strange = [[[NSObject alloc] init] autorelease];
  NSDictionary* numbered = [NSDictionary dictionaryWithObject:@"x" forKey:[NSNumber numberWithInt:1]];
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  NSMutableDictionary* item = [[plugin editedItems] lastObject];
  [item setObject:strange forKey:@"strange"];
  [item setObject:numbered forKey:@"numbered"];
  [item setObject:only([NSNull null]) forKey:@"nested"];
  [item setObject:@"New" forKey:@"title"];
  EXPECT_EQ([item objectForKey:@"strange"], strange);
  EXPECT_EQ([item objectForKey:@"numbered"], numbered);
  EXPECT_EQ([[item objectForKey:@"nested"] lastObject], [NSNull null]);
  [plugin commitEditing];
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  [plugin saveEPGItemsToFileThread:[[[plugin epgItems] copy] autorelease]];
  EXPECT_EQ(text([[savedStore() objectForKey:@"E1"] objectForKey:@"title"]), "Old");
  [item removeObjectForKey:@"strange"];
  [item removeObjectForKey:@"numbered"];
  [item removeObjectForKey:@"nested"];
  [plugin saveEPGItemsToFileThread:[plugin epgItems]];
  EXPECT_EQ(text([[savedStore() objectForKey:@"E1"] objectForKey:@"title"]), "New");
  [plugin release];
}

TEST_F(Bundle, KeysOfAnItemThatAreNoStringsStayAndMakeTheWriteFailSilently) {
  ASSERT_TRUE(writeStore(dictionary(@"E1", dictionary(@"title", @"Old"))));
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSNumber* one = [NSNumber numberWithInt:1];
  NSMutableDictionary* given = dictionary(@"title", @"New");
  [given setObject:@"number" forKey:one];
  [given setObject:@"text" forKey:@"1"];
  [[plugin epgItems] setObject:given forKey:@"E1"];
  [plugin saveEPGItemsToFileThread:[plugin epgItems]];
  EXPECT_EQ(text([[savedStore() objectForKey:@"E1"] objectForKey:@"title"]), "Old");

  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  [plugin commitEditing];
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  NSMutableDictionary* copy = [[plugin epgItems] objectForKey:@"E1"];
  EXPECT_NE(copy, given);
  EXPECT_EQ([copy count], 4u);
  EXPECT_EQ(text([copy objectForKey:one]), "number");
  EXPECT_EQ(text([copy objectForKey:@"1"]), "text");
  EXPECT_EQ([copy objectForKey:[NSNumber numberWithInt:2]], nil);
  NSSet* keys = [NSSet setWithObjects:@"title", @"1", one, @"uniqueID", nil];
  EXPECT_TRUE([[NSSet setWithArray:[copy allKeys]] isEqual:keys]);
  [plugin saveEPGItemsToFileThread:[plugin epgItems]];
  EXPECT_EQ(text([[savedStore() objectForKey:@"E1"] objectForKey:@"title"]), "Old");
  [copy removeObjectForKey:one];
  EXPECT_EQ([copy objectForKey:one], nil);
  EXPECT_EQ(text([copy objectForKey:@"1"]), "text");
  [plugin saveEPGItemsToFileThread:[plugin epgItems]];
  EXPECT_EQ(text([[savedStore() objectForKey:@"E1"] objectForKey:@"title"]), "New");
  [plugin release];
}

TEST_F(BundleValues, ContainerThatHoldsItselfEndsNothing) {
  NSMutableArray* endless = [NSMutableArray array];
  [endless addObject:[NSArray arrayWithObject:endless]];
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  [[[plugin editedItems] lastObject] setObject:endless forKey:@"endless"];
  [plugin commitEditing];
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  EXPECT_EQ(savedStore(), nil);
  [endless removeAllObjects];
}

TEST_F(Bundle, StoreThatThePlatformWroteIsReadAsThePlatformReadsIt) {
  NSMutableDictionary* item = [[valuesOfEveryKind() mutableCopy] autorelease];
  [item removeObjectForKey:@"date"];  // Where the platform writes whole seconds only.
  [item setObject:[NSDate dateWithTimeIntervalSince1970:1e9] forKey:@"date"];
  [item setObject:everyCharacter() forKey:everyCharacter()];
  [item setObject:@"" forKey:@""];
  NSDictionary* store = [NSDictionary dictionaryWithObjectsAndKeys:item, @"E1", [NSDictionary dictionary], @"E 2", nil];
  ASSERT_TRUE([store writeToFile:storePath() atomically:YES]);
  NSDictionary* expected = [NSDictionary dictionaryWithContentsOfFile:storePath()];
  ASSERT_EQ([expected count], 2u);
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  ASSERT_EQ([[plugin epgItems] count], 2u);
  NSEnumerator* uniqueIDs = [expected keyEnumerator];
  while (NSString* uniqueID = [uniqueIDs nextObject]) {
    NSDictionary* expectedItem = [expected objectForKey:uniqueID];
    NSDictionary* read = [[plugin epgItems] objectForKey:uniqueID];
    EXPECT_EQ([read count], [expectedItem count]);
    NSEnumerator* keys = [expectedItem keyEnumerator];
    while (NSString* key = [keys nextObject]) {
      EXPECT_TRUE([[read objectForKey:key] isEqual:[expectedItem objectForKey:key]]) << text(key);
    }
  }
  [plugin release];
}

TEST_F(Bundle, ConfigurationThatThePlatformWroteIsRead) {
  [[NSDictionary dictionaryWithObject:@"~/EPG \"Ä\"" forKey:@"exportPath"]
      writeToFile:[dataFolder_ stringByAppendingPathComponent:@"Night.epgconf"]
       atomically:YES];
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  [plugin exportEvents:[NSArray array] configurationFilename:@"Night"];
  EXPECT_EQ(text([plugin exportPath]), text([@"~/EPG \"Ä\"" stringByExpandingTildeInPath]));
  EXPECT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  [plugin release];
}

}  // namespace
