#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/Editor.h"

namespace epg::test {
namespace {

/// One of the three fields, all of which follow the same rules.
struct FieldCase {
  const char* name;
  const char* key;
  JournalField EditorViews::*field;
  void (EPGDorvaSelinViewController::*update)();
};

std::ostream& operator<<(std::ostream& stream, const FieldCase& field) { return stream << field.name; }

std::string nameOf(const ::testing::TestParamInfo<FieldCase>& info) { return info.param.name; }

class TextFieldRefresh : public ::testing::TestWithParam<FieldCase> {
 protected:
  JournalField& field() { return editor.views.*GetParam().field; }

  Item with(const std::string& value) const { return itemWith({{GetParam().key, value}}); }
  Item without() const { return itemWith({{"other", "o"}}); }
  Item withNoString() const { return itemWith({{GetParam().key, PropertyList::fromInteger(3)}}); }

  void expectCommon(const std::vector<Item>& items, const std::string& text) {
    editor.show(items);
    EXPECT_EQ(field().stringValue(), text);
    EXPECT_EQ(field().placeholderString(), std::nullopt);
  }

  void expectMixed(const std::vector<Item>& items) {
    editor.show(items);
    EXPECT_EQ(field().stringValue(), "");
    EXPECT_EQ(field().placeholderString(), "<Multiple Values>");
  }

