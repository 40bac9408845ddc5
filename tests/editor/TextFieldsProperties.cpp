// The mixed-field rule and the applying of changes over random items, held against the rules as they are told.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Editor.h"
#include "tests/support/Property.h"
#include "tests/support/RandomItems.h"

namespace epg::test {
namespace {

struct Field {
  const char* key;
  JournalField EditorViews::*field;
};

constexpr std::size_t fieldCount = 3;
const Field fields[fieldCount] = {
    {"title", &EditorViews::title}, {"description", &EditorViews::description}, {"imageURL", &EditorViews::imageURL}};

/// Random items under edit, and the same as plain data.
class RandomEntries {
 public:
  RandomEntries() : naive_(upTo(5, naiveItemOfAnyKind)) {
    tell("items", naive_);
    for (NaiveItem& item : naive_) {
      pointers_.push_back(&item);
      items_.push_back(itemWith(entriesOf(item)));
    }
    editor_->setItems(listOf(items_));
    for (std::size_t i = 0; i < fieldCount; ++i) naiveFields_[i] = naiveField(pointers_, fields[i].key);
  }

  void refresh() {
    editor_->setItems(editor_->items());
    for (std::size_t i = 0; i < fieldCount; ++i) naiveFields_[i] = naiveField(pointers_, fields[i].key);
  }

  void typeAnything() {
    for (std::size_t i = 0; i < fieldCount; ++i) {
      const std::optional<std::string> typed = mostly(2, fieldText);
      if (!typed) continue;
      tell(fields[i].key, *typed);
      (editor_.views.*fields[i].field).type(*typed);
      naiveFields_[i].text = *typed;
    }
  }

  void apply() {
    editor_->applyChanges();
    for (std::size_t i = 0; i < fieldCount; ++i) applyNaively(pointers_, fields[i].key, naiveFields_[i]);
  }

  void changeOneFromOutside() {
    if (items_.empty()) return;
    const std::size_t place = below(items_.size());
    const std::string key = fields[below(fieldCount)].key;
    if (onceIn(2)) {
      tell("remove", std::make_pair(place, key));
      items_[place]->remove(key);
      naive_[place].texts.erase(key);
    } else {
      const std::string text = fieldText();
      tell("set", std::make_pair(place, std::make_pair(key, text)));
      items_[place]->set(key, text);
      naive_[place].texts[key] = text;
    }
  }

  void expectTheSameAsNaively() {
    for (std::size_t i = 0; i < fieldCount; ++i) {
      const JournalField& field = editor_.views.*fields[i].field;
      HOLDS(field.stringValue() == naiveFields_[i].text);
      const auto placeholder = naiveFields_[i].mixed ? std::optional<std::string>("<Multiple Values>") : std::nullopt;
      HOLDS(field.placeholderString() == placeholder);
    }
    for (std::size_t i = 0; i < items_.size(); ++i) HOLDS(naiveItem(*items_[i]) == naive_[i]);
  }

 private:
  Editor editor_{{}};
  std::vector<NaiveItem> naive_;
  NaiveItems pointers_;
  std::vector<Item> items_;
  NaiveField naiveFields_[fieldCount];
};

TEST(TextFieldsOfRandomItems, ShowWhatTheNaiveRuleShows) {
  expectForCases(30000, [] {
    RandomEntries entries;
    entries.expectTheSameAsNaively();
    entries.changeOneFromOutside();
    entries.refresh();
    entries.expectTheSameAsNaively();
  });
}

TEST(TextFieldsOfRandomItems, ApplyWhatTheNaiveRuleApplies) {
  expectForCases(30000, [] {
    RandomEntries entries;
    for (Times rounds(1, 3); rounds.next();) {
      entries.typeAnything();
      entries.expectTheSameAsNaively();
      entries.apply();
      entries.expectTheSameAsNaively();
      if (onceIn(2)) entries.changeOneFromOutside();
      if (onceIn(2)) entries.refresh();
    }
    entries.expectTheSameAsNaively();
  });
}

}  // namespace
}  // namespace epg::test
