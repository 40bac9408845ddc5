#include <gtest/gtest.h>

#include <limits>

#include "tests/support/Editor.h"

namespace epg::test {
namespace {

/// The state of the tag "x" over the items.
TagState stateOver(const std::vector<Item>& items) {
  Editor editor({"other", "x"});
  editor.show(items);
  return editor->stateOfTagAtIndex(1);
}

TEST(TagState, IsOffWithoutItems) { EXPECT_EQ(stateOver({}), TagStateOff); }

TEST(TagState, IsOffBeforeAnyItemsWereGiven) {
  Editor editor({"x"});
  EXPECT_EQ(editor->stateOfTagAtIndex(0), TagStateOff);
  EXPECT_EQ(editor.stateInRow(0), TagStateOff);
}

TEST(TagState, OfOneItemIsOnlyOnOrOff) {
  EXPECT_EQ(stateOver({itemWithTags({"x"})}), TagStateOn);
  EXPECT_EQ(stateOver({itemWithTags({"a", "x", "b"})}), TagStateOn);
  EXPECT_EQ(stateOver({itemWithTags({"a"})}), TagStateOff);
  EXPECT_EQ(stateOver({itemWithTags({})}), TagStateOff);
  EXPECT_EQ(stateOver({itemWithoutTags()}), TagStateOff);
}

TEST(TagState, IsOnWhenEveryItemCarriesTheTag) {
  EXPECT_EQ(stateOver({itemWithTags({"x"}), itemWithTags({"a", "x"}), itemWithTags({"x", "other"})}), TagStateOn);
}

TEST(TagState, IsOffWhenNoItemCarriesTheTag) {
  EXPECT_EQ(stateOver({itemWithTags({"a"}), itemWithTags({}), itemWithoutTags(), itemWithTags({"other"})}),
            TagStateOff);
}

TEST(TagState, IsMixedWhenOnlyTheFirstItemCarriesTheTag) {
  EXPECT_EQ(stateOver({itemWithTags({"x"}), itemWithTags({"a"})}), TagStateMixed);
}

TEST(TagState, IsMixedWhenOnlyTheLastItemCarriesTheTag) {
  EXPECT_EQ(stateOver({itemWithTags({"a"}), itemWithTags({"b"}), itemWithTags({"x"})}), TagStateMixed);
}

TEST(TagState, IsMixedWhenOneItemInTheMiddleLacksTheTag) {
  EXPECT_EQ(stateOver({itemWithTags({"x"}), itemWithTags({"a"}), itemWithTags({"x"})}), TagStateMixed);
}

TEST(TagState, CountsAnItemWithoutAListAsCarryingNothing) {
  EXPECT_EQ(stateOver({itemWithTags({"x"}), itemWithoutTags()}), TagStateMixed);
  EXPECT_EQ(stateOver({itemWithoutTags(), itemWithTags({"x"})}), TagStateMixed);
}

TEST(TagState, CountsAnItemWithAnEmptyListAsCarryingNothing) {
  EXPECT_EQ(stateOver({itemWithTags({"x"}), itemWithTags({})}), TagStateMixed);
  EXPECT_EQ(stateOver({itemWithTags({}), itemWithTags({"x"})}), TagStateMixed);
}

TEST(TagState, CountsDuplicatesInOneListOnce) {
  EXPECT_EQ(stateOver({itemWithTags({"x", "x", "x"})}), TagStateOn);
  EXPECT_EQ(stateOver({itemWithTags({"x", "x"}), itemWithTags({"a"})}), TagStateMixed);
  EXPECT_EQ(stateOver({itemWithTags({"x", "x"}), itemWithTags({"x"})}), TagStateOn);
  EXPECT_EQ(stateOver({itemWithTags({"x", "x"}), itemWithTags({"a"}), itemWithTags({"x", "x"})}), TagStateMixed);
}

TEST(TagState, TellsLetterCaseApart) {
  Editor editor({"Sport", "sport"});
  editor.show({itemWithTags({"sport"})});
  EXPECT_EQ(editor.stateInRow(0), TagStateOff);
  EXPECT_EQ(editor.stateInRow(1), TagStateOn);
}

TEST(TagState, TellsBlanksApart) {
  Editor editor({"Sport", " Sport", "Sport "});
  editor.show({itemWithTags({"Sport "})});
  EXPECT_EQ(editor.statesInAllRows(), (std::vector<TagState>{TagStateOff, TagStateOff, TagStateOn}));
}

TEST(TagState, TellsComposedAndDecomposedLettersApart) {
  Editor editor({"Caf\xC3\xA9", "Cafe\xCC\x81"});
  editor.show({itemWithTags({"Cafe\xCC\x81"})});
  EXPECT_EQ(editor.statesInAllRows(), (std::vector<TagState>{TagStateOff, TagStateOn}));
}

TEST(TagState, TellsNamesApartThatDifferBehindAZeroByte) {
  const std::string one("x\0a", 3);
  const std::string other("x\0b", 3);
  Editor editor({"x"});
  editor.show({itemWithTags({one, other})});
  EXPECT_EQ(editor.stateInRow(0), TagStateOff);
}

TEST(TagState, OfTheEmptyNameIsThatOfTheEmptyTag) {
  Editor editor({""});
  editor.show({itemWithTags({""})});
  EXPECT_EQ(editor.stateInRow(0), TagStateOn);
  editor.show({itemWithTags({"x"})});
  EXPECT_EQ(editor.stateInRow(0), TagStateOff);
}

TEST(TagState, OfTheSameItemTwiceIsThatOfTheItem) {
  const Item item = itemWithTags({"x"});
  EXPECT_EQ(stateOver({item, item}), TagStateOn);
  EXPECT_EQ(stateOver({item, item, itemWithoutTags()}), TagStateMixed);
}

TEST(TagState, OfTwoRowsWithTheSameNameIsTheSame) {
  Editor editor({"x", "y", "x"});
  editor.show({itemWithTags({"x"})});
  EXPECT_EQ(editor.statesInAllRows(), (std::vector<TagState>{TagStateOn, TagStateOff, TagStateOn}));
  editor.show({itemWithTags({"x"}), itemWithTags({"y"})});
  EXPECT_EQ(editor.statesInAllRows(), (std::vector<TagState>{TagStateMixed, TagStateMixed, TagStateMixed}));
}

TEST(TagState, OfTagsOutsideTheCatalogueIsShownNowhere) {
  Editor editor({"x"});
  editor.show({itemWithTags({"Harbour Archive"})});
  EXPECT_EQ(editor.statesInAllRows(), (std::vector<TagState>{TagStateOff}));
}

TEST(TagState, OutsideTheCatalogueIsOff) {
  Editor editor({"x"});
  editor.show({itemWithTags({"x"})});
  for (const int index : {-1, 1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    EXPECT_EQ(editor->stateOfTagAtIndex(index), TagStateOff) << index;
  }
}

}  // namespace
}  // namespace epg::test
