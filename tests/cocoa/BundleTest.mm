#include <dlfcn.h>
#import <objc/runtime.h>
#include <stdlib.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

#import "tests/cocoa/BundleUser.h"

namespace {

using Bundle = BundleUser;

std::string text(NSString* string) { return string != nil ? [string UTF8String] : "nil"; }

NSMutableDictionary* dictionary(NSString* key, id value) {
  return [NSMutableDictionary dictionaryWithObject:value forKey:key];
}

NSArray* only(id object) { return [NSArray arrayWithObject:object]; }

// The class and what it promises.

TEST_F(Bundle, PrincipalClassIsTheManagerPlugin) {
  ASSERT_NE(bundle_, nil);
  EXPECT_EQ(text(NSStringFromClass([bundle_ principalClass])), "EPGDorvaSelinManagerPlugin");
  EXPECT_EQ(text([[bundle_ principalClass] pluginName]), "EPG DorvaSelin");
}

TEST_F(Bundle, ProtocolHasItsSeventeenOperationsAndTheClassImplementsThem) {
  Protocol* protocol = NSProtocolFromString(@"TelvarinManagerEPGPluginProtocol");
  ASSERT_NE(protocol, nil);
  Class principal = [bundle_ principalClass];
  EXPECT_TRUE([principal conformsToProtocol:protocol]);
  const char* const names[] = {"initWithBundle:dataFolderPath:",
                               "dealloc",
                               "setDelegate:",
                               "delegate",
                               "exportPath",
                               "configurationFilenames",
                               "setEditedEPGUniqueIDs:",
                               "editorView",
                               "minimumEditorViewSize",
                               "maximumEditorViewSize",
                               "commitEditing",
                               "revertEditing",
                               "removeEPGItemsWithUniqueIDs:",
                               "duplicateEPGItemWithUniqueID:toItemWithUniqueID:",
                               "exportEvents:configurationFilename:",
                               "cancelExportEvents"};
  unsigned int count = 0;
  struct objc_method_description* required = protocol_copyMethodDescriptionList(protocol, YES, YES, &count);
  ASSERT_EQ(count, 16u);
  // Compilers write the list forwards or backwards.
  if (std::string(sel_getName(required[0].name)) != names[0]) {
    std::reverse(required, required + count);
  }
  for (unsigned int index = 0; index < count; ++index) {
    SEL selector = required[index].name;
    EXPECT_STREQ(sel_getName(selector), names[index]);
    Method method = class_getInstanceMethod(principal, selector);
    ASSERT_NE(method, nullptr) << sel_getName(selector);
    EXPECT_STREQ(method_getTypeEncoding(method), required[index].types) << sel_getName(selector);
  }
  free(required);
  struct objc_method_description* ofClass = protocol_copyMethodDescriptionList(protocol, YES, NO, &count);
  ASSERT_EQ(count, 1u);
  EXPECT_STREQ(sel_getName(ofClass[0].name), "pluginName");
  EXPECT_NE(class_getClassMethod(principal, ofClass[0].name), nullptr);
  free(ofClass);
}

TEST_F(Bundle, ClassHasTheOperationsOutsideTheProtocol) {
  Class principal = [bundle_ principalClass];
  for (const char* name :
       {"stringValue", "saveEPGItemsToFile", "saveEPGItemsToFileThread:", "writeXMLFileWithEvents:forDate:",
        "exportEventsThread:", "shortDateStringWithDate:", "dateXMLElementWithDate:", "timeXMLElementWithDate:",
        "tagsXMLElementWithTags:", "xmlEventWithDictionary:", "errorWithMessage:", "epgItems",
        "setEpgItems:", "editedItems", "setEditedItems:"}) {
    EXPECT_TRUE([principal instancesRespondToSelector:sel_registerName(name)]) << name;
  }
  EXPECT_TRUE([principal respondsToSelector:@selector(isDate:equalToDate:)]);
}

TEST_F(Bundle, ControllerIsAViewControllerAndTheTablesDataSource) {
  Class controller = NSClassFromString(@"EPGDorvaSelinViewController");
  EXPECT_EQ(class_getSuperclass(controller), [NSViewController class]);
  EXPECT_TRUE([controller conformsToProtocol:NSProtocolFromString(@"NSTableViewDataSource")]);
  EXPECT_TRUE([controller conformsToProtocol:NSProtocolFromString(@"NSTableViewDelegate")]);
  for (const char* name :
       {"numberOfRowsInTableView:", "tableView:objectValueForTableColumn:row:",
        "tableView:setObjectValue:forTableColumn:row:", "stateOfTagAtIndex:", "setStateOfTag:atIndex:", "setItems:",
        "items", "updateTagsTableView", "updateImageURLTextField", "updateTitleTextField", "updateDescriptionTextField",
        "setMixedTextField:value:", "setMixedTableView:value:", "applyChanges", "delegate",
        "setDelegate:", "awakeFromNib"}) {
    EXPECT_TRUE([controller instancesRespondToSelector:sel_registerName(name)]) << name;
  }
}

TEST_F(Bundle, ExportsTheElevenKeyConstants) {
  const std::vector<std::pair<const char*, std::string>> constants = {
      {"ZRLEPGDSUniqueIDKey", "uniqueID"},
      {"ZRLEPGDSImageURLKey", "imageURL"},
      {"ZRLEPGDSTagsKey", "tags"},
      {"ZRLEPGDSTitleKey", "title"},
      {"ZRLEPGDSDescriptionKey", "description"},
      {"ZRLEPGUniqueIDKey", "eventEPGUniqueID"},
      {"ZRLEPGEventUniqueIDKey", "eventEPGPlaybackUniqueID"},
      {"ZRLEPGStartDateTimeKey", "eventEPGStartDateTime"},
      {"ZRLEPGEndDateTimeKey", "eventEPGEndDateTime"},
      {"ZRLEPGDSConfigSourceID", "SourceID"},
      {"ZRLEPGDSConfigExportPath", "exportPath"}};
  void* const image = dlopen([[bundle_ executablePath] fileSystemRepresentation], RTLD_LAZY);
  ASSERT_NE(image, nullptr) << dlerror();
  for (const auto& [name, value] : constants) {
    NSString** const constant = static_cast<NSString**>(dlsym(image, name));
    ASSERT_NE(constant, nullptr) << name;
    EXPECT_EQ(text(*constant), value);
  }
  dlclose(image);
}

TEST_F(Bundle, ShowsNothingOfTheCoreToOtherCode) {
  void* const image = dlopen([[bundle_ executablePath] fileSystemRepresentation], RTLD_LAZY);
  ASSERT_NE(image, nullptr) << dlerror();
  EXPECT_EQ(dlsym(image, "_ZN3epg7EPGItemC1Ev"), nullptr);
  dlclose(image);
}

// The object.

TEST_F(Bundle, NewObjectIsEmptyAndSilent) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  EXPECT_EQ([plugin delegate], nil);
  EXPECT_EQ([plugin exportPath], nil);
  EXPECT_EQ([plugin stringValue], nil);
  EXPECT_EQ([[plugin epgItems] count], 0u);
  EXPECT_EQ([[plugin editedItems] count], 0u);
  EXPECT_EQ([plugin minimumEditorViewSize].width, 300);
  EXPECT_EQ([plugin minimumEditorViewSize].height, 200);
  EXPECT_EQ([plugin maximumEditorViewSize].width, 5000);
  EXPECT_EQ([plugin maximumEditorViewSize].height, 5000);
  [plugin release];
}

