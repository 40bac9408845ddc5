#import <objc/runtime.h>

#include <atomic>
#include <string>
#include <thread>
#include <unordered_set>

#import "tests/cocoa/BundleUser.h"
#import "tests/cocoa/MemoryRounds.h"
#import "tests/cocoa/ObjectCount.h"

namespace {

NSMutableDictionary* item(NSString* key, id value) {
  return [NSMutableDictionary dictionaryWithObject:value forKey:key];
}

NSArray* list(NSString* first, NSString* second = nil, NSString* third = nil) {
  return [NSArray arrayWithObjects:first, second, third, nil];
}

NSView* viewInside(NSView* view, Class wanted) {
  if ([view isKindOfClass:wanted]) {
    return view;
  }
  for (NSUInteger index = 0; index < [[view subviews] count]; ++index) {
    if (NSView* found = viewInside([[view subviews] objectAtIndex:index], wanted)) {
      return found;
    }
  }
  return nil;
}

/// The controller of the plug-in's editor view, which is loaded if it has not been.
EPGDorvaSelinViewController* controllerOf(EPGDorvaSelinManagerPlugin* plugin) {
  id table = viewInside([plugin editorView], [NSTableView class]);
  return [table dataSource];
}

/// The editor in its view, and three tags of the catalogue.
class Editor : public BundleUser {
 protected:
  Editor()
      : controller_([[NSClassFromString(@"EPGDorvaSelinViewController") alloc] initWithNibName:@"EPGDorvaSelinEditor"
                                                                                        bundle:bundle_]) {
    [controller_ view];
    table_ = [controller_ valueForKey:@"tagsTableView"];
    title_ = [controller_ valueForKey:@"titleTextField"];
    description_ = [controller_ valueForKey:@"descriptionTextField"];
    imageURL_ = [controller_ valueForKey:@"imageURLTextField"];
    x_ = tagAtRow(0);
    y_ = tagAtRow(1);
  }
  ~Editor() override { [controller_ release]; }

  NSString* tagAtRow(NSInteger row) {
    return [controller_ tableView:table_ objectValueForTableColumn:[table_ tableColumnWithIdentifier:@"name"] row:row];
  }
  /// What the checkbox of the row proposes when it is clicked.
  void propose(int state, NSInteger row) {
    [controller_ tableView:table_
            setObjectValue:[NSNumber numberWithInt:state]
            forTableColumn:[table_ tableColumnWithIdentifier:@"selected"]
                       row:row];
  }
  NSMutableArray* items(NSMutableDictionary* first, NSMutableDictionary* second = nil) {
    NSMutableArray* result = [NSMutableArray arrayWithObjects:first, second, nil];
    [controller_ setItems:result];
    return result;
  }
  static std::string placeholder(NSTextField* field) { return text([[field cell] placeholderString]); }

