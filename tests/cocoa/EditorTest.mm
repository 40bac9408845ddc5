#include <string>

#import "tests/cocoa/EditorViewsOfBundle.h"

namespace {

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
  NSMutableArray* given = items(dictionary(@"title", @"A"));
  EXPECT_EQ([controller_ items], given);
  [controller_ setItems:given];
  EXPECT_EQ([controller_ items], given);
  [controller_ setItems:nil];
  EXPECT_EQ([controller_ items], nil);
  EXPECT_EQ([controller_ stateOfTagAtIndex:0], 0);
}

TEST_F(Editor, StatesAreOnOffAndMixed) {
  items(dictionary(@"tags", list(x_, y_)), dictionary(@"tags", list(y_)));
  NSTableColumn* selected = [table_ tableColumnWithIdentifier:@"selected"];
  EXPECT_EQ([[controller_ tableView:table_ objectValueForTableColumn:selected row:0] integerValue], -1);
  EXPECT_EQ([[controller_ tableView:table_ objectValueForTableColumn:selected row:1] integerValue], 1);
  EXPECT_EQ([[controller_ tableView:table_ objectValueForTableColumn:selected row:2] integerValue], 0);
  EXPECT_EQ([controller_ stateOfTagAtIndex:0], -1);
}

TEST_F(Editor, ProposedMixedTurnsOnAndEachItemGetsANewList) {
  NSMutableArray* tags = [NSMutableArray arrayWithObject:x_];
  NSMutableDictionary* a = dictionary(@"tags", tags);
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
  NSMutableDictionary* a = dictionary(@"tags", list(x_, @"unknown", x_));
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
  items(dictionary(@"tags", list(x_)), b);
  [controller_ setStateOfTag:0 atIndex:0];
  EXPECT_EQ([b count], 0u);
}

TEST_F(Editor, OtherTablesAndTheNameColumnAreLeftAlone) {
  NSMutableDictionary* a = dictionary(@"tags", list(x_));
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

TEST_F(Editor, ValueThatIsNoNumberChangesNothing) {
  items(dictionary(@"tags", list(x_)));
  for (id value : {static_cast<id>([NSArray array]), static_cast<id>([NSDate date]), static_cast<id>(nil)}) {
    [controller_ tableView:table_
            setObjectValue:value
            forTableColumn:[table_ tableColumnWithIdentifier:@"selected"]
                       row:0];
    EXPECT_EQ([controller_ stateOfTagAtIndex:0], 1);
  }
}

TEST_F(Editor, TagListOfAHostsItemIsAMutableArrayOfItsOwn) {
  NSArray* before = list(y_);
  NSMutableDictionary* item = dictionary(@"tags", before);
  items(item);
  propose(1, 0);
  NSMutableArray* tags = [item objectForKey:@"tags"];
  EXPECT_NE(tags, before);
  [tags addObject:@"another"];
  EXPECT_EQ([tags count], 3u);
  EXPECT_EQ([before count], 1u);
}

TEST_F(Editor, FieldsShowWhatItemsShare) {
  items(dictionary(@"title", @"A"), dictionary(@"title", @"A"));
  EXPECT_EQ(text([title_ stringValue]), "A");
  EXPECT_EQ(placeholder(title_), "nil");
  items(dictionary(@"title", @"A"), dictionary(@"title", @"B"));
  EXPECT_EQ(text([title_ stringValue]), "");
  EXPECT_EQ(placeholder(title_), "<Multiple Values>");
  // Items without the entry count only after the first that has it.
  items([NSMutableDictionary dictionary], dictionary(@"imageURL", @"X"));
  EXPECT_EQ(text([imageURL_ stringValue]), "X");
  items(dictionary(@"imageURL", @"X"), [NSMutableDictionary dictionary]);
  EXPECT_EQ(placeholder(imageURL_), "<Multiple Values>");
  items(dictionary(@"description", @""), [NSMutableDictionary dictionary]);
  EXPECT_EQ(placeholder(description_), "<Multiple Values>");
  [controller_ setItems:[NSMutableArray array]];
  EXPECT_EQ(text([description_ stringValue]), "");
  EXPECT_EQ(placeholder(description_), "nil");
}

TEST_F(Editor, AppliedTextsReplaceOnlyWhatWasTyped) {
  NSMutableDictionary* a = dictionary(@"title", @"A");
  NSMutableDictionary* b = dictionary(@"title", @"B");
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
  NSMutableDictionary* a = dictionary(@"title", @"A");
  [lonely setItems:[NSMutableArray arrayWithObject:a]];
  [lonely applyChanges];
  EXPECT_EQ([a count], 1u);
  [lonely release];
}

}  // namespace
