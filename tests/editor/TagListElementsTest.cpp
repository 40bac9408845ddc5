// What a file or a host may have put into an item where a list of tag names is expected.

#include <gtest/gtest.h>

#include "tests/support/Dictionary.h"
#include "tests/support/Editor.h"

namespace epg::test {
namespace {

class TagListWithOtherElements : public ::testing::Test {
 protected:
  TagListWithOtherElements() { editor.show({item}); }

  PropertyList list() const { return *valueOf(*item, ZRLEPGDSTagsKey); }

  static PropertyList elements(PropertyList::Array list) { return PropertyList(std::move(list)); }

  const PropertyList number = PropertyList::fromInteger(7);
  const PropertyList nested = listOfNames({"x"});
  const PropertyList data = PropertyList::fromData("x");
  Editor editor{{"x", "y"}};
  const Item item = itemWith({{ZRLEPGDSTagsKey, elements({number, "x", nested, "a", data, "x"})}});
};

TEST_F(TagListWithOtherElements, CarriesOnlyTheTagsThatAreStrings) {
  EXPECT_EQ(editor.stateInRow(0), TagStateOn);
  EXPECT_EQ(editor.stateInRow(1), TagStateOff);
}

TEST_F(TagListWithOtherElements, KeepsThemInTheirPlacesWhenATagIsSwitchedOn) {
  editor.click(1, 1);
  EXPECT_EQ(list(), elements({number, "x", nested, "a", data, "x", "y"}));
}

TEST_F(TagListWithOtherElements, KeepsThemInTheirPlacesWhenATagIsSwitchedOff) {
  editor.click(0, 0);
  EXPECT_EQ(list(), elements({number, nested, "a", data}));
}

TEST_F(TagListWithOtherElements, IsUntouchedByAClickThatChangesNothing) {
  const PropertyListDictionary before = item->values();
  editor.click(0, 1);
  editor.click(1, 0);
  EXPECT_EQ(item->values(), before);
}

TEST(TagListOfOtherElementsOnly, CarriesNothing) {
  Editor editor({"7", "x"});
  editor.show({itemWith({{ZRLEPGDSTagsKey, PropertyList(PropertyList::Array{PropertyList::fromInteger(7),
                                                                            PropertyList::fromData("x")})}})});
  EXPECT_EQ(editor.statesInAllRows(), (std::vector<TagState>(2, TagStateOff)));
}

/// A "tags" entry that is no list reads as none.
class TagsEntryThatIsNoList : public ::testing::TestWithParam<PropertyList> {
 protected:
  TagsEntryThatIsNoList() { editor.show({item}); }

  Editor editor{{"x"}};
  const Item item = itemWith({{ZRLEPGDSTagsKey, GetParam()}});
};

TEST_P(TagsEntryThatIsNoList, CarriesNothing) { EXPECT_EQ(editor.stateInRow(0), TagStateOff); }

TEST_P(TagsEntryThatIsNoList, StaysAsItIsWhenATagIsSwitchedOff) {
  editor.click(0, 0);
  EXPECT_EQ(valueOf(*item, ZRLEPGDSTagsKey), GetParam());
}

TEST_P(TagsEntryThatIsNoList, StaysAsItIsWhenTextsAreApplied) {
  editor.views.title.type("T");
  editor->applyChanges();
  EXPECT_EQ(valueOf(*item, ZRLEPGDSTagsKey), GetParam());
}

TEST_P(TagsEntryThatIsNoList, BecomesTheListWhenATagIsSwitchedOn) {
  editor.click(0, 1);
  EXPECT_EQ(valueOf(*item, ZRLEPGDSTagsKey), listOfNames({"x"}));
}

INSTANTIATE_TEST_SUITE_P(OfAnyOtherType, TagsEntryThatIsNoList,
                         ::testing::Values(PropertyList("x"), PropertyList::fromInteger(1),
                                           PropertyList::fromBoolean(true), PropertyList::fromReal(1.5),
                                           PropertyList::fromDate(Instant{0}), PropertyList::fromData("x"),
                                           PropertyList(dictionaryOf({{"x", "x"}}))));

}  // namespace
}  // namespace epg::test