TEST_F(Bundle, WorksWithoutBundleAndDataFolder) {
  EPGDorvaSelinManagerPlugin* plugin = [[[bundle_ principalClass] alloc] init];
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  EXPECT_TRUE([plugin commitEditing]);
  EXPECT_EQ([[plugin epgItems] count], 1u);
  EXPECT_EQ(text([[plugin configurationFilenames] lastObject]), "Default EPG Settings");
  [plugin release];
}

TEST_F(Bundle, DelegateIsNotRetained) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSObject* delegate = [[NSObject alloc] init];
  id<TelvarinManagerEPGPluginProtocol_Delegate> untyped = reinterpret_cast<id>(delegate);
  const NSUInteger before = [delegate retainCount];
  [plugin setDelegate:untyped];
  EXPECT_EQ([plugin delegate], untyped);
  EXPECT_EQ([delegate retainCount], before);
  [plugin setDelegate:nil];
  [delegate release];
  [plugin release];
}

TEST_F(Bundle, ErrorsCarryTheLongDomainTheCodeAndOnlyTheMessage) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSError* error = [plugin errorWithMessage:@"Störung 🛰"];
  EXPECT_EQ([error code], -1);
  EXPECT_EQ(text([error localizedDescription]), "Störung 🛰");
  EXPECT_EQ([[error userInfo] count], 1u);
  EXPECT_TRUE([[error domain] hasSuffix:@".EPG"]);
  [plugin release];
}

