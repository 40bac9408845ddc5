// Tag lists are values that several holders share; a click gives the item a new list and leaves the old one alone.

#include <gtest/gtest.h>

#include "store/MemoryItem.h"
#include "tests/support/Dictionary.h"
#include "tests/support/Editor.h"

namespace epg::test {
namespace {

/// An item's entries and its tag list, held the way a snapshot or a running export holds them.
struct Held {
  explicit Held(const Item& item) : values(item->values()), list(*values.find(ZRLEPGDSTagsKey)) {}

  PropertyListDictionary values;
  PropertyList list;
};

TEST(TagList, HeldFromBeforeAClickKeepsItsValue) {
  Editor editor({"x", "y"});
  const Item item = itemWithTags({"y"});
  editor.show({item});
  const Held before(item);
  editor.click(0, 1);
  editor.click(1, 0);
  EXPECT_EQ(before.list, listOfNames({"y"}));
  EXPECT_EQ(before.values, dictionaryOf({{ZRLEPGDSTagsKey, listOfNames({"y"})}}));
  EXPECT_EQ(tagsOf(*item), Names({"x"}));
}

TEST(TagList, AfterEachClickIsANewObject) {
  Editor editor({"x"});
  const Item item = itemWithTags({"y"});
  editor.show({item});
  const Held first(item);
  editor.click(0, 1);
  const Held second(item);
  editor.click(0, 0);
  const Held third(item);
  EXPECT_NE(first.list.asArray()->data(), second.list.asArray()->data());
  EXPECT_NE(second.list.asArray()->data(), third.list.asArray()->data());
  EXPECT_NE(first.list.asArray()->data(), third.list.asArray()->data());
  EXPECT_EQ(second.list, listOfNames({"y", "x"}));
}

TEST(TagList, ThatAClickNeedNotChangeIsTheSameObjectAsBefore) {
  Editor editor({"x", "y"});
  const Item item = itemWithTags({"x"});
  editor.show({item});
  const Held before(item);
  editor.click(0, 1);
  editor.click(1, 0);
  EXPECT_EQ(Held(item).list.asArray()->data(), before.list.asArray()->data());
}

TEST(TagList, SharedByACopyStaysInTheOriginal) {
  Editor editor({"x", "y"});
  const Item stored = itemWithTags({"y"});
  const Item workingCopy = std::make_shared<MemoryItem>(stored->values());
  ASSERT_EQ(Held(stored).list.asArray()->data(), Held(workingCopy).list.asArray()->data());
  editor.show({workingCopy});
  editor.click(0, 1);
  editor.click(1, 0);
  EXPECT_EQ(tagsOf(*stored), Names({"y"}));
  EXPECT_EQ(tagsOf(*workingCopy), Names({"x"}));
}

TEST(TagList, SharedByACopyStaysInTheCopy) {
  Editor editor({"x"});
  const Item stored = itemWithTags({"y"});
  const Item duplicate = std::make_shared<MemoryItem>(stored->values());
  editor.show({stored});
  editor.click(0, 1);
  EXPECT_EQ(tagsOf(*duplicate), Names({"y"}));
}

TEST(TagList, SharedByTwoItemsUnderEditIsNotChangedTwice) {
  Editor editor({"x"});
  const PropertyList shared = listOfNames({"y"});
  const Item a = itemWith({{ZRLEPGDSTagsKey, shared}});
  const Item b = itemWith({{ZRLEPGDSTagsKey, shared}});
  editor.show({a, b});
  editor.click(0, 1);
  EXPECT_EQ(tagsOf(*a), Names({"y", "x"}));
  EXPECT_EQ(tagsOf(*b), Names({"y", "x"}));
  EXPECT_EQ(shared, listOfNames({"y"}));
}

TEST(TagList, SharedWithAnItemOutsideTheEditorStaysThere) {
  Editor editor({"y"});
  const PropertyList shared = listOfNames({"y"});
  const Item outside = itemWith({{ZRLEPGDSTagsKey, shared}});
  editor.show({itemWith({{ZRLEPGDSTagsKey, shared}})});
  editor.click(0, 0);
  EXPECT_EQ(tagsOf(*outside), Names({"y"}));
}

}  // namespace
}  // namespace epg::test
