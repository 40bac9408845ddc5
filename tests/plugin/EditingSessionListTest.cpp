// The list of working copies: one object that session, editor and host share.

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/SessionTest.h"

namespace epg::test {
namespace {

class EditedItems : public SessionTest {};

TEST_F(EditedItems, AreOneListObjectForAsLongAsThePluginLives) {
  const auto list = plugin->editedItems();
  edit({"A"});
  EXPECT_EQ(plugin->editedItems(), list);
  plugin->commitEditing();
  EXPECT_EQ(plugin->editedItems(), list);
  plugin->setEditedEPGUniqueIDs({"B", "C"});
  EXPECT_EQ(plugin->editedItems(), list);
  plugin->revertEditing();
  EXPECT_EQ(plugin->editedItems(), list);
  plugin->setEditedEPGUniqueIDs({});
  EXPECT_EQ(plugin->editedItems(), list);
  EXPECT_EQ(list->size(), 0u);
}

TEST_F(EditedItems, AreEmptiedAndRefilledUnderTheEditor) {
  edit({"A"});
  const auto shown = views->owner->items();
  plugin->setEditedEPGUniqueIDs({"B", "C"});
  EXPECT_EQ(views->owner->items(), shown);
  ASSERT_EQ(shown->size(), 2u);
  EXPECT_EQ(textOf(*shown->at(1), "uniqueID"), "C");
}

TEST_F(EditedItems, SeenByTheHostAreTheWorkingCopiesThemselves) {
  edit({"A"});
  const auto list = plugin->editedItems();
  click(0, 1);
  EXPECT_EQ(tagsOf(*list->at(0)), Names({"x"}));
}

TEST_F(EditedItems, ChangedByTheHostAreCommittedAsTheyAre) {
  edit({"A"});
  edited(0)->set("rating", PropertyList::fromInteger(12));
  plugin->commitEditing();
  EXPECT_EQ(valueOf(*stored("A"), "rating"), PropertyList::fromInteger(12));
}

TEST_F(EditedItems, AppendedByTheHostAreEditedAndCommittedWithTheOthers) {
  edit({"A"});
  plugin->editedItems()->append(itemWith({{"uniqueID", "B"}, {"title", "U"}}));
  click(0, 1);
  plugin->commitEditing();
  EXPECT_EQ(storedTags("A"), Names({"x"}));
  EXPECT_EQ(storedTags("B"), Names({"x"}));
}

TEST_F(EditedItems, EmptiedByTheHostAreNotCommitted) {
  edit({"A"});
  plugin->editedItems()->clear();
  EXPECT_TRUE(plugin->commitEditing());
  EXPECT_FALSE(stored("A"));
}

TEST_F(EditedItems, MayBeAnotherListOfTheHosts) {
  const auto list = listOf({itemWith({{"uniqueID", "B"}, {"title", "U"}})});
  edit({"A"});
  plugin->setEditedItems(list);
  EXPECT_EQ(plugin->editedItems(), list);
  plugin->revertEditing();
  EXPECT_EQ(views->owner->items(), list);
  EXPECT_EQ(views->title.stringValue(), "U");
  plugin->commitEditing();
  EXPECT_EQ(storedTitle("B"), "U");
  EXPECT_FALSE(stored("A"));
}

TEST_F(EditedItems, OfTheHostsAreEmptiedAndRefilledByTheNextNaming) {
  const auto list = listOf({itemWith({{"uniqueID", "B"}})});
  plugin->setEditedItems(list);
  edit({"A"});
  EXPECT_EQ(plugin->editedItems(), list);
  ASSERT_EQ(list->size(), 1u);
  EXPECT_EQ(textOf(*list->at(0), "uniqueID"), "A");
  EXPECT_EQ(views->owner->items(), list);
}

TEST_F(EditedItems, MayBeNone) {
  put("A", {{"title", "T"}});
  edit({"A"});
  plugin->setEditedItems(nullptr);
  plugin->setEditedEPGUniqueIDs({"A"});
  EXPECT_EQ(views->title.stringValue(), "");
  click(0, 1);
  plugin->revertEditing();
  EXPECT_TRUE(plugin->commitEditing());
  EXPECT_EQ(itemInStore("A"), dictionaryOf({{"title", "T"}}));
}

}  // namespace
}  // namespace epg::test
