#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <variant>

#include "tests/support/Editor.h"

namespace epg::test {
namespace {

using Cell = EPGDorvaSelinViewController::ObjectValue;

const Cell noCell;

TEST(TagsTable, HasOneRowForEachTagOfTheCatalogue) {
  EXPECT_EQ(Editor({})->numberOfRowsInTableView(nullptr), 0);
  EXPECT_EQ(Editor({"a"})->numberOfRowsInTableView(nullptr), 1);
  EXPECT_EQ(Editor({"a", "b", "c"})->numberOfRowsInTableView(nullptr), 3);
}

TEST(TagsTable, NameColumnShowsTheTagOfTheRow) {
  Editor editor({"Drama", "Live"});
  EXPECT_EQ(editor->tableViewObjectValue(&editor.views.table, "name", 0), Cell(std::string("Drama")));
  EXPECT_EQ(editor->tableViewObjectValue(&editor.views.table, "name", 1), Cell(std::string("Live")));
}

TEST(TagsTable, SelectedColumnShowsTheStateOfTheRow) {
  Editor editor({"on", "off", "mixed"});
  editor.show({itemWithTags({"on", "mixed"}), itemWithTags({"on"})});
  EXPECT_EQ(editor->tableViewObjectValue(&editor.views.table, "selected", 0), Cell(TagStateOn));
  EXPECT_EQ(editor->tableViewObjectValue(&editor.views.table, "selected", 1), Cell(TagStateOff));
  EXPECT_EQ(editor->tableViewObjectValue(&editor.views.table, "selected", 2), Cell(TagStateMixed));
}

TEST(TagsTable, StatesHaveThePlatformsCheckboxValues) {
  EXPECT_EQ(static_cast<std::ptrdiff_t>(TagStateMixed), -1);
  EXPECT_EQ(static_cast<std::ptrdiff_t>(TagStateOff), 0);
  EXPECT_EQ(static_cast<std::ptrdiff_t>(TagStateOn), 1);
}

TEST(TagsTable, AnyOtherColumnShowsNothing) {
  Editor editor({"Drama"});
  editor.show({itemWithTags({"Drama"})});
  for (const char* const column : {"", "Name", "NAME", "Selected", "selected ", "tags", "state"}) {
    EXPECT_EQ(editor->tableViewObjectValue(&editor.views.table, column, 0), noCell) << column;
  }
}

TEST(TagsTable, AnotherTableGetsNoCells) {
  Editor editor({"Drama"});
  editor.show({itemWithTags({"Drama"})});
  JournalTable other(editor.views.journal);
  EXPECT_EQ(editor->tableViewObjectValue(&other, "name", 0), noCell);
  EXPECT_EQ(editor->tableViewObjectValue(&other, "selected", 0), noCell);
  EXPECT_EQ(editor->tableViewObjectValue(nullptr, "name", 0), noCell);
}

TEST(TagsTable, AnotherTableGetsTheNumberOfRows) {
  Editor editor({"Drama", "Live"});
  const JournalTable other(editor.views.journal);
  EXPECT_EQ(editor->numberOfRowsInTableView(&other), 2);
  EXPECT_EQ(editor->numberOfRowsInTableView(nullptr), 2);
}

TEST(TagsTable, AnotherTableCannotChangeATag) {
  Editor editor({"Drama"});
  const Item item = itemWithoutTags();
  editor.show({item});
  JournalTable other(editor.views.journal);
  editor->tableViewSetObjectValue(&other, 1, "selected", 0);
  editor->tableViewSetObjectValue(nullptr, 1, "selected", 0);
  EXPECT_FALSE(tagsOf(*item));
}

TEST(TagsTable, NoTableGetsCellsBeforeTheViewIsLoadedUnlessItIsNone) {
  Editor editor({"Drama"}, Editor::ViewIs::NotLoaded);
  EXPECT_EQ(editor->tableViewObjectValue(&editor.views.table, "name", 0), noCell);
  EXPECT_EQ(editor->tableViewObjectValue(nullptr, "name", 0), Cell(std::string("Drama")));
}

TEST(TagsTable, AValueWrittenIntoTheNameColumnIsIgnored) {
  Editor editor({"Drama"});
  const Item item = itemWithoutTags();
  editor.show({item});
  editor->tableViewSetObjectValue(&editor.views.table, 1, "name", 0);
  EXPECT_EQ(editor.nameInRow(0), "Drama");
  EXPECT_FALSE(tagsOf(*item));
}

TEST(TagsTable, AValueWrittenIntoAnUnknownColumnIsIgnored) {
  Editor editor({"Drama"});
  const Item item = itemWithoutTags();
  editor.show({item});
  for (const char* const column : {"", "Selected", "tags"}) {
    editor->tableViewSetObjectValue(&editor.views.table, 1, column, 0);
  }
  EXPECT_FALSE(tagsOf(*item));
}

TEST(TagsTable, ProposedOnSwitchesTheTagOn) {
  Editor editor({"Drama"});
  const Item item = itemWithoutTags();
  editor.show({item});
  editor.click(0, 1);
  EXPECT_EQ(tagsOf(*item), Names({"Drama"}));
}

TEST(TagsTable, ProposedOffSwitchesTheTagOff) {
  Editor editor({"Drama"});
  const Item item = itemWithTags({"Drama", "x"});
  editor.show({item});
  editor.click(0, 0);
  EXPECT_EQ(tagsOf(*item), Names({"x"}));
}

TEST(TagsTable, ProposedMixedSwitchesTheTagOnForEveryItem) {
  Editor editor({"Drama"});
  const Item carrying = itemWithTags({"Drama"});
  const Item without = itemWithoutTags();
  editor.show({carrying, without});
  editor.click(0, -1);
  EXPECT_EQ(tagsOf(*carrying), Names({"Drama"}));
  EXPECT_EQ(tagsOf(*without), Names({"Drama"}));
  EXPECT_EQ(editor.stateInRow(0), TagStateOn);
}

TEST(TagsTable, AnyOtherProposedValueChangesNothing) {
  Editor editor({"Drama"});
  const Item carrying = itemWithTags({"Drama"});
  const Item without = itemWithoutTags();
  editor.show({carrying, without});
  const auto before = carrying->values();
  for (const int proposed : {2, 3, -2, -3, 256, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    editor.click(0, proposed);
    EXPECT_EQ(carrying->values(), before) << proposed;
    EXPECT_FALSE(tagsOf(*without)) << proposed;
  }
}

TEST(TagsTable, AClickChangesOnlyTheTagOfItsRow) {
  Editor editor({"a", "b", "c"});
  const Item item = itemWithTags({"a"});
  editor.show({item});
  editor.click(1, 1);
  EXPECT_EQ(tagsOf(*item), Names({"a", "b"}));
  EXPECT_EQ(editor.statesInAllRows(), (std::vector<TagState>{TagStateOn, TagStateOn, TagStateOff}));
}

TEST(TagsTable, RowsOutsideTheCatalogueShowNothing) {
  Editor editor({"Drama"});
  editor.show({itemWithTags({"Drama"})});
  for (const std::ptrdiff_t row : {std::ptrdiff_t{-1}, std::ptrdiff_t{1}, std::ptrdiff_t{1000}}) {
    EXPECT_EQ(editor->tableViewObjectValue(&editor.views.table, "name", row), noCell) << row;
    EXPECT_EQ(editor->tableViewObjectValue(&editor.views.table, "selected", row), noCell) << row;
  }
}

TEST(TagsTable, RowsOutsideTheCatalogueChangeNothing) {
  Editor editor({"Drama"});
  const Item item = itemWithoutTags();
  editor.show({item});
  for (const std::ptrdiff_t row : {std::ptrdiff_t{-1}, std::ptrdiff_t{1}, std::ptrdiff_t{1000}}) {
    editor->tableViewSetObjectValue(&editor.views.table, 1, "selected", row);
  }
  EXPECT_FALSE(tagsOf(*item));
}

TEST(TagsTable, RowsReachTheStatesAs32BitNumbersForShowingAndForChangingAlike) {
  if (sizeof(std::ptrdiff_t) == sizeof(std::int32_t)) GTEST_SKIP() << "rows have no more than 32 bits here";
  Editor editor({"Drama", "Live"});
  const Item item = itemWithoutTags();
  editor.show({item});
  const auto row = static_cast<std::ptrdiff_t>((std::int64_t{1} << 32) + 1);
  editor->tableViewSetObjectValue(&editor.views.table, 1, "selected", row);
  EXPECT_EQ(tagsOf(*item), Names({"Live"}));
  EXPECT_EQ(editor->tableViewObjectValue(&editor.views.table, "selected", row), Cell(TagStateOn));
  EXPECT_EQ(editor->tableViewObjectValue(&editor.views.table, "selected", row + 1), noCell);
}

TEST(TagsTable, WithoutACatalogueHasNoRowsToShowOrChange) {
  Editor editor({});
  const Item item = itemWithTags({"Drama"});
  editor.show({item});
  EXPECT_EQ(editor->tableViewObjectValue(&editor.views.table, "name", 0), noCell);
  editor.click(0, 0);
  editor.click(0, 1);
  EXPECT_EQ(tagsOf(*item), Names({"Drama"}));
}

}  // namespace
}  // namespace epg::test
