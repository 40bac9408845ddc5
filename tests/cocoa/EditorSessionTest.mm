#import <objc/runtime.h>

#include <atomic>
#include <string>
#include <thread>
#include <unordered_set>

#import "tests/cocoa/EditorViewsOfBundle.h"
#import "tests/cocoa/MemoryRounds.h"
#import "tests/cocoa/ObjectCount.h"

// The plug-in's editing session with its editor.

namespace {

using EditorSession = BundleUser;

TEST_F(EditorSession, SessionShowsAListOnlyOnceItIsNamedWithTheViewThere) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  [[plugin epgItems] setObject:dictionary(@"title", @"A") forKey:@"E1"];
  [plugin setEditedEPGUniqueIDs:list(@"E1")];
  NSView* view = [plugin editorView];
  EXPECT_EQ([plugin editorView], view);
  id table = viewInside(view, [NSTableView class]);
  EPGDorvaSelinViewController* controller = [table dataSource];
  EXPECT_EQ([controller delegate], plugin);
  EXPECT_EQ([controller items], nil);
  [plugin revertEditing];
  EXPECT_EQ([controller items], [plugin editedItems]);
  NSTextField* title = [controller valueForKey:@"titleTextField"];
  EXPECT_EQ(text([title stringValue]), "A");

  [title setStringValue:@"typed"];
  [controller setStateOfTag:1 atIndex:0];
  [plugin revertEditing];
  EXPECT_EQ(text([title stringValue]), "A");
  EXPECT_EQ([controller stateOfTagAtIndex:0], 1);
  EXPECT_EQ([[[plugin epgItems] objectForKey:@"E1"] objectForKey:@"tags"], nil);

  [title setStringValue:@"B"];
  [plugin commitEditing];
  EXPECT_EQ(text([[[plugin epgItems] objectForKey:@"E1"] objectForKey:@"title"]), "B");
  EXPECT_TRUE(
      eventually([&] { return [[[savedStore() objectForKey:@"E1"] objectForKey:@"title"] isEqual:@"B"] != NO; }));
  [controller setStateOfTag:0 atIndex:0];
  EXPECT_EQ([[[[plugin epgItems] objectForKey:@"E1"] objectForKey:@"tags"] count], 0u);
  [plugin release];
}

TEST_F(EditorSession, TextThatIsStillBeingTypedIsCommitted) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSView* view = [plugin editorView];
  NSWindow* window = [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 400, 300)
                                                 styleMask:NSTitledWindowMask
                                                   backing:NSBackingStoreBuffered
                                                     defer:NO];
  [window setReleasedWhenClosed:NO];
  [[window contentView] addSubview:view];
  [plugin setEditedEPGUniqueIDs:list(@"E1")];
  id table = viewInside(view, [NSTableView class]);
  NSTextField* title = [[table dataSource] valueForKey:@"titleTextField"];
  [window orderFront:nil];
  [title selectText:nil];
  NSText* editor = [title currentEditor];
  ASSERT_NE(editor, nil);
  [editor setString:@"half a wo"];
  [plugin commitEditing];
  EXPECT_EQ(text([[[plugin epgItems] objectForKey:@"E1"] objectForKey:@"title"]), "half a wo");
  [plugin release];
  [window release];
}

TEST_F(EditorSession, ViewMayOutliveThePlugin) {
  NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  NSView* view = [[plugin editorView] retain];
  id found = viewInside(view, [NSTableView class]);
  NSTableView* table = [found retain];
  EXPECT_NE([table dataSource], nil);
  [plugin release];
  [inner drain];
  EXPECT_EQ([table dataSource], nil);
  EXPECT_EQ([table delegate], nil);
  [table release];
  [view release];
}

/// Without an editor but the plug-in's own, of which every round makes one.
using EditorOfAPlugin = BundleUser;