  EPGDorvaSelinViewController* controller_;
  NSTableView* table_;
  NSTextField* title_;
  NSTextField* description_;
  NSTextField* imageURL_;
  NSString* x_;
  NSString* y_;
};

TEST_F(Editor, InterfaceFileConnectsEverything) {
  EXPECT_NE(table_, nil);
  EXPECT_NE(title_, nil);
  EXPECT_NE(description_, nil);
  EXPECT_NE(imageURL_, nil);
  EXPECT_EQ([table_ dataSource], controller_);
  EXPECT_EQ([table_ delegate], controller_);
  EXPECT_EQ([table_ numberOfColumns], 2);
  EXPECT_EQ([controller_ delegate], nil);
  EXPECT_EQ([controller_ items], nil);
  EXPECT_EQ([[controller_ view] nextKeyView], title_);
  EXPECT_EQ([title_ nextKeyView], description_);
  EXPECT_EQ([description_ nextKeyView], imageURL_);
  EXPECT_EQ([imageURL_ nextKeyView], table_);
}

TEST_F(Editor, LabelsFitAtTheSmallestSizeAndCannotBeEdited) {
  NSView* view = [controller_ view];
  [view setFrame:NSMakeRect(0, 0, 300, 200)];
  int labels = 0;
  for (NSUInteger index = 0; index < [[view subviews] count]; ++index) {
    NSView* part = [[view subviews] objectAtIndex:index];
    EXPECT_TRUE(NSContainsRect([view bounds], [part frame])) << text([part description]);
    id object = part;
    if ([part isKindOfClass:[NSTextField class]] && ![object isBezeled]) {
      ++labels;
      EXPECT_FALSE([object isEditable]);
      NSDictionary* attributes = [NSDictionary dictionaryWithObject:[object font] forKey:NSFontAttributeName];
      const NSSize size = [[object stringValue] sizeWithAttributes:attributes];
      EXPECT_LE(size.width, NSWidth([part frame]) - 4) << text([object stringValue]);
      EXPECT_LE(size.height, NSHeight([part frame]) + 1) << text([object stringValue]);
    }
  }
  EXPECT_EQ(labels, 4);
}

TEST_F(Editor, FieldsAndTableGrowWithTheView) {
  [[controller_ view] setFrame:NSMakeRect(0, 0, 900, 700)];
  EXPECT_EQ(NSWidth([title_ frame]), 794);
  EXPECT_EQ(NSHeight([title_ frame]), 22);
  EXPECT_EQ(NSHeight([[table_ enclosingScrollView] frame]), 598);
}

TEST_F(Editor, ItemsAreTheVeryListGivenLast) {
  NSMutableArray* given = items(item(@"title", @"A"));
  EXPECT_EQ([controller_ items], given);
  [controller_ setItems:given];
  EXPECT_EQ([controller_ items], given);
  [controller_ setItems:nil];
  EXPECT_EQ([controller_ items], nil);
  EXPECT_EQ([controller_ stateOfTagAtIndex:0], 0);
}

TEST_F(Editor, StatesAreOnOffAndMixed) {
  items(item(@"tags", list(x_, y_)), item(@"tags", list(y_)));
  NSTableColumn* selected = [table_ tableColumnWithIdentifier:@"selected"];
  EXPECT_EQ([[controller_ tableView:table_ objectValueForTableColumn:selected row:0] integerValue], -1);
  EXPECT_EQ([[controller_ tableView:table_ objectValueForTableColumn:selected row:1] integerValue], 1);
  EXPECT_EQ([[controller_ tableView:table_ objectValueForTableColumn:selected row:2] integerValue], 0);
  EXPECT_EQ([controller_ stateOfTagAtIndex:0], -1);
}

TEST_F(Editor, ProposedMixedTurnsOnAndEachItemGetsANewList) {
  NSMutableArray* tags = [NSMutableArray arrayWithObject:x_];
  NSMutableDictionary* a = item(@"tags", tags);
  NSMutableDictionary* b = [NSMutableDictionary dictionary];
  items(a, b);
  propose(-1, 0);
  EXPECT_EQ([a objectForKey:@"tags"], tags);
  EXPECT_TRUE([[b objectForKey:@"tags"] isEqual:list(x_)]);
  propose(0, 0);
  EXPECT_TRUE([[a objectForKey:@"tags"] isEqual:[NSArray array]]);
  EXPECT_TRUE([[b objectForKey:@"tags"] isEqual:[NSArray array]]);
  EXPECT_EQ([tags count], 1u);
  propose(7, 0);
  EXPECT_EQ([[a objectForKey:@"tags"] count], 0u);
}

TEST_F(Editor, TagsKeepTheirOrderAndNewOnesGoLast) {
  NSMutableDictionary* a = item(@"tags", list(x_, @"unknown", x_));
  items(a);
  [controller_ setStateOfTag:1 atIndex:1];
  EXPECT_TRUE([[a objectForKey:@"tags"] isEqual:([NSArray arrayWithObjects:x_, @"unknown", x_, y_, nil])]);
  [controller_ setStateOfTag:0 atIndex:0];
  EXPECT_TRUE([[a objectForKey:@"tags"] isEqual:list(@"unknown", y_)]);
  [controller_ setStateOfTag:-1 atIndex:2];
  EXPECT_EQ([[a objectForKey:@"tags"] count], 2u);
}

TEST_F(Editor, ItemWithoutTagsStaysWithoutWhenATagIsTurnedOff) {
  NSMutableDictionary* b = [NSMutableDictionary dictionary];
  items(item(@"tags", list(x_)), b);
  [controller_ setStateOfTag:0 atIndex:0];
  EXPECT_EQ([b count], 0u);
}

TEST_F(Editor, OtherTablesAndTheNameColumnAreLeftAlone) {
  NSMutableDictionary* a = item(@"tags", list(x_));
  items(a);
  NSTableView* other = [[[NSTableView alloc] initWithFrame:NSMakeRect(0, 0, 10, 10)] autorelease];
  NSTableColumn* name = [table_ tableColumnWithIdentifier:@"name"];
  EXPECT_EQ([controller_ tableView:other objectValueForTableColumn:name row:0], nil);
  EXPECT_EQ([controller_ numberOfRowsInTableView:other], [controller_ numberOfRowsInTableView:table_]);
  [controller_ tableView:table_ setObjectValue:@"renamed" forTableColumn:name row:0];
  EXPECT_EQ(text(tagAtRow(0)), text(x_));
  [controller_ tableView:other
          setObjectValue:[NSNumber numberWithInt:0]
          forTableColumn:[table_ tableColumnWithIdentifier:@"selected"]
                     row:0];
  EXPECT_EQ([controller_ stateOfTagAtIndex:0], 1);
}

TEST_F(Editor, FieldsShowWhatItemsShare) {
  items(item(@"title", @"A"), item(@"title", @"A"));
  EXPECT_EQ(text([title_ stringValue]), "A");
  EXPECT_EQ(placeholder(title_), "nil");
  items(item(@"title", @"A"), item(@"title", @"B"));
  EXPECT_EQ(text([title_ stringValue]), "");
  EXPECT_EQ(placeholder(title_), "<Multiple Values>");
  // Items without the entry count only after the first that has it.
  items([NSMutableDictionary dictionary], item(@"imageURL", @"X"));
  EXPECT_EQ(text([imageURL_ stringValue]), "X");
  items(item(@"imageURL", @"X"), [NSMutableDictionary dictionary]);
  EXPECT_EQ(placeholder(imageURL_), "<Multiple Values>");
  items(item(@"description", @""), [NSMutableDictionary dictionary]);
  EXPECT_EQ(placeholder(description_), "<Multiple Values>");
  [controller_ setItems:[NSMutableArray array]];
  EXPECT_EQ(text([description_ stringValue]), "");
  EXPECT_EQ(placeholder(description_), "nil");
}

TEST_F(Editor, AppliedTextsReplaceOnlyWhatWasTyped) {
  NSMutableDictionary* a = item(@"title", @"A");
  NSMutableDictionary* b = item(@"title", @"B");
  items(a, b);
  [controller_ applyChanges];
  EXPECT_EQ(text([a objectForKey:@"title"]), "A");
  EXPECT_EQ(text([b objectForKey:@"description"]), "");
  [title_ setStringValue:@" Z 日本 "];
  [controller_ applyChanges];
  EXPECT_EQ(text([a objectForKey:@"title"]), " Z 日本 ");
  EXPECT_EQ(text([b objectForKey:@"title"]), " Z 日本 ");
  EXPECT_EQ(placeholder(title_), "<Multiple Values>");
}

TEST_F(Editor, MixedFieldIsEmptiedAndAnOtherOneOnlyLosesItsPlaceholder) {
  NSTextField* field = [[[NSTextField alloc] initWithFrame:NSMakeRect(0, 0, 10, 10)] autorelease];
  [field setStringValue:@"text"];
  [controller_ setMixedTextField:field value:YES];
  EXPECT_EQ(text([field stringValue]), "");
  EXPECT_EQ(placeholder(field), "<Multiple Values>");
  [field setStringValue:@"text"];
  [controller_ setMixedTextField:field value:NO];
  EXPECT_EQ(text([field stringValue]), "text");
  EXPECT_EQ(placeholder(field), "nil");
  [controller_ setMixedTableView:table_ value:YES];
}

TEST_F(Editor, WithoutABundleTheCatalogueIsEmpty) {
  EPGDorvaSelinViewController* lonely = [[[controller_ class] alloc] initWithNibName:@"EPGDorvaSelinEditor" bundle:nil];
  EXPECT_EQ([lonely numberOfRowsInTableView:nil], 0);
  NSMutableDictionary* a = item(@"title", @"A");
  [lonely setItems:[NSMutableArray arrayWithObject:a]];
  [lonely applyChanges];
  EXPECT_EQ([a count], 1u);
  [lonely release];
}

// The session with its editor.

TEST_F(Editor, SessionShowsAListOnlyOnceItIsNamedWithTheViewThere) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  [[plugin epgItems] setObject:item(@"title", @"A") forKey:@"E1"];
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

TEST_F(Editor, TextThatIsStillBeingTypedIsCommitted) {
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

TEST_F(Editor, ViewMayOutliveThePlugin) {
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

TEST_F(Editor, SavesReadAHostsDictionariesOnlyWhileTheEditorDoesNotChangeThem) {
  EPGDorvaSelinManagerPlugin* plugin = newPlugin();
  EPGDorvaSelinViewController* controller = controllerOf(plugin);
  NSMutableArray* given = [NSMutableArray array];
  for (int number = 0; number < 20; ++number) {
    [given addObject:item(@"uniqueID", [NSString stringWithFormat:@"E%d", number])];
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
