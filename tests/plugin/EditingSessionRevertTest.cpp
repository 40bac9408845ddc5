#include <gtest/gtest.h>

#include "tests/support/SessionTest.h"

namespace epg::test {
namespace {

class EditingSessionRevert : public SessionTest {};

TEST_F(EditingSessionRevert, KeepsTagClicks) {
  put("A", {{"tags", listOfNames({"x"})}});
  edit({"A"});
  click(1, 1);
  click(0, 0);
  plugin->revertEditing();
  EXPECT_EQ(tagsOf(*edited(0)), Names({"y"}));
  EXPECT_EQ(stateInRow(0), TagStateOff);
  EXPECT_EQ(stateInRow(1), TagStateOn);
}

TEST_F(EditingSessionRevert, DropsTextThatWasTypedAndNotApplied) {
  put("A", {{"title", "T"}, {"description", "D"}, {"imageURL", "I"}});
  edit({"A"});
  typeTitle("typed");
  views->description.type("typed");
  views->imageURL.type("typed");
  plugin->revertEditing();
  EXPECT_EQ(views->title.stringValue(), "T");
  EXPECT_EQ(views->description.stringValue(), "D");
  EXPECT_EQ(views->imageURL.stringValue(), "I");
}

TEST_F(EditingSessionRevert, ShowsAMixedFieldEmptyAgain) {
  put("A", {{"title", "T"}});
  put("B", {{"title", "U"}});
  edit({"A", "B"});
  typeTitle("typed");
  plugin->revertEditing();
  EXPECT_EQ(views->title.stringValue(), "");
  EXPECT_EQ(views->title.placeholderString(), "<Multiple Values>");
}

TEST_F(EditingSessionRevert, DropsOnlyTextsWhereTagsWereClickedToo) {
  put("A", {{"title", "T"}});
  edit({"A"});
  click(0, 1);
  typeTitle("typed");
  plugin->revertEditing();
  plugin->commitEditing();
  EXPECT_EQ(storedTitle("A"), "T");
  EXPECT_EQ(storedTags("A"), Names({"x"}));
}

TEST_F(EditingSessionRevert, WithoutAnEditorDoesNothing) {
  put("A", {{"title", "T"}});
  plugin->setEditedEPGUniqueIDs({"A"});
  const Item copy = edited(0);
  const PropertyListDictionary values = copy->values();
  plugin->revertEditing();
  EXPECT_EQ(edited(0), copy);
  EXPECT_EQ(copy->values(), values);
  EXPECT_EQ(views->owner, nullptr);
}

TEST_F(EditingSessionRevert, RebuildsNoWorkingCopy) {
  put("A", {{"title", "T"}});
  edit({"A"});
  const auto list = plugin->editedItems();
  const Item copy = edited(0);
  plugin->revertEditing();
  EXPECT_EQ(plugin->editedItems(), list);
  EXPECT_EQ(edited(0), copy);
}

TEST_F(EditingSessionRevert, DoesNotReadTheStoreAgain) {
  put("A", {{"title", "T"}});
  edit({"A"});
  put("A", {{"title", "changed in the store"}});
  plugin->revertEditing();
  EXPECT_EQ(views->title.stringValue(), "T");
}

TEST_F(EditingSessionRevert, LeavesTheStoreAloneAndSavesNothing) {
  put("A", {{"title", "T"}});
  const PropertyListDictionary values = stored("A")->values();
  edit({"A"});
  click(0, 1);
  plugin->revertEditing();
  EXPECT_EQ(stored("A")->values(), values);
  EXPECT_EQ(environment.threadsStarted(), 0u);
}

TEST_F(EditingSessionRevert, ShowsWhatTheHostChangedInTheWorkingCopies) {
  put("A", {{"title", "T"}});
  edit({"A"});
  edited(0)->set("title", "from the host");
  plugin->revertEditing();
  EXPECT_EQ(views->title.stringValue(), "from the host");
}

TEST_F(EditingSessionRevert, WithNothingUnderEditShowsEmptyFields) {
  plugin->editorView();
  typeTitle("typed");
  plugin->revertEditing();
  EXPECT_EQ(views->title.stringValue(), "");
  EXPECT_EQ(views->owner->items(), plugin->editedItems());
}

TEST_F(EditingSessionRevert, AfterACommitShowsWhatWasCommitted) {
  put("A", {{"title", "T"}});
  edit({"A"});
  typeTitle("committed");
  plugin->commitEditing();
  typeTitle("typed");
  plugin->revertEditing();
  EXPECT_EQ(views->title.stringValue(), "committed");
}

TEST_F(EditingSessionRevert, AfterACommitShowsEqualTextsThatWereMixedAsCommon) {
  put("A", {{"title", "T"}});
  put("B", {{"title", "U"}});
  edit({"A", "B"});
  typeTitle("Z");
  plugin->commitEditing();
  EXPECT_EQ(views->title.placeholderString(), "<Multiple Values>");
  plugin->revertEditing();
  EXPECT_EQ(views->title.stringValue(), "Z");
  EXPECT_EQ(views->title.placeholderString(), std::nullopt);
}

}  // namespace
}  // namespace epg::test
