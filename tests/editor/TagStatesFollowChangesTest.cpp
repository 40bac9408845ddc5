// The states of all rows are kept between two looks; nothing that changes them may go unseen.

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "store/MemoryItem.h"
#include "store/MemoryItemList.h"
#include "tests/editor/ListWithoutCount.h"
#include "tests/support/Editor.h"

namespace epg::test {
namespace {

using States = std::vector<TagState>;

class ShownTagStates : public ::testing::Test {
 protected:
  /// Looks at every row, so that what can be kept is kept.
  States look() const { return editor.statesInAllRows(); }

  Editor editor{{"x", "y"}};
  const Item a = itemWithTags({"x"});
  const Item b = itemWithTags({"x"});
};

TEST_F(ShownTagStates, AreTheSameWhenLookedAtAgain) {
  editor.show({a, b});
  EXPECT_EQ(look(), (States{TagStateOn, TagStateOff}));
  EXPECT_EQ(look(), (States{TagStateOn, TagStateOff}));
}

TEST_F(ShownTagStates, FollowAnItemThatIsChangedFromOutside) {
  editor.show({a, b});
  look();
  b->set(ZRLEPGDSTagsKey, listOfNames({"y"}));
  EXPECT_EQ(look(), (States{TagStateMixed, TagStateMixed}));
  a->set(ZRLEPGDSTagsKey, listOfNames({"y"}));
  EXPECT_EQ(look(), (States{TagStateOff, TagStateOn}));
}

TEST_F(ShownTagStates, FollowSeveralEntriesSetAtOnce) {
  editor.show({a});
  look();
  a->setValues({{"title", "T"}, {ZRLEPGDSTagsKey, listOfNames({"y"})}});
  EXPECT_EQ(look(), (States{TagStateOff, TagStateOn}));
}

TEST_F(ShownTagStates, FollowATagListThatIsTakenAway) {
  editor.show({a, b});
  look();
  a->remove(ZRLEPGDSTagsKey);
  EXPECT_EQ(look(), (States{TagStateMixed, TagStateOff}));
}

TEST_F(ShownTagStates, FollowATagListThatIsReplacedByNoList) {
  editor.show({a});
  look();
  a->set(ZRLEPGDSTagsKey, "x");
  EXPECT_EQ(look(), (States{TagStateOff, TagStateOff}));
}

TEST_F(ShownTagStates, FollowAnItemThatIsChangedThereAndBack) {
  editor.show({a, b});
  look();
  b->set(ZRLEPGDSTagsKey, listOfNames({"y"}));
  b->set(ZRLEPGDSTagsKey, listOfNames({"x"}));
  EXPECT_EQ(look(), (States{TagStateOn, TagStateOff}));
}

TEST_F(ShownTagStates, FollowAnItemThatIsAppendedToTheListFromOutside) {
  const auto list = listOf({a});
  editor->setItems(list);
  look();
  list->append(itemWithTags({"y"}));
  EXPECT_EQ(look(), (States{TagStateMixed, TagStateMixed}));
}

TEST_F(ShownTagStates, FollowAListThatIsEmptiedFromOutside) {
  const auto list = listOf({a});
  editor->setItems(list);
  look();
  list->clear();
  EXPECT_EQ(look(), (States{TagStateOff, TagStateOff}));
}

TEST_F(ShownTagStates, FollowAListThatIsEmptiedAndRefilledFromOutside) {
  const auto list = listOf({a, b});
  editor->setItems(list);
  look();
  list->clear();
  list->append(itemWithTags({"y"}));
  EXPECT_EQ(look(), (States{TagStateOff, TagStateOn}));
}

TEST_F(ShownTagStates, FollowAListThatIsReplacedByAnotherWithAsManyChanges) {
  const auto list = listOf({a});
  const auto other = listOf({itemWithTags({"y"})});
  ASSERT_EQ(list->changeCount(), other->changeCount());
  editor->setItems(list);
  look();
  editor->setItems(other);
  EXPECT_EQ(look(), (States{TagStateOff, TagStateOn}));
  editor->setItems(list);
  EXPECT_EQ(look(), (States{TagStateOn, TagStateOff}));
}

TEST_F(ShownTagStates, FollowAListThatIsReplacedByNone) {
  editor.show({a});
  look();
  editor->setItems(nullptr);
  EXPECT_EQ(look(), (States{TagStateOff, TagStateOff}));
}

TEST_F(ShownTagStates, FollowAnItemInTwoListsOfTwoEditors) {
  Editor other({"x", "y"});
  editor.show({a, b});
  other.show({a});
  look();
  other.statesInAllRows();
  other.click(1, 1);
  other.click(0, 0);
  EXPECT_EQ(look(), (States{TagStateMixed, TagStateMixed}));
  EXPECT_EQ(other.statesInAllRows(), (States{TagStateOff, TagStateOn}));
}

TEST_F(ShownTagStates, FollowAnItemInTwoListsShownInTurn) {
  const auto first = listOf({a, b});
  const auto second = listOf({b});
  editor->setItems(first);
  look();
  editor->setItems(second);
  editor.click(0, 0);
  EXPECT_EQ(look(), (States{TagStateOff, TagStateOff}));
  editor->setItems(first);
  EXPECT_EQ(look(), (States{TagStateMixed, TagStateOff}));
}

TEST_F(ShownTagStates, FollowAClickOnEachRowWhileOthersAreLookedAt) {
  Editor many({"a", "b", "c", "d"});
  many.show({itemWithTags({"a"}), itemWithTags({"b"})});
  EXPECT_EQ(many.statesInAllRows(), (States{TagStateMixed, TagStateMixed, TagStateOff, TagStateOff}));
  many.click(2, 1);
  EXPECT_EQ(many.statesInAllRows(), (States{TagStateMixed, TagStateMixed, TagStateOn, TagStateOff}));
  many.click(0, -1);
  EXPECT_EQ(many.statesInAllRows(), (States{TagStateOn, TagStateMixed, TagStateOn, TagStateOff}));
  many.click(1, 0);
  EXPECT_EQ(many.statesInAllRows(), (States{TagStateOn, TagStateOff, TagStateOn, TagStateOff}));
  many.click(3, 0);
  EXPECT_EQ(many.statesInAllRows(), (States{TagStateOn, TagStateOff, TagStateOn, TagStateOff}));
}

TEST_F(ShownTagStates, StayRightOverRowsWithTheSameNameAfterClicks) {
  Editor doubled({"x", "y", "x"});
  doubled.show({a, itemWithTags({"y"})});
  EXPECT_EQ(doubled.statesInAllRows(), (States{TagStateMixed, TagStateMixed, TagStateMixed}));
  doubled.click(2, 1);
  EXPECT_EQ(doubled.statesInAllRows(), (States{TagStateOn, TagStateMixed, TagStateOn}));
  doubled.click(0, 0);
  EXPECT_EQ(doubled.statesInAllRows(), (States{TagStateOff, TagStateMixed, TagStateOff}));
}

TEST_F(ShownTagStates, FollowTextsThatAreApplied) {
  editor.show({a});
  look();
  editor->applyChanges();
  EXPECT_EQ(look(), (States{TagStateOn, TagStateOff}));
}

TEST_F(ShownTagStates, FollowAnItemThatAnotherThreadChanged) {
  editor.show({a, b});
  look();
  std::thread([this] { b->set(ZRLEPGDSTagsKey, listOfNames({"y"})); }).join();
  EXPECT_EQ(look(), (States{TagStateMixed, TagStateMixed}));
}

TEST_F(ShownTagStates, OfItemsThatAnotherThreadChangesAreRightAsSoonAsItIsDone) {
  editor.show({a, b});
  for (int round = 0; round < 200; ++round) {
    std::thread changing([this, round] { b->set(ZRLEPGDSTagsKey, listOfNames({round % 2 == 0 ? "y" : "x"})); });
    look();
    changing.join();
    ASSERT_EQ(look(), round % 2 == 0 ? (States{TagStateMixed, TagStateMixed}) : (States{TagStateOn, TagStateOff}));
  }
}

/// An item of a host that changes another one whenever this one is changed.
class LeadingItem : public EPGItem {
 public:
  explicit LeadingItem(Item follower) : follower_(std::move(follower)) {}

