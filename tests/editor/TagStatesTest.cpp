#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

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

TEST(TagState, IsOnWhereEveryItemCarriesTheTagOffWhereNoneDoesAndMixedElse) {
  const Item x = itemWithTags({"x"});
  const Item twice = itemWithTags({"x", "x"});
  const Item a = itemWithTags({"a"});
  const Item empty = itemWithTags({});
  const Item none = itemWithoutTags();
  const struct {
    const char* behaviour;
    std::vector<Item> items;
    TagState state;
  } rows[] = {
      {"one item with the tag", {x}, TagStateOn},
      {"one item with the tag among others", {itemWithTags({"a", "x", "b"})}, TagStateOn},
      {"one item with another tag", {a}, TagStateOff},
      {"one item with an empty list", {empty}, TagStateOff},
      {"one item without a list", {none}, TagStateOff},
      {"all carry it", {x, itemWithTags({"a", "x"}), itemWithTags({"x", "other"})}, TagStateOn},
      {"none carries it", {a, empty, none, itemWithTags({"other"})}, TagStateOff},
      {"only the first carries it", {x, a}, TagStateMixed},
      {"only the last carries it", {a, itemWithTags({"b"}), x}, TagStateMixed},
      {"one in the middle lacks it", {x, a, itemWithTags({"x"})}, TagStateMixed},
      {"an item without a list carries nothing", {x, none}, TagStateMixed},
      {"an item without a list in front carries nothing", {none, x}, TagStateMixed},
      {"an item with an empty list carries nothing", {x, empty}, TagStateMixed},
      {"an item with an empty list in front carries nothing", {empty, x}, TagStateMixed},
      {"duplicates in one list", {itemWithTags({"x", "x", "x"})}, TagStateOn},
      {"duplicates beside an item without it", {twice, a}, TagStateMixed},
      {"duplicates beside an item that carries it once", {twice, x}, TagStateOn},
      {"duplicates around an item without it", {twice, a, itemWithTags({"x", "x"})}, TagStateMixed},
      {"the same item twice", {x, x}, TagStateOn},
      {"the same item twice beside one without it", {x, x, none}, TagStateMixed},
  };
  for (const auto& row : rows) EXPECT_EQ(stateOver(row.items), row.state) << row.behaviour;
}

TEST(TagState, TellsEveryDifferenceOfNamesApart) {
  const struct {
    const char* difference;
    Names catalogue;
    std::string tag;
    std::vector<TagState> states;
  } rows[] = {{"letter case", {"Sport", "sport"}, "sport", {TagStateOff, TagStateOn}},
              {"blanks", {"Sport", " Sport", "Sport "}, "Sport ", {TagStateOff, TagStateOff, TagStateOn}},
              {"composed letters", {"Caf\xC3\xA9", "Cafe\xCC\x81"}, "Cafe\xCC\x81", {TagStateOff, TagStateOn}},
              {"the empty name", {""}, "", {TagStateOn}},
              {"the empty name beside another", {""}, "x", {TagStateOff}},
              {"outside the catalogue", {"x"}, "Harbour Archive", {TagStateOff}}};
  for (const auto& row : rows) {
    Editor editor(row.catalogue);
    editor.show({itemWithTags({row.tag})});
    EXPECT_EQ(editor.statesInAllRows(), row.states) << row.difference;
  }
}

TEST(TagState, TellsNamesApartThatDifferBehindAZeroByte) {
  const std::string one("x\0a", 3);
  const std::string other("x\0b", 3);
  Editor editor({"x"});
  editor.show({itemWithTags({one, other})});
  EXPECT_EQ(editor.stateInRow(0), TagStateOff);
}

TEST(TagState, OfTwoRowsWithTheSameNameIsTheSame) {
  Editor editor({"x", "y", "x"});
  editor.show({itemWithTags({"x"})});
  EXPECT_EQ(editor.statesInAllRows(), (std::vector<TagState>{TagStateOn, TagStateOff, TagStateOn}));
  editor.show({itemWithTags({"x"}), itemWithTags({"y"})});
  EXPECT_EQ(editor.statesInAllRows(), (std::vector<TagState>{TagStateMixed, TagStateMixed, TagStateMixed}));
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
