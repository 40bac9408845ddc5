#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

#include "tests/support/Dictionary.h"
#include "tests/support/Editor.h"

namespace epg::test {
namespace {

/// The item's tags after the tag "x" was set to the state.
std::optional<Names> tagsAfterSetting(std::ptrdiff_t state, const Item& item) {
  Editor editor({"other", "x"});
  editor.show({item});
  editor->setStateOfTag(state, 1);
  return tagsOf(*item);
}

struct SwitchedTag {
  const char* behaviour;
  std::optional<Names> before;  ///< Nothing where the item has no list.
  std::optional<Names> after;
};

/// Sets the tag "x" to the state in each; where its list is to stay, all of the item must.
void expectSwitched(std::ptrdiff_t state, const std::vector<SwitchedTag>& rows) {
  for (const SwitchedTag& row : rows) {
    SCOPED_TRACE(row.behaviour);
    const Item item = row.before ? itemWithTags(*row.before) : itemWithoutTags();
    const PropertyListDictionary before = item->values();
    EXPECT_EQ(tagsAfterSetting(state, item), row.after);
    if (row.before == row.after) {
      EXPECT_EQ(item->values(), before);
    }
  }
}

TEST(TagSwitchedOn, GoesToTheEndOfTheListUnlessItIsThere) {
  expectSwitched(1, {{"behind another", Names{"y"}, Names{"y", "x"}},
                     {"behind several", Names{"other", "b", "a"}, Names{"other", "b", "a", "x"}},
                     {"makes the list where there was none", std::nullopt, Names{"x"}},
                     {"fills an empty list", Names{}, Names{"x"}},
                     {"leaves an item that carries it", Names{"x"}, Names{"x"}},
                     {"is never added twice", Names{"x", "y"}, Names{"x", "y"}},
                     {"leaves duplicates that are there", Names{"x", "y", "x"}, Names{"x", "y", "x"}},
                     {"does not take another letter case for itself", Names{"X"}, Names{"X", "x"}}});
}

TEST(TagSwitchedOff, IsTakenOutEverywhereAndTheOthersStayInTheirOrder) {
  expectSwitched(0, {{"leaves the list empty instead of taking it away", Names{"x"}, Names{}},
                     {"duplicates go at once", Names{"x", "y", "x"}, Names{"y"}},
                     {"nothing but duplicates", Names{"x", "x", "x"}, Names{}},
                     {"order of the others", Names{"c", "x", "a", "x", "b"}, Names{"c", "a", "b"}},
                     {"duplicates of others stay", Names{"a", "x", "a"}, Names{"a", "a"}},
                     {"makes no list where there was none", std::nullopt, std::nullopt},
                     {"leaves an item with another tag", Names{"y"}, Names{"y"}},
                     {"leaves an empty list", Names{}, Names{}},
                     {"leaves another letter case", Names{"X"}, Names{"X"}}});
}

TEST(TagState, SetToMixedOrAnyUnknownStateChangesNothing) {
  for (const std::ptrdiff_t state :
       {std::ptrdiff_t{-1}, std::ptrdiff_t{2}, std::ptrdiff_t{-2}, std::numeric_limits<std::ptrdiff_t>::max(),
        std::numeric_limits<std::ptrdiff_t>::min()}) {
    const Item carrying = itemWithTags({"x"});
    const Item without = itemWithoutTags();
    EXPECT_EQ(tagsAfterSetting(state, carrying), Names({"x"})) << state;
    EXPECT_EQ(tagsAfterSetting(state, without), std::nullopt) << state;
  }
}

TEST(TagState, SetOutsideTheCatalogueChangesNothing) {
  Editor editor({"x"});
  const Item item = itemWithTags({"y"});
  editor.show({item});
  for (const int index : {-1, 1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    editor->setStateOfTag(TagStateOn, index);
    editor->setStateOfTag(TagStateOff, index);
  }
  EXPECT_EQ(tagsOf(*item), Names({"y"}));
}

TEST(TagClick, WithoutItemsChangesNothingAndTheRowShowsOffAgain) {
  Editor editor({"x"});
  editor.show({});
  editor.click(0, 1);
  EXPECT_EQ(editor.stateInRow(0), TagStateOff);
  editor.click(0, -1);
  EXPECT_EQ(editor.stateInRow(0), TagStateOff);
  EXPECT_EQ(editor->items()->size(), 0u);
}

TEST(TagClick, BeforeAnyItemsWereGivenChangesNothing) {
  Editor editor({"x"});
  editor.click(0, 1);
  editor.click(0, 0);
  EXPECT_EQ(editor.stateInRow(0), TagStateOff);
  EXPECT_EQ(editor->items(), nullptr);
}

/// A carries the tag x, B has no list.
class MixedTag : public ::testing::TestWithParam<int> {
 protected:
  MixedTag() { editor.show({a, b}); }

  Editor editor{{"x"}};
  const Item a = itemWithTags({"x"});
  const Item b = itemWithoutTags();
};

TEST_P(MixedTag, IsShownMixed) { EXPECT_EQ(editor.stateInRow(0), TagStateMixed); }

TEST_P(MixedTag, ClickedIsOnForAllAndClickedAgainOffForAllWithEmptyLists) {
  const PropertyListDictionary before = a->values();
  editor.click(0, GetParam());
  EXPECT_EQ(a->values(), before);
  EXPECT_EQ(tagsOf(*b), Names({"x"}));
  EXPECT_EQ(editor.stateInRow(0), TagStateOn);

  editor.click(0, 0);
  EXPECT_EQ(tagsOf(*a), Names());
  EXPECT_EQ(tagsOf(*b), Names());
  EXPECT_EQ(editor.stateInRow(0), TagStateOff);
}

TEST_P(MixedTag, SetOffDirectlyLeavesAnItemWithoutAListWithoutOne) {
  editor->setStateOfTag(TagStateOff, 0);
  EXPECT_EQ(tagsOf(*a), Names());
  EXPECT_EQ(tagsOf(*b), std::nullopt);
  EXPECT_EQ(editor.stateInRow(0), TagStateOff);
}

INSTANTIATE_TEST_SUITE_P(ProposedByTheCheckbox, MixedTag, ::testing::Values(-1, 1));

TEST(TagClick, ReachesTheItemsAtOnceWithoutApplying) {
  Editor editor({"x"});
  const Item item = itemWithoutTags();
  editor.show({item});
  editor.click(0, 1);
  EXPECT_EQ(tagsOf(*item), Names({"x"}));
}

TEST(TagClick, ReachesEveryItem) {
  Editor editor({"x"});
  std::vector<Item> items;
  for (int i = 0; i < 100; ++i) items.push_back(i % 3 == 0 ? itemWithoutTags() : itemWithTags({"y"}));
  editor.show(items);
  editor.click(0, 1);
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(tagsOf(*items[static_cast<std::size_t>(i)]), i % 3 == 0 ? Names({"x"}) : Names({"y", "x"})) << i;
  }
}

TEST(TagClick, ChangesNoOtherEntryOfTheItem) {
  Editor editor({"x"});
  const Item item = itemWith({{"title", "A"}, {"tags", listOfNames({"y"})}, {"rating", PropertyList::fromInteger(12)}});
  editor.show({item});
  editor.views.title.type("typed, not applied");
  editor.click(0, 1);
  EXPECT_EQ(
      item->values(),
      dictionaryOf({{"title", "A"}, {"tags", listOfNames({"y", "x"})}, {"rating", PropertyList::fromInteger(12)}}));
}

TEST(TagClick, DoesNotTouchTheViews) {
  Editor editor({"x"});
  editor.show({itemWithoutTags()});
  editor.views.journal.clear();
  editor.click(0, 1);
  EXPECT_EQ(editor.views.journal, Journal());
}

TEST(TagClick, IsShownWhenTheSameListIsGivenAgain) {
  Editor editor({"x"});
  editor.show({itemWithoutTags()});
  editor.click(0, 1);
  editor->setItems(editor->items());
  EXPECT_EQ(editor.stateInRow(0), TagStateOn);
}

TEST(TagClick, LeavesTagsThatTheCatalogueDoesNotHaveInTheirPlaces) {
  Editor editor({"x"});
  const Item item = itemWithTags({"Archive", "x", "Harbour", "Archive"});
  editor.show({item});
  editor.click(0, 0);
  EXPECT_EQ(tagsOf(*item), Names({"Archive", "Harbour", "Archive"}));
  editor.click(0, 1);
  EXPECT_EQ(tagsOf(*item), Names({"Archive", "Harbour", "Archive", "x"}));
}

TEST(TagClick, OnEveryRowInTurnGivesTheOrderOfTheClicks) {
  Editor editor({"a", "b", "c"});
  const Item item = itemWithoutTags();
  editor.show({item});
  for (const int row : {2, 0, 1}) editor.click(row, 1);
  EXPECT_EQ(tagsOf(*item), Names({"c", "a", "b"}));
}

TEST(TagClick, OnARowWithTheNameOfAnotherRowChangesBoth) {
  Editor editor({"x", "y", "x"});
  const Item item = itemWithoutTags();
  editor.show({item});
  editor.click(2, 1);
  EXPECT_EQ(editor.statesInAllRows(), (std::vector<TagState>{TagStateOn, TagStateOff, TagStateOn}));
  editor.click(0, 1);
  EXPECT_EQ(tagsOf(*item), Names({"x"}));
  editor.click(0, 0);
  EXPECT_EQ(editor.statesInAllRows(), (std::vector<TagState>(3, TagStateOff)));
}

TEST(TagClick, OnTheSameItemTwiceInTheListAddsTheTagOnce) {
  Editor editor({"x"});
  const Item item = itemWithoutTags();
  editor.show({item, item});
  editor.click(0, 1);
  EXPECT_EQ(tagsOf(*item), Names({"x"}));
}

}  // namespace
}  // namespace epg::test
