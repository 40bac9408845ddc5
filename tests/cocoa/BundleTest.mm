#include <dlfcn.h>
#import <objc/runtime.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

#include "store/ItemStoreFile.h"
#import "tests/cocoa/BundleUser.h"
#import "tests/cocoa/MemoryRounds.h"
#import "tests/cocoa/ObjectCount.h"
#import "tests/cocoa/OtherThreads.h"

namespace {

using Bundle = BundleUser;

NSMutableDictionary* dictionary(NSString* key, id value) {
  return [NSMutableDictionary dictionaryWithObject:value forKey:key];
}

// The class and what it promises.

TEST_F(Bundle, PrincipalClassIsTheManagerPlugin) {
  ASSERT_NE(bundle_, nil);
  EXPECT_EQ(text(NSStringFromClass([bundle_ principalClass])), "EPGDorvaSelinManagerPlugin");
  EXPECT_EQ(text([[bundle_ principalClass] pluginName]), "EPG DorvaSelin");
}

#ifdef __APPLE__
#define SIZE_OF_VIEW "{CGSize=dd}@:"
#define YES_OR_NO "c@:"
#else
#define SIZE_OF_VIEW "{_NSSize=dd}@:"
#define YES_OR_NO "C@:"
#endif

struct Operation {
  const char* declaration;
  const char* name;
  const char* types;  ///< Result, object, operation, arguments.
};

// In the order in which hosts know them.
const Operation protocolOperations[] = {
    {"- (id)initWithBundle:(NSBundle*)bundle dataFolderPath:(NSString*)dataFolderPath;",
     "initWithBundle:dataFolderPath:", "@@:@@"},
    {"- (void)dealloc;", "dealloc", "v@:"},
    {"- (void)setDelegate:(id<TelvarinManagerEPGPluginProtocol_Delegate>)delegate;", "setDelegate:", "v@:@"},
    {"- (id<TelvarinManagerEPGPluginProtocol_Delegate>)delegate;", "delegate", "@@:"},
    {"- (NSString*)exportPath;", "exportPath", "@@:"},
    {"- (NSArray*)configurationFilenames;", "configurationFilenames", "@@:"},
    {"- (void)setEditedEPGUniqueIDs:(NSArray*)uniqueIDs;", "setEditedEPGUniqueIDs:", "v@:@"},
    {"- (NSView*)editorView;", "editorView", "@@:"},
    {"- (NSSize)minimumEditorViewSize;", "minimumEditorViewSize", SIZE_OF_VIEW},
    {"- (NSSize)maximumEditorViewSize;", "maximumEditorViewSize", SIZE_OF_VIEW},
    {"- (BOOL)commitEditing;", "commitEditing", YES_OR_NO},
    {"- (void)revertEditing;", "revertEditing", "v@:"},
    {"- (void)removeEPGItemsWithUniqueIDs:(NSArray*)uniqueIDs;", "removeEPGItemsWithUniqueIDs:", "v@:@"},
    {"- (void)duplicateEPGItemWithUniqueID:(NSString*)sourceUniqueID "
     "toItemWithUniqueID:(NSString*)targetUniqueID;",
     "duplicateEPGItemWithUniqueID:toItemWithUniqueID:", "v@:@@"},
    {"- (void)exportEvents:(NSArray*)events configurationFilename:(NSString*)configurationFilename;",
     "exportEvents:configurationFilename:", "v@:@@"},
    {"- (void)cancelExportEvents;", "cancelExportEvents", "v@:"},
    {"+ (NSString*)pluginName;", "pluginName", "@@:"}};

/// The types alone: where the arguments stand differs between processors.
std::string withoutDigits(const char* encoding) {
  std::string types = encoding;
  types.erase(std::remove_if(types.begin(), types.end(), [](char c) { return c >= '0' && c <= '9'; }), types.end());
  return types;
}

TEST_F(Bundle, ProtocolHasItsSeventeenOperationsAndTheClassImplementsThem) {
  Protocol* protocol = NSProtocolFromString(@"TelvarinManagerEPGPluginProtocol");
  ASSERT_NE(protocol, nil);
  Class principal = [bundle_ principalClass];
  EXPECT_TRUE([principal conformsToProtocol:protocol]);
  unsigned int count = 0;
  struct objc_method_description* required = protocol_copyMethodDescriptionList(protocol, YES, YES, &count);
  ASSERT_EQ(count, 16u);
  // Compilers write the list forwards or backwards.
  if (std::string(sel_getName(required[0].name)) != protocolOperations[0].name) {
    std::reverse(required, required + count);
  }
  for (unsigned int index = 0; index < count; ++index) {
    const Operation& expected = protocolOperations[index];
    EXPECT_STREQ(sel_getName(required[index].name), expected.name);
    EXPECT_EQ(withoutDigits(required[index].types), expected.types) << expected.name;
    Method method = class_getInstanceMethod(principal, required[index].name);
    ASSERT_NE(method, nullptr) << expected.name;
    EXPECT_EQ(withoutDigits(method_getTypeEncoding(method)), expected.types) << expected.name;
  }
  free(required);
  struct objc_method_description* ofClass = protocol_copyMethodDescriptionList(protocol, YES, NO, &count);
  ASSERT_EQ(count, 1u);
  const Operation& last = protocolOperations[16];
  EXPECT_STREQ(sel_getName(ofClass[0].name), last.name);
  EXPECT_EQ(withoutDigits(ofClass[0].types), last.types);
  Method method = class_getClassMethod(principal, ofClass[0].name);
  ASSERT_NE(method, nullptr);
  EXPECT_EQ(withoutDigits(method_getTypeEncoding(method)), last.types);
  free(ofClass);
}

TEST_F(Bundle, ShippedHeaderDeclaresTheSeventeenOperationsInTheirOrder) {
  NSString* path = [[bundle_ bundlePath] stringByAppendingPathComponent:@"Headers/TelvarinManagerEPGPluginProtocol.h"];
  const std::string header = text([NSString stringWithContentsOfFile:path encoding:NSUTF8StringEncoding error:NULL]);
  std::size_t position = header.find("@protocol TelvarinManagerEPGPluginProtocol\n");
  ASSERT_NE(position, std::string::npos) << text(path);
  std::vector<std::string> declarations;
  while ((position = header.find('\n', position)) != std::string::npos) {
    const std::string line = header.substr(position + 1, header.find('\n', position + 1) - position - 1);
    ++position;
    if (line.compare(0, 3, "- (") == 0 || line.compare(0, 3, "+ (") == 0) {
      declarations.push_back(line);
    }
  }
  ASSERT_EQ(declarations.size(), 17u);
  for (std::size_t index = 0; index < declarations.size(); ++index) {
    EXPECT_EQ(declarations[index], protocolOperations[index].declaration);
  }
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
  EXPECT_EQ(dlsym(image, "EPGDorvaSelinExceptionRaisedBy"), nullptr);
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
  // While a save still writes, another one is dropped.
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  [plugin saveEPGItemsToFile];
  EXPECT_TRUE(eventually([&] {
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
  ASSERT_TRUE(writeItemStore(dictionary(@"E1", dictionary(@"title", @"A"))));
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

// What the host was handed out and does not hold itself, as it may with a dictionary.

TEST_F(Bundle, ItemTakenIntoTheStoreLivesOnWhenTheListLetsGoOfIt) {
  if (!ObjectCount::works) GTEST_SKIP() << "NOT TESTED: objects cannot be counted with this compiler";
  const ObjectCount items("EPGDorvaSelinItem");
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableDictionary* item = nil;
  {
    NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
    [plugin setEditedEPGUniqueIDs:only(@"E1")];
    item = [[plugin editedItems] lastObject];
    [plugin commitEditing];
    [plugin setEditedEPGUniqueIDs:[NSArray array]];
    [inner drain];
  }
  EXPECT_EQ(items.made(), 1);
  EXPECT_EQ(items.alive(), 1);
  EXPECT_EQ([[plugin epgItems] objectForKey:@"E1"], item);
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  [plugin release];
}

TEST_F(Bundle, ValueOutOfAnItemLivesAsLongAsItStands) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  NSMutableDictionary* item = [[plugin editedItems] lastObject];
  NSString* title = nil;
  NSArray* tags = nil;
  {
    NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
    [item setObject:@"A title that fits into no pointer" forKey:@"title"];
    [item setObject:[NSArray arrayWithObjects:@"One tag that is long", @"Another", nil] forKey:@"tags"];
    title = [item objectForKey:@"title"];
    tags = [item objectForKey:@"tags"];
    // Asked for again, it is no other object that would push the first one out.
    EXPECT_EQ([item objectForKey:@"title"], title);
    EXPECT_EQ([item objectForKey:@"tags"], tags);
    [inner drain];
  }
  EXPECT_EQ(text(title), "A title that fits into no pointer");
  EXPECT_EQ(text([tags lastObject]), "Another");
  EXPECT_EQ([item objectForKey:@"tags"], tags);
  [item setObject:@"Another title, just as long as that" forKey:@"title"];
  EXPECT_EQ(text([item objectForKey:@"title"]), "Another title, just as long as that");
  [item removeObjectForKey:@"title"];
  EXPECT_EQ([item objectForKey:@"title"], nil);
  [plugin release];
}

TEST_F(Bundle, ValueInTheStoreThatIsNoItemLivesAsLongAsItStands) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSMutableDictionary* store = [plugin epgItems];
  [store setObject:@"no item, but a text all the same" forKey:@"E1"];
  EXPECT_EQ([store objectForKey:@"E1"], [store objectForKey:@"E1"]);
  [store setObject:@"another text, just as long as it" forKey:@"E1"];
  EXPECT_EQ(text([store objectForKey:@"E1"]), "another text, just as long as it");
  [plugin release];
}

TEST_F(Bundle, WhatWasHandedOutGoesWithItsEntry) {
  if (!ObjectCount::works) GTEST_SKIP() << "NOT TESTED: objects cannot be counted with this compiler";
  const ObjectCount items("EPGDorvaSelinItem");
  // The save's snapshot holds the items too, until its thread is gone.
  const OtherThreads threads;
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  const auto inAPool = [&](const std::function<void()>& work) {
    NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
    work();
    [inner drain];
    return threads.areGone();
  };
  ASSERT_TRUE(inAPool([&] {
    [plugin setEditedEPGUniqueIDs:[NSArray arrayWithObjects:@"E1", @"E2", @"E3", nil]];
    [plugin commitEditing];
    [plugin setEditedEPGUniqueIDs:[NSArray array]];
    for (NSString* uniqueID : {@"E1", @"E2", @"E3"}) {
      EXPECT_NE([[plugin epgItems] objectForKey:uniqueID], nil);
    }
  }));
  EXPECT_EQ(items.alive(), 3);
  // Through the plug-in, through the dictionary, and replaced.
  ASSERT_TRUE(inAPool([&] { [plugin removeEPGItemsWithUniqueIDs:only(@"E1")]; }));
  EXPECT_EQ(items.alive(), 2);
  ASSERT_TRUE(inAPool([&] { [[plugin epgItems] removeObjectForKey:@"E2"]; }));
  EXPECT_EQ(items.alive(), 1);
  ASSERT_TRUE(inAPool([&] { [plugin duplicateEPGItemWithUniqueID:@"E3" toItemWithUniqueID:@"E3"]; }));
  EXPECT_EQ(items.alive(), 0);
  ASSERT_TRUE(inAPool([&] { EXPECT_NE([[plugin epgItems] objectForKey:@"E3"], nil); }));
  EXPECT_EQ(items.alive(), 1);
  ASSERT_TRUE(inAPool([&] { [[plugin epgItems] setObject:@"no item" forKey:@"E3"]; }));
  EXPECT_EQ(items.alive(), 0);
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

NSString* stringOfUnits(const std::vector<int>& units) {
  NSMutableString* string = [NSMutableString string];
  for (const int unit : units) {
    [string appendFormat:@"%C", static_cast<unichar>(unit)];
  }
  return string;
}

TEST_F(Bundle, OnlyARowOfBytesThatSpellsACharacterComesBackAsThatCharacter) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
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
  [plugin release];
}

TEST_F(Bundle, ConfigurationWhoseNameIsNoUTF8IsListedAndUsed) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  const std::string folder = [dataFolder_ fileSystemRepresentation];
  ASSERT_EQ(rename((folder + "/Test.epgconf").c_str(), (folder + "/N\344chte.epgconf").c_str()), 0);
  NSArray* names = [plugin configurationFilenames];
  ASSERT_EQ([names count], 1u);
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:reports];
  [plugin exportEvents:[NSArray array] configurationFilename:[names lastObject]];
  ASSERT_TRUE(eventually([&] { return [reports count] == 1; }));
  EXPECT_EQ(text([plugin exportPath]), text(exportFolder_));
  [plugin setDelegate:nil];
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
  ASSERT_TRUE(writeItemStore(dictionary(@"E1", dictionary(@"title", @"Old"))));
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
  ASSERT_TRUE(writeItemStore(dictionary(@"E1", dictionary(@"title", @"Old"))));
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
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
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

TEST_F(Bundle, ExportThreadEntersThroughItsOperationWithACopyOfTheEvents) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
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
  [plugin setDelegate:nil];
  [plugin release];
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
  ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  ReportKeeper* reports = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:reports];
  [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [reports count] == 1; }));
  EXPECT_TRUE([reports reportAtIndex:0].succeeded);
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