TEST_F(EditorOfAPlugin, DroppedInTheMiddleOfAnExportTheViewsGoOnTheMainThread) {
  if (!ObjectCount::works) GTEST_SKIP() << "NOT TESTED: objects cannot be counted with this compiler";
  const ObjectCount plugins("EPGDorvaSelinManagerPlugin");
  const ObjectCount controllers("EPGDorvaSelinViewController");
  const ObjectCount tables("EPGDorvaSelinTagsTableView");
  const ObjectCount items("EPGDorvaSelinItem");
  ReportKeeper* reports = [[ReportKeeper alloc] init];
  const int rounds = repeatForMemory([&] {
    NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
    EPGDorvaSelinManagerPlugin* plugin = newPlugin();
    EPGDorvaSelinViewController* controller = controllerOf(plugin);
    [plugin setEditedEPGUniqueIDs:list(@"E1", @"E2")];
    [controller setStateOfTag:1 atIndex:0];
    [[controller valueForKey:@"titleTextField"] setStringValue:@"Title"];
    [plugin commitEditing];
    [reports holdReports];
    [plugin setDelegate:reports];
    [plugin exportEvents:[NSArray arrayWithObject:event(@"E1", @"P", [NSDate date])] configurationFilename:@"Test"];
    [plugin release];
    [inner drain];
    // The export holds the last of the object now, or a save that takes even longer.
    [reports letReportsGo];
    ASSERT_TRUE(eventually([&] { return plugins.alive() == 0 && controllers.alive() == 0; }))
        << plugins.alive() << " plug-ins and " << controllers.alive() << " controllers after " << plugins.made();
  });
  EXPECT_EQ([reports count], static_cast<NSUInteger>(rounds));
  EXPECT_EQ(plugins.made(), rounds);
  EXPECT_EQ(plugins.endedBesideTheMainThread(), rounds);
  EXPECT_EQ(controllers.made(), rounds);
  EXPECT_EQ(controllers.endedBesideTheMainThread(), 0);
  EXPECT_EQ(tables.made(), rounds);
  EXPECT_EQ(tables.alive(), 0);
  EXPECT_EQ(tables.endedBesideTheMainThread(), 0);
  EXPECT_GE(items.made(), 2 * rounds);
  EXPECT_EQ(items.alive(), 0);
  EXPECT_EQ([reports retainCount], 1u);
  [reports release];
}

// A host's dictionaries of the platform's class, which the saves read while the editor changes them.

std::unordered_set<const void*> watched;
std::atomic<int> visitors{0};
std::atomic<int> visits{0};
std::atomic<int> meetings{0};

/// One thread's stay inside any watched dictionary.
class Visit {
 public:
  explicit Visit(id dictionary) : counts_(watched.count(dictionary) != 0) {
    if (!counts_) {
      return;
    }
    ++visits;
    if (visitors++ != 0) {
      ++meetings;
    }
    // The others have the chance to come in.
    std::this_thread::yield();
  }
  Visit(const Visit&) = delete;
  Visit& operator=(const Visit&) = delete;
  ~Visit() {
    if (counts_) {
      --visitors;
    }
  }

 private:
  const bool counts_;
};

IMP originalObject;
IMP originalKeys;
IMP originalChange;

id watchedObject(id self, SEL operation, id key) {
  const Visit visit(self);
  return functionOf<id(id, SEL, id)>(originalObject)(self, operation, key);
}

id watchedKeys(id self, SEL operation) {
  const Visit visit(self);
  return functionOf<id(id, SEL)>(originalKeys)(self, operation);
}

void watchedChange(id self, SEL operation, id object, id key) {
  const Visit visit(self);
  functionOf<void(id, SEL, id, id)>(originalChange)(self, operation, object, key);
}

IMP exchanged(Class changed, SEL operation, IMP implementation) {
  Method method = class_getInstanceMethod(changed, operation);
  const IMP original = method_getImplementation(method);
  class_replaceMethod(changed, operation, implementation, method_getTypeEncoding(method));
  return original;
}

TEST_F(EditorSession, SavesReadAHostsDictionariesOnlyWhileTheEditorDoesNotChangeThem) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  EPGDorvaSelinViewController* controller = controllerOf(plugin);
  NSMutableArray* given = [NSMutableArray array];
  for (int number = 0; number < 20; ++number) {
    [given addObject:dictionary(@"uniqueID", [NSString stringWithFormat:@"E%d", number])];
    watched.insert([given lastObject]);
  }
  Class platforms = [[given lastObject] class];
  originalObject = exchanged(platforms, @selector(objectForKey:), implementationOf(watchedObject));
  originalKeys = exchanged(platforms, @selector(keyEnumerator), implementationOf(watchedKeys));
  originalChange = exchanged(platforms, @selector(setObject:forKey:), implementationOf(watchedChange));
  [plugin setEditedItems:given];
  [plugin revertEditing];
  [plugin commitEditing];
  EXPECT_EQ([[plugin epgItems] objectForKey:@"E0"], [given objectAtIndex:0]);
  for (int round = 0; round < 300; ++round) {
    NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
    [plugin saveEPGItemsToFile];
    [controller setStateOfTag:1 - round % 2 atIndex:0];
    [controller applyChanges];
    [inner drain];
  }
  EXPECT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  exchanged(platforms, @selector(objectForKey:), originalObject);
  exchanged(platforms, @selector(keyEnumerator), originalKeys);
  exchanged(platforms, @selector(setObject:forKey:), originalChange);
  EXPECT_GT(visits, 1000);
  EXPECT_EQ(meetings, 0);
  [plugin saveEPGItemsToFileThread:[plugin epgItems]];
  EXPECT_EQ([savedStore() count], 20u);
  [plugin release];
}

}  // namespace