TEST_F(Bundle, ListsConfigurationsWhateverTheirNamesAreMadeOf) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSFileManager* files = [NSFileManager defaultManager];
  for (NSString* name : {@"x.y.epgconf", @"Nächte 🌙.epgconf", @"notes.txt", @"Night.EPGCONF"}) {
    [files createFileAtPath:[dataFolder_ stringByAppendingPathComponent:name] contents:[NSData data] attributes:nil];
  }
  NSSet* names = [NSSet setWithArray:[plugin configurationFilenames]];
  EXPECT_TRUE([names isEqual:([NSSet setWithObjects:@"Test", @"x.y", @"Nächte 🌙", nil])]) << text([names description]);
  [plugin release];
}

TEST_F(Bundle, ListsOneNameWhereThereIsNoConfiguration) {
  [[NSFileManager defaultManager] removeItemAtPath:dataFolder_ error:NULL];
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  EXPECT_TRUE([[plugin configurationFilenames] isEqual:only(@"Default EPG Settings")]);
  [plugin release];
}

TEST_F(Bundle, SameDayIsOfTheLocalCalendar) {
  Class principal = [bundle_ principalClass];
  NSDate* early = localDate(2012, 3, 4, 0, 1);
  NSDate* late = localDate(2012, 3, 4, 23, 59);
  NSDate* next = localDate(2012, 3, 5, 0, 1);
  EXPECT_TRUE([principal isDate:early equalToDate:late]);
  EXPECT_FALSE([principal isDate:late equalToDate:next]);
  EXPECT_TRUE([principal isDate:nil equalToDate:nil]);
  EXPECT_FALSE([principal isDate:early equalToDate:nil]);
  EXPECT_FALSE([principal isDate:nil equalToDate:early]);
}

TEST_F(Bundle, EscapesApostrophesAndNothingElse) {
  EXPECT_EQ(text([@"Kids' & <b>'\"é" stringByEscapingSpecialCharacters]), "Kids&#39; & <b>&#39;\"é");
  EXPECT_EQ(text([@"" stringByEscapingSpecialCharacters]), "");
}

// The store as a live dictionary.

TEST_F(Bundle, HostChangesOfTheStoreAreSeenAndSaved) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableDictionary* store = [plugin epgItems];
  [store setObject:dictionary(@"title", @"A") forKey:@"E1"];
  [store setObject:dictionary(@"title", @"B") forKey:@"E2"];
  [store removeObjectForKey:@"E2"];
  EXPECT_EQ([store count], 1u);
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  EXPECT_EQ(text([[[plugin editedItems] lastObject] objectForKey:@"title"]), "A");
  [plugin saveEPGItemsToFile];
  EXPECT_TRUE(eventuallySaved([NSDictionary dictionaryWithObject:dictionary(@"title", @"A") forKey:@"E1"]));
  [plugin release];
}

TEST_F(Bundle, HostSeesWhatACommitChanged) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableDictionary* store = [plugin epgItems];
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  [[[plugin editedItems] lastObject] setObject:@"Edited" forKey:@"title"];
  EXPECT_EQ([store objectForKey:@"E1"], nil);
  EXPECT_TRUE([plugin commitEditing]);
  EXPECT_EQ(text([[store objectForKey:@"E1"] objectForKey:@"title"]), "Edited");
  // Until new IDs are named, the store and the session share the item itself.
  EXPECT_EQ([store objectForKey:@"E1"], [[plugin editedItems] lastObject]);
  [[[plugin editedItems] lastObject] setObject:@"Again" forKey:@"title"];
  EXPECT_EQ(text([[store objectForKey:@"E1"] objectForKey:@"title"]), "Again");
  [plugin release];
}

