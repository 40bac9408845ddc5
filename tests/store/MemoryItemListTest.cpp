#include "store/MemoryItemList.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/Items.h"

namespace epg::test {
namespace {

TEST(MemoryItemListTest, IsEmptyAtFirst) {
  const MemoryItemList list;
  EXPECT_EQ(list.size(), 0u);
  EXPECT_EQ(list.at(0), nullptr);
}

TEST(MemoryItemListTest, HoldsTheVeryItemsInTheirOrder) {
  MemoryItemList list;
  const Item a = itemTitled("A");
  const Item b = itemTitled("B");
  list.append(b);
  list.append(a);
  list.append(b);
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list.at(0), b);
  EXPECT_EQ(list.at(1), a);
  EXPECT_EQ(list.at(2), b);
}

TEST(MemoryItemListTest, HasNothingBeyondItsEnd) {
  MemoryItemList list;
  list.append(itemTitled("A"));
  EXPECT_EQ(list.at(1), nullptr);
  EXPECT_EQ(list.at(static_cast<std::size_t>(-1)), nullptr);
}

TEST(MemoryItemListTest, TakesNoMissingItem) {
  MemoryItemList list;
  list.append(nullptr);
  EXPECT_EQ(list.size(), 0u);
}

TEST(MemoryItemListTest, IsEmptyAfterClearing) {
  MemoryItemList list;
  list.append(itemTitled("A"));
  list.clear();
  EXPECT_EQ(list.size(), 0u);
  EXPECT_EQ(list.at(0), nullptr);
}

TEST(MemoryItemListChangeCount, StandsStillWhileNothingChanges) {
  const auto list = listOf({itemTitled("A")});
  const auto before = list->changeCount();
  list->size();
  list->at(0)->values();
  EXPECT_EQ(list->changeCount(), before);
}

TEST(MemoryItemListChangeCount, GrowsWithEveryChangeOfTheList) {
  MemoryItemList list;
  const auto first = *list.changeCount();
  list.append(itemTitled("A"));
  const auto second = *list.changeCount();
  list.clear();
  const auto third = *list.changeCount();
  EXPECT_LT(first, second);
  EXPECT_LT(second, third);
}

TEST(MemoryItemListChangeCount, GrowsWithEveryChangeOfAnItem) {
  const Item item = itemTitled("A");
  const auto list = listOf({item});
  const auto first = *list->changeCount();
  item->set("title", "B");
  const auto second = *list->changeCount();
  item->remove("title");
  const auto third = *list->changeCount();
  item->setValues({{"title", "C"}, {"description", "D"}});
  const auto fourth = *list->changeCount();
  EXPECT_LT(first, second);
  EXPECT_LT(second, third);
  EXPECT_LT(third, fourth);
}

TEST(MemoryItemListChangeCount, GrowsWhenAnItemIsSetToWhatItHolds) {
  const Item item = itemTitled("A");
  const auto list = listOf({item});
  const auto before = *list->changeCount();
  item->set("title", "A");
  EXPECT_LT(before, *list->changeCount());
}

/// An item whose changes nobody counts.
class AnotherItem : public EPGItem {
 public:
  PropertyListDictionary values() const override { return {}; }
  void setValues(const std::vector<PropertyListDictionary::Entry>& /*entries*/) override {}
  void remove(const std::string& /*key*/) override {}
};

TEST(MemoryItemListChangeCount, IsUnknownWhileAnItemOfAnotherKindIsInTheList) {
  MemoryItemList list;
  list.append(itemTitled("A"));
  list.append(std::make_shared<AnotherItem>());
  EXPECT_FALSE(list.changeCount());
  list.clear();
  EXPECT_TRUE(list.changeCount());
}

}  // namespace
}  // namespace epg::test
