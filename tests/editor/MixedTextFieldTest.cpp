#include <gtest/gtest.h>

#include "tests/support/Editor.h"

namespace epg::test {
namespace {

TEST(MixedTextField, IsEmptyWithThePlaceholder) {
  Editor editor({});
  editor.views.title.type("A");
  editor->setMixedTextField(&editor.views.title, true);
  EXPECT_EQ(editor.views.title.stringValue(), "");
  EXPECT_EQ(editor.views.title.placeholderString(), "<Multiple Values>");
}

TEST(MixedTextField, SetToNotMixedLosesThePlaceholderAndKeepsItsText) {
  Editor editor({});
  editor->setMixedTextField(&editor.views.title, true);
  editor.views.title.type("A");
  editor->setMixedTextField(&editor.views.title, false);
  EXPECT_EQ(editor.views.title.stringValue(), "A");
  EXPECT_EQ(editor.views.title.placeholderString(), std::nullopt);
}

TEST(MixedTextField, KeepsThePlaceholderBehindTypedText) {
  Editor editor({});
  editor.show({itemTitled("A"), itemTitled("B")});
  editor.views.title.type("Z");
  EXPECT_EQ(editor.views.title.placeholderString(), "<Multiple Values>");
}

TEST(MixedTextField, MayBeAnyField) {
  Editor editor({});
  Journal journal;
  JournalField other("other", journal);
  editor->setMixedTextField(&other, true);
  EXPECT_EQ(other.placeholderString(), "<Multiple Values>");
}

TEST(MixedTextField, MayBeMissing) {
  Editor editor({});
  editor->setMixedTextField(nullptr, true);
  editor->setMixedTextField(nullptr, false);
  EXPECT_EQ(editor.views.journal, Journal());
}

TEST(MixedTableView, SetToAnythingDoesNothing) {
  Editor editor({"x"});
  const Item item = itemWithTags({"x"});
  editor.show({item});
  editor.views.journal.clear();
  editor->setMixedTableView(&editor.views.table, true);
  editor->setMixedTableView(&editor.views.table, false);
  editor->setMixedTableView(nullptr, true);
  EXPECT_EQ(editor.views.journal, Journal());
  EXPECT_EQ(editor.stateInRow(0), TagStateOn);
}

}  // namespace
}  // namespace epg::test
