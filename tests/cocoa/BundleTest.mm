#include <dlfcn.h>
#import <objc/runtime.h>
#include <stdlib.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#import "tests/cocoa/BundleUser.h"

namespace {

using Bundle = BundleUser;
using BundleObject = BundlePlugin;

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

TEST_F(BundleObject, NewObjectIsEmptyAndSilent) {
  EXPECT_EQ([plugin delegate], nil);
  EXPECT_EQ([plugin exportPath], nil);
  EXPECT_EQ([plugin stringValue], nil);
  EXPECT_EQ([[plugin epgItems] count], 0u);
  EXPECT_EQ([[plugin editedItems] count], 0u);
  EXPECT_EQ([plugin minimumEditorViewSize].width, 300);
  EXPECT_EQ([plugin minimumEditorViewSize].height, 200);
  EXPECT_EQ([plugin maximumEditorViewSize].width, 5000);
  EXPECT_EQ([plugin maximumEditorViewSize].height, 5000);
}

TEST_F(Bundle, WorksWithoutBundleAndDataFolder) {
  EPGDorvaSelinManagerPlugin* plugin = [[[bundle_ principalClass] alloc] init];
  [plugin setEditedEPGUniqueIDs:only(@"E1")];
  EXPECT_TRUE([plugin commitEditing]);
  EXPECT_EQ([[plugin epgItems] count], 1u);
  EXPECT_EQ(text([[plugin configurationFilenames] lastObject]), "Default EPG Settings");
  [plugin release];
}

TEST_F(BundleObject, DelegateIsNotRetained) {
  NSObject* delegate = [[NSObject alloc] init];
  id<TelvarinManagerEPGPluginProtocol_Delegate> untyped = reinterpret_cast<id>(delegate);
  const NSUInteger before = [delegate retainCount];
  [plugin setDelegate:untyped];
  EXPECT_EQ([plugin delegate], untyped);
  EXPECT_EQ([delegate retainCount], before);
  [plugin setDelegate:nil];
  [delegate release];
}

TEST_F(BundleObject, ErrorsCarryTheLongDomainTheCodeAndOnlyTheMessage) {
  NSError* error = [plugin errorWithMessage:@"Störung 🛰"];
  EXPECT_EQ([error code], -1);
  EXPECT_EQ(text([error localizedDescription]), "Störung 🛰");
  EXPECT_EQ([[error userInfo] count], 1u);
  EXPECT_TRUE([[error domain] hasSuffix:@".EPG"]);
}

TEST_F(BundleObject, ListsConfigurationsWhateverTheirNamesAreMadeOf) {
  NSFileManager* files = [NSFileManager defaultManager];
  for (NSString* name : {@"x.y.epgconf", @"Nächte 🌙.epgconf", @"notes.txt", @"Night.EPGCONF"}) {
    [files createFileAtPath:[dataFolder_ stringByAppendingPathComponent:name] contents:[NSData data] attributes:nil];
  }
  NSSet* names = [NSSet setWithArray:[plugin configurationFilenames]];
  EXPECT_TRUE([names isEqual:([NSSet setWithObjects:@"Test", @"x.y", @"Nächte 🌙", nil])]) << text([names description]);
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

}  // namespace