  Editor editor{{}};
};

INSTANTIATE_TEST_SUITE_P(Of, TextFieldRefresh,
                         ::testing::Values(FieldCase{"ImageURL", "imageURL", &EditorViews::imageURL,
                                                     &EPGDorvaSelinViewController::updateImageURLTextField},
                                           FieldCase{"Title", "title", &EditorViews::title,
                                                     &EPGDorvaSelinViewController::updateTitleTextField},
                                           FieldCase{"Description", "description", &EditorViews::description,
                                                     &EPGDorvaSelinViewController::updateDescriptionTextField}),
                         nameOf);

TEST_P(TextFieldRefresh, WithoutItemsShowsAnEmptyFieldThatIsNotMixed) { expectCommon({}, ""); }

TEST_P(TextFieldRefresh, WithoutAListShowsAnEmptyFieldThatIsNotMixed) {
  expectMixed({with("A"), with("B")});
  editor->setItems(nullptr);
  EXPECT_EQ(field().stringValue(), "");
  EXPECT_EQ(field().placeholderString(), std::nullopt);
}

TEST_P(TextFieldRefresh, OfOneItemShowsItsValue) { expectCommon({with("A")}, "A"); }

TEST_P(TextFieldRefresh, OfOneItemWithoutTheEntryShowsAnEmptyFieldThatIsNotMixed) { expectCommon({without()}, ""); }

TEST_P(TextFieldRefresh, OfItemsWithTheSameValueShowsIt) { expectCommon({with("A"), with("A"), with("A")}, "A"); }

TEST_P(TextFieldRefresh, OfItemsWithoutTheEntryShowsAnEmptyFieldThatIsNotMixed) {
  expectCommon({without(), without()}, "");
}

TEST_P(TextFieldRefresh, OfItemsWithDifferentValuesIsMixed) {
  expectMixed({with("A"), with("B")});
  expectMixed({with("A"), with("A"), with("B")});
  expectMixed({with("A"), with("B"), with("A")});
}

TEST_P(TextFieldRefresh, OfAnItemWithoutTheEntryBeforeOneWithAValueShowsTheValue) {
  expectCommon({without(), with("X")}, "X");
  expectCommon({without(), without(), with("X"), with("X")}, "X");
}

TEST_P(TextFieldRefresh, OfAnItemWithoutTheEntryBehindOneWithAValueIsMixed) {
  expectMixed({with("X"), without()});
  expectMixed({without(), with("X"), without()});
  expectMixed({with("X"), with("X"), without()});
}

TEST_P(TextFieldRefresh, OfAnEmptyValueBeforeAnItemWithoutTheEntryIsMixed) { expectMixed({with(""), without()}); }

TEST_P(TextFieldRefresh, OfAnItemWithoutTheEntryBeforeAnEmptyValueShowsAnEmptyFieldThatIsNotMixed) {
  expectCommon({without(), with("")}, "");
}

TEST_P(TextFieldRefresh, TreatsAnEmptyStringAsAValueLikeAnyOther) {
  expectCommon({with(""), with("")}, "");
  expectMixed({with(""), with("A")});
  expectMixed({with("A"), with("")});
}

TEST_P(TextFieldRefresh, TellsLetterCaseAndBlanksApart) {
  expectMixed({with("news"), with("News")});
  expectMixed({with("News"), with("News ")});
  expectMixed({with("Caf\xC3\xA9"), with("Cafe\xCC\x81")});
}

TEST_P(TextFieldRefresh, TellsValuesApartThatDifferBehindAZeroByte) {
  expectMixed({with(std::string("A\0B", 3)), with(std::string("A\0C", 3))});
}

TEST_P(TextFieldRefresh, ReadsAValueOfAnotherTypeAsNone) {
  expectCommon({withNoString()}, "");
  expectCommon({withNoString(), with("A")}, "A");
  expectMixed({with("A"), withNoString()});
}

TEST_P(TextFieldRefresh, RemovesThePlaceholderOfAnEarlierMixedDisplay) {
  expectMixed({with("A"), with("B")});
  expectCommon({with("A"), with("A")}, "A");
}

TEST_P(TextFieldRefresh, ReplacesWhatTheInterfaceFileLeftInTheField) {
  field().type("from the interface file");
  field().setPlaceholderString("hint");
  expectCommon({without()}, "");
}

TEST_P(TextFieldRefresh, EmptiesTheFieldBeforeItSetsThePlaceholder) {
  field().type("typed");
  editor->setItems(listOf({with("A"), with("B")}));
  editor.views.journal.clear();
  (editor.controller().*GetParam().update)();
  const std::string name = GetParam().key;
  EXPECT_EQ(editor.views.journal, Journal({name + " text ", name + " placeholder <Multiple Values>"}));
}

TEST_P(TextFieldRefresh, RemovesThePlaceholderBeforeItSetsTheText) {
  editor->setItems(listOf({with("A")}));
  editor.views.journal.clear();
  (editor.controller().*GetParam().update)();
  const std::string name = GetParam().key;
  EXPECT_EQ(editor.views.journal, Journal({name + " placeholder none", name + " text A"}));
}

TEST_P(TextFieldRefresh, ChangesNoItem) {
  const Item a = with("A");
  const Item b = without();
  const PropertyListDictionary beforeA = a->values();
  const PropertyListDictionary beforeB = b->values();
  editor.show({a, b});
  EXPECT_EQ(a->values(), beforeA);
  EXPECT_EQ(b->values(), beforeB);
}

TEST_P(TextFieldRefresh, OfItsOwnFieldLeavesTheOthersAlone) {
  editor.show({with("A")});
  editor.views.title.type("1");
  editor.views.description.type("2");
  editor.views.imageURL.type("3");
  editor.views.journal.clear();
  (editor.controller().*GetParam().update)();
  EXPECT_EQ(editor.views.journal,
            Journal({std::string(GetParam().key) + " placeholder none", std::string(GetParam().key) + " text A"}));
}

TEST_P(TextFieldRefresh, WithTheSameListDropsTypedText) {
  const auto list = listOf({with("A")});
  editor->setItems(list);
  field().type("typed");
  editor->setItems(list);
  EXPECT_EQ(field().stringValue(), "A");
}

TEST_P(TextFieldRefresh, OfAMixedFieldDropsTypedText) {
  const auto list = listOf({with("A"), with("B")});
  editor->setItems(list);
  field().type("typed");
  editor->setItems(list);
  EXPECT_EQ(field().stringValue(), "");
  EXPECT_EQ(field().placeholderString(), "<Multiple Values>");
}

}  // namespace
}  // namespace epg::test