TEST_F(Bundle, StoreGivenByTheHostIsUsedInPlace) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableDictionary* item = dictionary(@"title", @"A");
  NSMutableDictionary* given = dictionary(@"E1", item);
  [plugin setEpgItems:given];
  EXPECT_EQ([plugin epgItems], given);
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  NSMutableDictionary* copy = [[plugin editedItems] lastObject];
  EXPECT_NE(copy, item);
  [copy setObject:@"B" forKey:@"title"];
  EXPECT_EQ(text([item objectForKey:@"title"]), "A");
  [plugin commitEditing];
  EXPECT_EQ([given objectForKey:@"E1"], copy);
  [plugin duplicateEPGItemWithUniqueID:@"E1" toItemWithUniqueID:@"E2"];
  EXPECT_EQ(text([[given objectForKey:@"E2"] objectForKey:@"uniqueID"]), "E1");
  [plugin removeEPGItemsWithUniqueIDs:only(@"E1")];
  EXPECT_EQ([given objectForKey:@"E1"], nil);
  EXPECT_TRUE(eventually([&] {
    [plugin saveEPGItemsToFile];
    return [[[savedStore() objectForKey:@"E2"] objectForKey:@"title"] isEqual:@"B"] && [savedStore() count] == 1;
  }));
  [plugin release];
}

TEST_F(Bundle, EarlierStoreCanBeSetAgain) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableDictionary* own = [plugin epgItems];
  [own setObject:dictionary(@"title", @"A") forKey:@"E1"];
  [plugin setEpgItems:[NSMutableDictionary dictionary]];
  EXPECT_EQ([[plugin epgItems] count], 0u);
  [plugin setEpgItems:own];
  EXPECT_EQ([plugin epgItems], own);
  EXPECT_EQ(text([[[plugin epgItems] objectForKey:@"E1"] objectForKey:@"title"]), "A");
  [plugin release];
}

TEST_F(Bundle, WithoutAStoreNothingIsWritten) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  ASSERT_TRUE(writeStore(dictionary(@"E1", dictionary(@"title", @"A"))));
  [plugin setEpgItems:nil];
  [plugin setEditedItems:nil];
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  EXPECT_TRUE([plugin commitEditing]);
  [plugin saveEPGItemsToFileThread:nil];
  EXPECT_EQ([savedStore() count], 1u);
  EXPECT_EQ([plugin epgItems], nil);
  EXPECT_EQ([plugin editedItems], nil);
  [plugin release];
}

TEST_F(Bundle, StoreBehavesAsADictionary) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableDictionary* store = [plugin epgItems];
  [store setObject:dictionary(@"title", @"A") forKey:@"E1"];
  [store setObject:@"no item" forKey:@"E2"];
  EXPECT_TRUE([store
      isEqual:([NSDictionary dictionaryWithObjectsAndKeys:dictionary(@"title", @"A"), @"E1", @"no item", @"E2", nil])]);
  EXPECT_EQ([[store allKeys] count], 2u);
  NSMutableDictionary* copy = [[store mutableCopy] autorelease];
  [copy removeAllObjects];
  EXPECT_EQ([store count], 2u);
  NSMutableDictionary* item = [store objectForKey:@"E1"];
  NSEnumerator* keys = [store keyEnumerator];
  [store removeAllObjects];
  EXPECT_EQ([[keys allObjects] count], 2u);
  EXPECT_EQ([store count], 0u);
  EXPECT_EQ(text([item objectForKey:@"title"]), "A");
  EXPECT_EQ([store objectForKey:@"none"], nil);
  EXPECT_EQ([store objectForKey:[NSNumber numberWithInt:1]], nil);
  [plugin release];
}

TEST_F(Bundle, ObjectOutOfTheStoreLivesAsLongAsTheEntry) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableDictionary* item = nil;
  {
    NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
    [plugin setEditedEPGUniqueIDs:only(@"E1")];
    [plugin commitEditing];
    [plugin setEditedEPGUniqueIDs:[NSArray array]];
    item = [[plugin epgItems] objectForKey:@"E1"];
    [inner drain];
  }
  EXPECT_EQ([[plugin epgItems] objectForKey:@"E1"], item);
  EXPECT_EQ(text([item objectForKey:@"uniqueID"]), "E1");
  [plugin release];
}

// Values of every kind.

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

bool isBoolean(id number) { return [number isKindOfClass:[[NSNumber numberWithBool:YES] class]] != NO; }

TEST_F(Bundle, ValuesOfEveryKindCrossUnchanged) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
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
  [plugin release];
}

TEST_F(Bundle, StringsThatAreNoUnicodeCrossUnchanged) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
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
  [plugin release];
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

