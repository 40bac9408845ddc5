// After a commit the working copies are the store's records, until IDs are named again.

#include <gtest/gtest.h>

#include "tests/support/SessionTest.h"

namespace epg::test {
namespace {

class EditingSessionAfterCommit : public SessionTest {
 protected:
  EditingSessionAfterCommit() { put("A", {{"title", "T"}, {"tags", listOfNames({"x"})}}); }

  void commit() {
    plugin->commitEditing();
    environment.waitForThreads();
  }
};

TEST_F(EditingSessionAfterCommit, ATagClickChangesTheStoredItemAtOnce) {
  edit({"A"});
  commit();
  click(1, 1);
  EXPECT_EQ(storedTags("A"), Names({"x", "y"}));
}

TEST_F(EditingSessionAfterCommit, ATagClickReachesTheFileWithTheNextSave) {
  edit({"A"});
  commit();
  click(1, 1);
  EXPECT_EQ(tagsInFile("A"), Names({"x"}));
  save();
  EXPECT_EQ(tagsInFile("A"), Names({"x", "y"}));
}

TEST_F(EditingSessionAfterCommit, ATagClickStartsNoSave) {
  edit({"A"});
  commit();
  const std::size_t before = environment.threadsStarted();
  click(1, 1);
  EXPECT_EQ(environment.threadsStarted(), before);
}

TEST_F(EditingSessionAfterCommit, ATagClickIsShownByTheEditor) {
  edit({"A"});
  commit();
  click(1, 1);
  EXPECT_EQ(stateInRow(1), TagStateOn);
}

TEST_F(EditingSessionAfterCommit, AChangeOfTheStoredItemIsShownByTheEditor) {
  edit({"A"});
  commit();
  stored("A")->set("tags", listOfNames({"z"}));
  EXPECT_EQ(stateInRow(0), TagStateOff);
  EXPECT_EQ(stateInRow(2), TagStateOn);
}

TEST_F(EditingSessionAfterCommit, TypedTextReachesTheStoredItemWithTheNextCommitOnly) {
  edit({"A"});
  commit();
  typeTitle("typed later");
  EXPECT_EQ(storedTitle("A"), "T");
  commit();
  EXPECT_EQ(storedTitle("A"), "typed later");
}

TEST_F(EditingSessionAfterCommit, ApplyingChangesReachesTheStoredItemAtOnce) {
  edit({"A"});
  commit();
  typeTitle("typed later");
  views->owner->applyChanges();
  EXPECT_EQ(storedTitle("A"), "typed later");
}

TEST_F(EditingSessionAfterCommit, EditorAndStoreShareUntilIDsAreNamedAgain) {
  edit({"A"});
  commit();
  plugin->setEditedEPGUniqueIDs({"A"});
  EXPECT_NE(edited(0), stored("A"));
  click(1, 1);
  EXPECT_EQ(storedTags("A"), Names({"x"}));
}

TEST_F(EditingSessionAfterCommit, EditorAndStoreShareAfterARevertToo) {
  edit({"A"});
  commit();
  plugin->revertEditing();
  click(1, 1);
  EXPECT_EQ(storedTags("A"), Names({"x", "y"}));
}

TEST_F(EditingSessionAfterCommit, EditorAndStoreShareAfterASecondCommitToo) {
  edit({"A"});
  commit();
  commit();
  click(1, 1);
  EXPECT_EQ(stored("A"), edited(0));
  EXPECT_EQ(storedTags("A"), Names({"x", "y"}));
}

TEST_F(EditingSessionAfterCommit, ANewEntryIsSharedToo) {
  edit({"new"});
  commit();
  click(2, 1);
  EXPECT_EQ(storedTags("new"), Names({"z"}));
}

TEST_F(EditingSessionAfterCommit, EveryCommittedEntryIsShared) {
  edit({"A", "B", "C"});
  commit();
  click(2, 1);
  for (const char* const id : {"A", "B", "C"}) EXPECT_EQ(storedTags(id)->back(), "z") << id;
}

TEST_F(EditingSessionAfterCommit, OfTheSameIDTwiceOnlyTheLaterCopyIsShared) {
  edit({"A", "A"});
  commit();
  edited(0)->set("title", "in the first copy");
  EXPECT_EQ(storedTitle("A"), "T");
  edited(1)->set("title", "in the second copy");
  EXPECT_EQ(storedTitle("A"), "in the second copy");
}

TEST_F(EditingSessionAfterCommit, OfTheSameIDTwiceBothCopiesTakeTheClick) {
  edit({"A", "A"});
  commit();
  click(1, 1);
  EXPECT_EQ(tagsOf(*edited(0)), Names({"x", "y"}));
  EXPECT_EQ(tagsOf(*edited(1)), Names({"x", "y"}));
  EXPECT_EQ(storedTags("A"), Names({"x", "y"}));
}

TEST_F(EditingSessionAfterCommit, OfTheSameIDTwiceTheLaterCopyWinsEveryCommit) {
  edit({"A", "A"});
  commit();
  edited(0)->set(ZRLEPGDSTagsKey, listOfNames({"first"}));
  commit();
  EXPECT_EQ(stored("A"), edited(1));
  EXPECT_EQ(storedTags("A"), Names({"x"}));
}

TEST_F(EditingSessionAfterCommit, ADuplicateIsAnItemOfItsOwn) {
  edit({"A"});
  commit();
  plugin->duplicateEPGItemWithUniqueID("A", "B");
  click(1, 1);
  typeTitle("typed later");
  commit();
  EXPECT_EQ(storedTags("A"), Names({"x", "y"}));
  EXPECT_EQ(storedTags("B"), Names({"x"}));
  EXPECT_EQ(storedTitle("B"), "T");
}

TEST_F(EditingSessionAfterCommit, ADuplicateOverTheEntryEndsTheSharing) {
  put("B", {{"title", "U"}, {"tags", listOfNames({"z"})}});
  edit({"A"});
  commit();
  plugin->duplicateEPGItemWithUniqueID("B", "A");
  click(1, 1);
  EXPECT_EQ(storedTags("A"), Names({"z"}));
  EXPECT_EQ(tagsOf(*edited(0)), Names({"x", "y"}));
}

TEST_F(EditingSessionAfterCommit, ADuplicateOntoItselfEndsTheSharing) {
  edit({"A"});
  commit();
  plugin->duplicateEPGItemWithUniqueID("A", "A");
  click(1, 1);
  EXPECT_EQ(storedTags("A"), Names({"x"}));
}

TEST_F(EditingSessionAfterCommit, AClickDoesNotBringARemovedEntryBack) {
  edit({"A"});
  commit();
  plugin->removeEPGItemsWithUniqueIDs({"A"});
  click(1, 1);
  EXPECT_FALSE(stored("A"));
  commit();
  EXPECT_EQ(storedTags("A"), Names({"x", "y"}));
}

TEST_F(EditingSessionAfterCommit, NamingOtherIDsLeavesTheCommittedItemsInTheStore) {
  edit({"A"});
  const Item committed = edited(0);
  commit();
  plugin->setEditedEPGUniqueIDs({"B"});
  EXPECT_EQ(stored("A"), committed);
  click(2, 1);
  EXPECT_EQ(storedTags("A"), Names({"x"}));
}

}  // namespace
}  // namespace epg::test