  PropertyListDictionary values() const override { return own_.values(); }
  void remove(const std::string& key) override { own_.remove(key); }
  void setValues(const std::vector<PropertyListDictionary::Entry>& entries) override {
    own_.setValues(entries);
    follower_->set(ZRLEPGDSTagsKey, listOfNames({"y"}));
  }

 private:
  MemoryItem own_;
  Item follower_;
};

TEST_F(ShownTagStates, FollowAChangeThatAnItemMakesElsewhereDuringTheClick) {
  editor.show({b, std::make_shared<LeadingItem>(b), a});
  EXPECT_EQ(look(), (States{TagStateMixed, TagStateOff}));
  editor.click(0, 1);  // The second item takes "x" away from the first.
  EXPECT_EQ(look(), (States{TagStateMixed, TagStateMixed}));
}

/// An item whose entries change without a word.
class SilentItem : public EPGItem {
 public:
  PropertyListDictionary values() const override { return entries; }
  void setValues(const std::vector<PropertyListDictionary::Entry>& /*entries*/) override {}
  void remove(const std::string& /*key*/) override {}

  PropertyListDictionary entries;
};

TEST_F(ShownTagStates, OfAListWithoutACountFollowSilentChanges) {
  const auto item = std::make_shared<SilentItem>();
  const auto list = std::make_shared<ListWithoutCount>();
  list->append(item);
  list->append(b);
  editor->setItems(list);
  EXPECT_EQ(look(), (States{TagStateMixed, TagStateOff}));
  item->entries.set(ZRLEPGDSTagsKey, listOfNames({"x"}));
  EXPECT_EQ(look(), (States{TagStateOn, TagStateOff}));
  item->entries.set(ZRLEPGDSTagsKey, listOfNames({"x", "y"}));
  EXPECT_EQ(look(), (States{TagStateOn, TagStateMixed}));
}

TEST_F(ShownTagStates, OfAListWithoutACountAreThoseOfAnyList) {
  const auto list = std::make_shared<ListWithoutCount>();
  Editor doubled({"x", "y", "x"});
  doubled->setItems(list);
  EXPECT_EQ(doubled.statesInAllRows(), States(3, TagStateOff));
  list->append(itemWithTags({"x", "x"}));
  EXPECT_EQ(doubled.statesInAllRows(), (States{TagStateOn, TagStateOff, TagStateOn}));
  list->append(itemWithoutTags());
  EXPECT_EQ(doubled.statesInAllRows(), (States{TagStateMixed, TagStateOff, TagStateMixed}));
  doubled.click(2, 1);
  EXPECT_EQ(doubled.statesInAllRows(), (States{TagStateOn, TagStateOff, TagStateOn}));
}

TEST_F(ShownTagStates, FollowFromAListWithACountToOneWithoutAndBack) {
  const auto counted = listOf({a});
  const auto uncounted = std::make_shared<ListWithoutCount>();
  uncounted->append(itemWithTags({"y"}));
  editor->setItems(counted);
  EXPECT_EQ(look(), (States{TagStateOn, TagStateOff}));
  editor->setItems(uncounted);
  EXPECT_EQ(look(), (States{TagStateOff, TagStateOn}));
  editor->setItems(counted);
  EXPECT_EQ(look(), (States{TagStateOn, TagStateOff}));
}

/// A list that knows only sometimes whether it has changed.
class ListWithACountAtTimes : public MemoryItemList {
 public:
  std::optional<std::size_t> changeCount() const override {
    return known ? MemoryItemList::changeCount() : std::nullopt;
  }

  bool known = true;
};

TEST_F(ShownTagStates, FollowChangesWhileTheCountIsUnknown) {
  const auto list = std::make_shared<ListWithACountAtTimes>();
  list->append(a);
  editor->setItems(list);
  EXPECT_EQ(look(), (States{TagStateOn, TagStateOff}));
  list->known = false;
  a->set(ZRLEPGDSTagsKey, listOfNames({"y"}));
  EXPECT_EQ(look(), (States{TagStateOff, TagStateOn}));
  list->known = true;
  EXPECT_EQ(look(), (States{TagStateOff, TagStateOn}));
}

}  // namespace
}  // namespace epg::test