TEST_F(Bundle, ContainerThatHoldsItselfEndsNothing) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableArray* endless = [NSMutableArray array];
  [endless addObject:[NSArray arrayWithObject:endless]];
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  [[[plugin editedItems] lastObject] setObject:endless forKey:@"endless"];
  [plugin commitEditing];
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  EXPECT_EQ(savedStore(), nil);
  [endless removeAllObjects];
  [plugin release];
}

// Saving.

IMP originalSave;
std::atomic<int> savesBesideTheMainThread{0};

void countedSave(id self, SEL operation, NSDictionary* snapshot) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (![NSThread isMainThread] && [snapshot isKindOfClass:[NSDictionary class]] &&
      [[snapshot objectForKey:@"E1"] isKindOfClass:[NSDictionary class]]) {
    ++savesBesideTheMainThread;
  }
  [pool drain];
  functionOf<void(id, SEL, NSDictionary*)>(originalSave)(self, operation, snapshot);
}

TEST_F(Bundle, SaveThreadEntersThroughItsOperationWithTheSnapshot) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  Method method = class_getInstanceMethod([plugin class], @selector(saveEPGItemsToFileThread:));
  originalSave = method_setImplementation(method, implementationOf(countedSave));
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  [plugin commitEditing];
  EXPECT_TRUE(eventuallySaved(dictionary(@"E1", dictionary(@"uniqueID", @"E1"))));
  EXPECT_EQ(savesBesideTheMainThread, 1);
  method_setImplementation(method, originalSave);
  [plugin release];
}

TEST_F(Bundle, RemovingNothingStillWritesTheFile) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  [plugin removeEPGItemsWithUniqueIDs:nil];
  EXPECT_TRUE(eventuallySaved([NSDictionary dictionary]));
  [plugin release];
}

TEST_F(Bundle, DuplicatingNothingWritesNothing) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  [plugin duplicateEPGItemWithUniqueID:@"none" toItemWithUniqueID:@"E2"];
  [plugin duplicateEPGItemWithUniqueID:nil toItemWithUniqueID:@"E2"];
  EXPECT_EQ([[plugin epgItems] count], 0u);
  [plugin release];
  EXPECT_EQ(savedStore(), nil);
}

TEST_F(Bundle, ObjectDroppedWhileSavingStillSaves) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  [plugin setEditedEPGUniqueIDs:[NSArray arrayWithObjects:@"E1", @"E2", nil]];
  [plugin commitEditing];
  [plugin release];
  EXPECT_TRUE(eventually([&] { return [savedStore() count] == 2; }));
}

// The editing session without an editor.

TEST_F(Bundle, SameIDTwiceIsTwoCopiesOfWhichTheSecondStays) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableArray* list = [plugin editedItems];
  [plugin setEditedEPGUniqueIDs:[NSArray arrayWithObjects:@"E1", @"E1", nil]];
  EXPECT_EQ([plugin editedItems], list);
  ASSERT_EQ([list count], 2u);
  EXPECT_NE([list objectAtIndex:0], [list objectAtIndex:1]);
  [[list objectAtIndex:0] setObject:@"first" forKey:@"title"];
  [[list objectAtIndex:1] setObject:@"second" forKey:@"title"];
  [plugin commitEditing];
  EXPECT_EQ([[plugin epgItems] objectForKey:@"E1"], [list objectAtIndex:1]);
  [plugin release];
}

TEST_F(Bundle, ListGivenByTheHostIsUsedInPlace) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableArray* list = [NSMutableArray array];
  NSMutableDictionary* item = dictionary(@"uniqueID", @"E9");
  [list addObject:item];
  [plugin setEditedItems:list];
  EXPECT_EQ([plugin editedItems], list);
  [plugin commitEditing];
  EXPECT_EQ([[plugin epgItems] objectForKey:@"E9"], item);
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  [item setObject:@"later" forKey:@"title"];
  [plugin saveEPGItemsToFileThread:[plugin epgItems]];
  EXPECT_EQ(text([[savedStore() objectForKey:@"E9"] objectForKey:@"title"]), "later");
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  EXPECT_EQ([list count], 1u);
  EXPECT_EQ(text([[list lastObject] objectForKey:@"uniqueID"]), "E1");
  [plugin release];
}

// The export.

TEST_F(Bundle, ExportWritesTheDayFileAndReportsOnItsThread) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  ReportKeeper* reports = [[ReportKeeper alloc] init];
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
  [plugin release];
  [reports release];
}

