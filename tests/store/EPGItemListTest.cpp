#include "model/EPGItemList.h"

#include <gtest/gtest.h>

#include "tests/support/Items.h"

namespace epg::test {
namespace {

TEST(EPGItemList, IsEmptyAtFirst) {
  const EPGItemList list;
  EXPECT_EQ(list.size(), 0u);
  EXPECT_EQ(list.at(0), nullptr);
}

TEST(EPGItemList, HoldsTheVeryItemsInTheirOrder) {
  EPGItemList list;
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

TEST(EPGItemList, HasNothingBeyondItsEnd) {
  EPGItemList list;
  list.append(itemTitled("A"));
  EXPECT_EQ(list.at(1), nullptr);
  EXPECT_EQ(list.at(static_cast<std::size_t>(-1)), nullptr);
}

TEST(EPGItemList, TakesNoMissingItem) {
  EPGItemList list;
  list.append(nullptr);
  EXPECT_EQ(list.size(), 0u);
}

TEST(EPGItemList, IsEmptyAfterClearing) {
  EPGItemList list;
  list.append(itemTitled("A"));
  list.clear();
  EXPECT_EQ(list.size(), 0u);
  EXPECT_EQ(list.at(0), nullptr);
}

TEST(EPGItemListChangeCount, StandsStillWhileNothingChanges) {
  const auto list = listOf({itemTitled("A")});
  const auto before = list->changeCount();
  list->size();
  list->at(0)->values();
  EXPECT_EQ(list->changeCount(), before);
}

TEST(EPGItemListChangeCount, GrowsWithEveryChangeOfTheList) {
  EPGItemList list;
  const auto first = *list.changeCount();
  list.append(itemTitled("A"));
  const auto second = *list.changeCount();
  list.clear();
  const auto third = *list.changeCount();
  EXPECT_LT(first, second);
  EXPECT_LT(second, third);
}

TEST(EPGItemListChangeCount, GrowsWithEveryChangeOfAnItem) {
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

TEST(EPGItemListChangeCount, GrowsWhenAnItemIsSetToWhatItHolds) {
  const Item item = itemTitled("A");
  const auto list = listOf({item});
  const auto before = *list->changeCount();
  item->set("title", "A");
  EXPECT_LT(before, *list->changeCount());
}

}  // namespace
}  // namespace epg::test
