// A click gives the item a new tag list; whoever holds the old one keeps its value.

#include <gtest/gtest.h>

#include "tests/support/SessionTest.h"
#include "tests/support/StoreContent.h"

namespace epg::test {
namespace {

class OldTagList : public SessionTest {
 protected:
  OldTagList() { put("A", {{"title", "T"}, {"tags", listOfNames({"x"})}}); }

  /// From here on, clicks change the store's record itself.
  void editAndCommit() {
    edit({"A"});
    plugin->commitEditing();
    environment.waitForThreads();
  }

  EPGEvent event() const { return eventAt("A", 1330880400); }
};

TEST_F(OldTagList, OfTheStoredItemStaysUntilTheCommit) {
  edit({"A"});
  click(1, 1);
  click(0, 0);
  EXPECT_EQ(tagsOf(*edited(0)), Names({"y"}));
  EXPECT_EQ(storedTags("A"), Names({"x"}));
}

TEST_F(OldTagList, OfTheReplacedItemStaysAfterTheCommit) {
  const Item before = stored("A");
  edit({"A"});
  click(1, 1);
  plugin->commitEditing();
  EXPECT_EQ(tagsOf(*before), Names({"x"}));
}

TEST_F(OldTagList, OfADuplicateMadeBeforeTheEditStays) {
  plugin->duplicateEPGItemWithUniqueID("A", "B");
  edit({"A"});
  click(0, 0);
  plugin->commitEditing();
  EXPECT_EQ(storedTags("A"), Names());
  EXPECT_EQ(storedTags("B"), Names({"x"}));
}

TEST_F(OldTagList, OfTheSourceStaysWhenTheDuplicateIsEdited) {
  plugin->duplicateEPGItemWithUniqueID("A", "B");
  edit({"B"});
  click(1, 1);
  plugin->commitEditing();
  EXPECT_EQ(storedTags("A"), Names({"x"}));
  EXPECT_EQ(storedTags("B"), Names({"x", "y"}));
}

TEST_F(OldTagList, OfADuplicateMadeAfterACommitStays) {
  editAndCommit();
  plugin->duplicateEPGItemWithUniqueID("A", "B");
  click(0, 0);
  EXPECT_EQ(storedTags("A"), Names());
  EXPECT_EQ(storedTags("B"), Names({"x"}));
}

TEST_F(OldTagList, OfAWorkingCopyOfAnEarlierNamingStays) {
  edit({"A"});
  const Item earlier = edited(0);
  plugin->setEditedEPGUniqueIDs({"A"});
  click(1, 1);
  EXPECT_EQ(tagsOf(*earlier), Names({"x"}));
}

TEST_F(OldTagList, InTheValuesThatASnapshotGaveStays) {
  editAndCommit();
  const PropertyList snapshot = propertyListOfStore(plugin->epgItems()->snapshot());
  click(1, 1);
  const PropertyListDictionary* const item = snapshot.asDictionary()->find("A")->asDictionary();
  EXPECT_EQ(*item->find("tags"), listOfNames({"x"}));
  EXPECT_EQ(storedTags("A"), Names({"x", "y"}));
}

TEST_F(OldTagList, InASaveThatIsWritingStays) {
  editAndCommit();
  Gate gate;
  environment.holdBefore(Call::Write, "EPGItems.plist", gate);
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  click(1, 1);
  gate.open();
  environment.waitForThreads();
  EXPECT_EQ(tagsInFile("A"), Names({"x"}));
  EXPECT_EQ(storedTags("A"), Names({"x", "y"}));
}

TEST_F(OldTagList, OfAnUncommittedClickStaysInASaveThatBeginsLater) {
  edit({"A"});
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  click(1, 1);
  gate.open();
  environment.waitForThreads();
  EXPECT_EQ(tagsInFile("A"), Names({"x"}));
}

TEST_F(OldTagList, InASaveThatHasNotBegunToWriteIsTheItemsNewOneAfterACommit) {
  // A snapshot keeps which items there are, and shares the items: what has been committed is one with the editor.
  editAndCommit();
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  click(1, 1);
  gate.open();
  environment.waitForThreads();
  EXPECT_EQ(tagsInFile("A"), Names({"x", "y"}));
}

TEST_F(OldTagList, InASaveThatHasNotBegunToWriteIsThatOfTheItemReplacedByACommit) {
  edit({"A"});
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  click(1, 1);
  environment.letAllCallsPass();
  plugin->commitEditing();  // Its own save runs beside the one that is held.
  environment.waitForReplacements(1);
  EXPECT_EQ(tagsInFile("A"), Names({"x", "y"}));
  gate.open();
  environment.waitForThreads();
  EXPECT_EQ(tagsInFile("A"), Names({"x"})) << "the older save was the last to write";
}

TEST_F(OldTagList, InAnExportThatIsWritingStays) {
  editAndCommit();
  Gate gate;
  environment.holdBefore(Call::Write, "20120304.xml", gate);
  plugin->exportEvents({event()}, "Test");
  gate.waitUntilHolding();
  click(1, 1);
  gate.open();
  environment.waitForThreads();
  ASSERT_EQ(dayFile().programs.size(), 1u);
  EXPECT_EQ(dayFile().programs[0].tags, Names({"x"}));
  exportAndWait({event()});
  EXPECT_EQ(dayFile().programs[0].tags, Names({"x", "y"}));
}

TEST_F(OldTagList, InTheEntriesThatAnExportLookedUpStays) {
  editAndCommit();
  const PropertyListDictionary lookedUp = stored("A")->values();
  click(0, 0);
  EXPECT_EQ(*lookedUp.find("tags"), listOfNames({"x"}));
}

TEST_F(OldTagList, OfAnUncommittedClickStaysInAnExport) {
  edit({"A"});
  click(1, 1);
  exportAndWait({event()});
  EXPECT_EQ(dayFile().programs[0].tags, Names({"x"}));
}

}  // namespace
}  // namespace epg::test