TEST_F(Bundle, ExportWithoutFolderReportsTheWriteError) {
  [@"{ SourceID = 1; }" writeToFile:[dataFolder_ stringByAppendingPathComponent:@"Test.epgconf"]
                         atomically:YES
                           encoding:NSUTF8StringEncoding
                              error:NULL];
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

TEST_F(Bundle, ExportFromInsideAReportIsRefusedOnThatThread) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  ReportKeeper* reports = [[ReportKeeper alloc] init];
  [reports setExporter:plugin];
  [plugin setDelegate:reports];
  [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [reports count] == 2; }));
  const Report refusal = [reports reportAtIndex:1];
  EXPECT_FALSE(refusal.succeeded);
  EXPECT_EQ(refusal.message, "Already Busy Exporting!");
  EXPECT_EQ(refusal.domain + ".TelvarinManager.EPG", text([[plugin errorWithMessage:@""] domain]));
  [plugin release];
  [reports release];
}

TEST_F(Bundle, DelegateWithoutTheOperationHearsNothingAndTheNextExportRuns) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  id silent = [[[NSObject alloc] init] autorelease];
  [plugin setDelegate:silent];
  [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return dayFile() != nil; }));
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  ASSERT_TRUE(eventually([&] {
    [plugin setDelegate:reports];
    [plugin cancelExportEvents];
    [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
    return eventually([&] { return [reports count] > 0; }) && [reports reportAtIndex:[reports count] - 1].succeeded;
  }));
  EXPECT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  [plugin setDelegate:nil];
  [plugin release];
}

TEST_F(Bundle, XMLElementsAreThoseOfTheDayFile) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
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
  [plugin release];
}

TEST_F(Bundle, DayFileIsNamedAfterTheGivenDate) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  EXPECT_FALSE([plugin writeXMLFileWithEvents:[NSArray array] forDate:[NSDate date]]);
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:reports];
  [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [reports count] == 1; }));
  EXPECT_TRUE([plugin writeXMLFileWithEvents:[NSArray array] forDate:localDate(2012, 3, 4, 18, 0)]);
  EXPECT_TRUE(
      [[NSFileManager defaultManager] fileExistsAtPath:[exportFolder_ stringByAppendingPathComponent:@"20120304.xml"]]);
  EXPECT_FALSE([plugin writeXMLFileWithEvents:[NSArray array] forDate:nil]);
  [plugin setDelegate:nil];
  [plugin release];
}

TEST_F(Bundle, TildeAndNamedUserBecomeHomeFolders) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
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
  [plugin setDelegate:nil];
  [plugin release];
}

// Memory.

IMP originalDealloc;
std::atomic<int> objectsGone{0};

void countedDealloc(id self, SEL operation) {
  functionOf<void(id, SEL)>(originalDealloc)(self, operation);
  ++objectsGone;
}

TEST_F(Bundle, CreateEditExportDropLeavesNoObjectBehind) {
  Method method = class_getInstanceMethod([bundle_ principalClass], @selector(dealloc));
  originalDealloc = method_setImplementation(method, implementationOf(countedDealloc));
  const char* const given = getenv("EPG_MEMORY_ROUNDS");
  const int rounds = given != nullptr ? atoi(given) : 1000;
  for (int round = 0; round < rounds; ++round) {
    NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
    EPGDorvaSelinManagerPlugin* plugin = newPlugin();
    [plugin setEditedEPGUniqueIDs:[NSArray arrayWithObjects:@"E1", @"E2", nil]];
    [[[plugin editedItems] objectAtIndex:0] setObject:@"Title" forKey:@"title"];
    [[[plugin editedItems] objectAtIndex:1] setObject:[NSNull null] forKey:@"strange"];
    [plugin commitEditing];
    [[[plugin epgItems] objectForKey:@"E2"] removeObjectForKey:@"strange"];
    [plugin duplicateEPGItemWithUniqueID:@"E1" toItemWithUniqueID:@"E3"];
    [plugin exportEvents:only(event(@"E1", @"P", [NSDate date])) configurationFilename:@"Test"];
    [plugin release];
    [inner drain];
  }
  EXPECT_TRUE(eventually([&] { return objectsGone == rounds; })) << objectsGone << " of " << rounds << " are gone";
  method_setImplementation(method, originalDealloc);
}

}  // namespace
