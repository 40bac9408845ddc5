#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "store/MemoryItem.h"
#include "tests/support/Dictionary.h"
#include "tests/support/Editor.h"

namespace epg::test {
namespace {

class ApplyChanges : public ::testing::Test {
 protected:
  Editor editor{{"x"}};
};

TEST_F(ApplyChanges, WithoutItemsChangesNothing) {
  editor.show({});
  editor.views.title.type("T");
  editor->applyChanges();
  EXPECT_EQ(editor->items()->size(), 0u);
  EXPECT_EQ(editor.views.title.stringValue(), "T");
}

TEST_F(ApplyChanges, BeforeAnyItemsWereGivenChangesNothing) {
  editor->applyChanges();
  EXPECT_EQ(editor->items(), nullptr);
}

TEST_F(ApplyChanges, CreatesTheEntryOfAnItemThatHasNone) {
  const Item item = itemWith({});
  editor.show({item});
  editor->applyChanges();
  EXPECT_EQ(textOf(*item, "title"), "");
  EXPECT_EQ(textOf(*item, "description"), "");
  EXPECT_EQ(textOf(*item, "imageURL"), "");
}

TEST_F(ApplyChanges, WritesTheCommonValueBackIntoEveryItem) {
  const Item a = itemTitled("A");
  const Item b = itemTitled("A");
  editor.show({a, b});
  const PropertyListDictionary before = a->values();
  editor->applyChanges();
  EXPECT_EQ(textOf(*a, "title"), "A");
  EXPECT_EQ(textOf(*b, "title"), "A");
  EXPECT_FALSE(a->values().shares(before)) << "an equal value is stored too";
}

/// Items with these titles, or none; what is typed into the field one after another; the titles after applying.
struct AppliedTitle {
  const char* behaviour;
  std::vector<std::optional<PropertyList>> before;
  std::vector<std::string> typed;
  std::vector<std::optional<PropertyList>> after;
};

const AppliedTitle appliedTitles[] = {
    {"typed text goes into every item", {"A", "A"}, {"Z"}, {"Z", "Z"}},
    {"a common value is cleared everywhere", {"A", "A"}, {""}, {"", ""}},
    {"an empty mixed field leaves different values", {"A", "B"}, {}, {"A", "B"}},
    {"the text of a mixed field replaces different values", {"A", "B"}, {"Z"}, {"Z", "Z"}},
    {"different values cannot be cleared in one step", {"A", "B"}, {"typed", ""}, {"A", "B"}},
    {"an empty mixed field leaves an absent entry absent", {"A", std::nullopt}, {}, {"A", std::nullopt}},
    {"the text of a mixed field makes an absent entry", {"A", std::nullopt}, {"Z"}, {"Z", "Z"}},
    {"a value of another type is replaced by the shown text", {PropertyList::fromInteger(3)}, {}, {""}},
    {"an empty mixed field leaves a value of another type",
     {"A", PropertyList::fromInteger(3)},
     {},
     {"A", PropertyList::fromInteger(3)}}};

TEST_F(ApplyChanges, WritesTheTextUnlessTheFieldIsMixedAndEmpty) {
  for (const AppliedTitle& row : appliedTitles) {
    SCOPED_TRACE(row.behaviour);
    Editor shown({"x"});
    std::vector<Item> items;
    for (const auto& title : row.before) items.push_back(title ? itemWith({{"title", *title}}) : itemWith({}));
    shown.show(items);
    for (const std::string& text : row.typed) shown.views.title.type(text);
    shown->applyChanges();
    for (std::size_t i = 0; i < items.size(); ++i) EXPECT_EQ(valueOf(*items[i], "title"), row.after[i]);
  }
}

TEST_F(ApplyChanges, ClearsDifferentValuesInTwoSteps) {
  const Item a = itemTitled("A");
  const Item b = itemTitled("B");
  editor.show({a, b});
  editor.views.title.type("same");
  editor->applyChanges();
  editor->setItems(editor->items());
  editor.views.title.type("");
  editor->applyChanges();
  EXPECT_EQ(textOf(*a, "title"), "");
  EXPECT_EQ(textOf(*b, "title"), "");
}

TEST_F(ApplyChanges, FillsAFirstItemWithoutAnImageURLFromTheOneBehindItButNoLaterOne) {
  const Item first = itemWith({});
  const Item second = itemWith({{"imageURL", "X"}});
  const Item third = itemWith({});
  editor.show({first, second});
  EXPECT_EQ(editor.views.imageURL.stringValue(), "X");
  EXPECT_EQ(editor.views.imageURL.placeholderString(), std::nullopt);
  editor->applyChanges();
  EXPECT_EQ(textOf(*first, "imageURL"), "X");
  EXPECT_EQ(textOf(*second, "imageURL"), "X");
  editor.show({second, third});
  EXPECT_EQ(editor.views.imageURL.placeholderString(), "<Multiple Values>");
  editor->applyChanges();
  EXPECT_EQ(textOf(*second, "imageURL"), "X");
  EXPECT_EQ(valueOf(*third, "imageURL"), std::nullopt);
}

TEST_F(ApplyChanges, StoresTheTextExactlyAsTyped) {
  for (const std::string& text :
       {std::string("  leading and trailing \t"), std::string("line\nbreak"), std::string("no address at all"),
        std::string("<Multiple Values>"), std::string("&amp; ' \" <"), std::string("a\0b", 3),
        std::string("\xF0\x9F\x8E\xAC Caf\xC3\xA9"), std::string("\x01\x7F"), std::string(100000, 'x')}) {
    const Item item = itemTitled("A");
    editor.show({item});
    editor.views.title.type(text);
    editor.views.description.type(text);
    editor.views.imageURL.type(text);
    editor->applyChanges();
    EXPECT_EQ(textOf(*item, "title"), text);
    EXPECT_EQ(textOf(*item, "description"), text);
    EXPECT_EQ(textOf(*item, "imageURL"), text);
  }
}

TEST_F(ApplyChanges, WritesEachFieldIntoItsOwnEntry) {
  const Item item = itemWith({});
  editor.show({item});
  editor.views.title.type("T");
  editor.views.description.type("D");
  editor.views.imageURL.type("I");
  editor->applyChanges();
  EXPECT_EQ(item->values(), dictionaryOf({{"title", "T"}, {"description", "D"}, {"imageURL", "I"}}));
}

TEST_F(ApplyChanges, DecidesForEachFieldOnItsOwn) {
  const Item a = itemWith({{"title", "A"}, {"description", "same"}});
  const Item b = itemWith({{"title", "B"}, {"description", "same"}});
  editor.show({a, b});
  editor.views.imageURL.type("I");
  editor->applyChanges();
  EXPECT_EQ(textOf(*a, "title"), "A");
  EXPECT_EQ(textOf(*b, "title"), "B");
  EXPECT_EQ(textOf(*a, "description"), "same");
  EXPECT_EQ(textOf(*b, "imageURL"), "I");
}

TEST_F(ApplyChanges, KeepsEveryOtherEntry) {
  const Item item = itemWith({{"uniqueID", "QM-1"},
                              {"tags", listOfNames({"x"})},
                              {"rating", PropertyList::fromInteger(12)},
                              {"", "nameless"}});
  editor.show({item});
  editor->applyChanges();
  EXPECT_EQ(textOf(*item, "uniqueID"), "QM-1");
  EXPECT_EQ(valueOf(*item, "tags"), listOfNames({"x"}));
  EXPECT_EQ(valueOf(*item, "rating"), PropertyList::fromInteger(12));
  EXPECT_EQ(textOf(*item, ""), "nameless");
  EXPECT_EQ(item->values().size(), 7u);
}

TEST_F(ApplyChanges, LeavesTheFieldsAndTheirPlaceholdersAsTheyWere) {
  editor.show({itemTitled("A"), itemTitled("B")});
  editor.views.title.type("Z");
  editor.views.description.type("D");
  editor.views.journal.clear();
  editor->applyChanges();
  EXPECT_EQ(editor.views.journal, Journal());
  EXPECT_EQ(editor.views.title.stringValue(), "Z");
  EXPECT_EQ(editor.views.title.placeholderString(), "<Multiple Values>");
  EXPECT_EQ(editor.views.description.placeholderString(), std::nullopt);
}

TEST_F(ApplyChanges, TakesAMixedFieldForMixedUntilItIsRefreshed) {
  const Item a = itemTitled("A");
  const Item b = itemTitled("B");
  editor.show({a, b});
  editor.views.title.type("Z");
  editor->applyChanges();
  editor.views.title.type("");
  editor->applyChanges();
  EXPECT_EQ(textOf(*a, "title"), "Z") << "an empty mixed field leaves values alone, also after it was applied";
  EXPECT_EQ(textOf(*b, "title"), "Z");
}

TEST_F(ApplyChanges, GoesByThePlaceholderAloneWhoeverSetIt) {
  const Item item = itemTitled("A");
  editor.show({item});
  editor.views.title.type("");
  editor.views.title.setPlaceholderString("hint");
  editor->applyChanges();
  EXPECT_EQ(textOf(*item, "title"), "A");
  editor.views.title.setPlaceholderString("");
  editor->applyChanges();
  EXPECT_EQ(textOf(*item, "title"), "A") << "an empty placeholder is one, too";
  editor.views.title.setPlaceholderString(std::nullopt);
  editor->applyChanges();
  EXPECT_EQ(textOf(*item, "title"), "");
}

TEST_F(ApplyChanges, NeverCallsTheDelegate) {
  // Anything that is looked at through this pointer ends the test.
  editor->setDelegate(&editor);
  editor.show({itemTitled("A")});
  editor->applyChanges();
  EXPECT_EQ(editor->delegate(), &editor);
}

TEST_F(ApplyChanges, ChangesNoTag) {
  const Item item = itemWithTags({"x", "y"});
  const PropertyList before = *valueOf(*item, ZRLEPGDSTagsKey);
  editor.show({item});
  editor->applyChanges();
  EXPECT_EQ(valueOf(*item, ZRLEPGDSTagsKey)->asArray()->data(), before.asArray()->data());
}

TEST_F(ApplyChanges, ReachesAnItemThatWasAppendedSinceTheRefresh) {
  editor.show({itemTitled("A")});
  const Item late = itemTitled("B");
  editor->items()->append(late);
  editor->applyChanges();
  EXPECT_EQ(textOf(*late, "title"), "A");
}

TEST_F(ApplyChanges, ChangesAllEntriesOfAnItemAtOneMoment) {
  const Item item = itemWith({{"title", "A"}, {"description", "A"}, {"imageURL", "A"}});
  editor.show({item});
  const std::size_t before = MemoryItem::changeCount();
  editor.views.title.type("B");
  editor.views.description.type("B");
  editor.views.imageURL.type("B");
  editor->applyChanges();
  EXPECT_EQ(MemoryItem::changeCount(), before + 1);
}

}  // namespace
}  // namespace epg::test
