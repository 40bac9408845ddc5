// The tri-state rule over random items, held against the rule as it is told.

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "store/MemoryItemList.h"
#include "tests/editor/ListWithoutCount.h"
#include "tests/support/Editor.h"
#include "tests/support/Property.h"
#include "tests/support/RandomItems.h"

namespace epg::test {
namespace {

std::vector<TagState> naiveStates(const NaiveItems& items, const Names& catalogue) {
  std::vector<TagState> states;
  for (const std::string& tag : catalogue) states.push_back(static_cast<TagState>(naiveState(items, tag)));
  return states;
}

TEST(TagStatesOfRandomItems, AreThoseOfTheNaiveRule) {
  expectForCases(30000, [] {
    const Names catalogue = tagCatalogueWithRepeats();
    std::vector<NaiveItem> naive = upTo(6, naiveItemOfAnyKind);
    tell("catalogue", catalogue);
    tell("items", naive);
    NaiveItems pointers;
    const auto counted = std::make_shared<MemoryItemList>();
    const auto uncounted = std::make_shared<ListWithoutCount>();
    for (NaiveItem& item : naive) {
      pointers.push_back(&item);
      counted->append(itemWith(entriesOf(item)));
      uncounted->append(itemWith(entriesOf(item)));
    }
    Editor editor(catalogue);
    const std::vector<TagState> expected = naiveStates(pointers, catalogue);
    editor->setItems(counted);
    HOLDS(editor.statesInAllRows() == expected);
    editor->setItems(uncounted);
    HOLDS(editor.statesInAllRows() == expected);
  });
}

/// Two lists over the same few items: an item may stand in both, or twice in one.
class TwoListsOfTheSameItems {
 public:
  TwoListsOfTheSameItems(const Names& catalogue, std::vector<NaiveItem> items)
      : catalogue_(catalogue), editor_(catalogue), naive_(std::move(items)) {
    for (const NaiveItem& item : naive_) items_.push_back(itemWith(entriesOf(item)));
    lists_ = {std::make_shared<MemoryItemList>(), std::make_shared<ListWithoutCount>()};
    editor_->setItems(lists_[0]);
  }

  void doAnything() {
    const auto index = static_cast<int>(below(catalogue_.size() + 1)) - 1;
    const bool inCatalogue = index >= 0;
    switch (below(9)) {
      case 0:
      case 1: {
        const int proposed = oneOf({-1, 0, 1, 2});
        tell("click", std::make_pair(index, proposed));
        editor_.click(index, proposed);
        if (inCatalogue) setNaively(shown(), tag(index), proposed == -1 ? 1 : proposed);
        break;
      }
      case 2: {
        const int state = oneOf({-1, 0, 1});
        tell("set state", std::make_pair(index, state));
        editor_->setStateOfTag(state, index);
        if (inCatalogue) setNaively(shown(), tag(index), state);
        break;
      }
      case 3:
      case 4:
        append(below(2));
        break;
      case 5:
        changeAnItemFromOutside();
        break;
      case 6: {
        const std::size_t list = below(2);
        tell("clear list", list);
        lists_[list]->clear();
        places_[list].clear();
        break;
      }
      case 7:
        shownList_ = below(2);
        tell("show list", shownList_);
        editor_->setItems(lists_[shownList_]);
        break;
      default:
        tell("apply", true);
        editor_->applyChanges();  // Changes every item without changing a tag.
        for (const char* const key : {ZRLEPGDSTitleKey, ZRLEPGDSDescriptionKey, ZRLEPGDSImageURLKey}) {
          applyNaively(shown(), key, {fieldFor(key).placeholderString().has_value(), fieldFor(key).stringValue()});
        }
    }
  }

  /// Sometimes only one row is looked at, so that a kept state may grow old before the next look at all.
  void lookAtOneRow() {
    if (catalogue_.empty()) return;
    const auto row = static_cast<int>(below(catalogue_.size()));
    HOLDS(editor_.stateInRow(row) == static_cast<TagState>(naiveState(shown(), tag(row))));
  }

  void expectTheSameAsNaively() {
    HOLDS(editor_.statesInAllRows() == naiveStates(shown(), catalogue_));
    for (std::size_t i = 0; i < items_.size(); ++i) HOLDS(naiveItem(*items_[i]) == naive_[i]);
  }

 private:
  const std::string& tag(int index) const { return catalogue_[static_cast<std::size_t>(index)]; }

  JournalField& fieldFor(const std::string& key) {
    if (key == ZRLEPGDSTitleKey) return editor_.views.title;
    return key == ZRLEPGDSDescriptionKey ? editor_.views.description : editor_.views.imageURL;
  }

  NaiveItems shown() {
    NaiveItems items;
    for (const std::size_t place : places_[shownList_]) items.push_back(&naive_[place]);
    return items;
  }

  void append(std::size_t list) {
    if (items_.empty()) return;
    const std::size_t place = below(items_.size());
    tell("append to list", std::make_pair(list, place));
    lists_[list]->append(items_[place]);
    places_[list].push_back(place);
  }

  void changeAnItemFromOutside() {
    if (items_.empty()) return;
    const std::size_t place = below(items_.size());
    if (onceIn(2)) {
      tell("remove tags", place);
      items_[place]->remove(ZRLEPGDSTagsKey);
      naive_[place].hasTagsEntry = false;
      naive_[place].tagsEntryIsList = true;
      naive_[place].tags.clear();
    } else {
      const Names names = upTo(3, tagName);
      tell("set tags", std::make_pair(place, names));
      items_[place]->set(ZRLEPGDSTagsKey, listOfNames(names));
      naive_[place].hasTagsEntry = true;
      naive_[place].tagsEntryIsList = true;
      naive_[place].tags.assign(names.begin(), names.end());
    }
  }

  Names catalogue_;
  Editor editor_;
  std::vector<NaiveItem> naive_;
  std::vector<Item> items_;
  std::vector<std::shared_ptr<EPGItemList>> lists_;
  std::vector<std::size_t> places_[2];  ///< Which items stand in each list.
  std::size_t shownList_ = 0;
};

TEST(TagStatesOfRandomItems, StayThoseOfTheNaiveRuleThroughRandomChanges) {
  expectForCases(30000, [] {
    const Names catalogue = tagCatalogueWithRepeats();
    const std::vector<NaiveItem> items = upTo(4, naiveItemOfAnyKind);
    tell("catalogue", catalogue);
    tell("items", items);
    TwoListsOfTheSameItems lists(catalogue, items);
    for (Times steps(1, 11); steps.next();) {
      lists.doAnything();
      if (onceIn(3)) lists.lookAtOneRow();
      if (onceIn(2)) lists.expectTheSameAsNaively();
    }
    lists.expectTheSameAsNaively();
  });
}

}  // namespace
}  // namespace epg::test
