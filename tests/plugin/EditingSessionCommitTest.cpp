#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "tests/support/SessionTest.h"

namespace epg::test {
namespace {

class EditingSessionCommit : public SessionTest {};

TEST_F(EditingSessionCommit, FilesTheWorkingCopiesThemselves) {
  put("A", {});
  edit({"A", "new"});
  const Item a = edited(0);
  const Item fresh = edited(1);
  EXPECT_TRUE(plugin->commitEditing());
  EXPECT_EQ(stored("A"), a);
  EXPECT_EQ(stored("new"), fresh);
}

TEST_F(EditingSessionCommit, AppliesTheTextsBeforeItFiles) {
  put("A", {{"title", "T"}});
  edit({"A"});
  typeTitle("typed");
  views->description.type("D");
  views->imageURL.type("I");
  plugin->commitEditing();
  EXPECT_EQ(itemInStore("A"),
            dictionaryOf({{"uniqueID", "A"}, {"title", "typed"}, {"description", "D"}, {"imageURL", "I"}}));
}

TEST_F(EditingSessionCommit, BringsTagClicksIntoTheStore) {
  put("A", {{"tags", listOfNames({"x"})}});
  edit({"A"});
  click(1, 1);
  EXPECT_EQ(storedTags("A"), Names({"x"}));
  plugin->commitEditing();
  EXPECT_EQ(storedTags("A"), Names({"x", "y"}));
}

TEST_F(EditingSessionCommit, WithoutAnEditAddsAnItemForAnIDThatHadNone) {
  edit({"new"});
  plugin->commitEditing();
  EXPECT_EQ(itemInStore("new"),
            dictionaryOf({{"uniqueID", "new"}, {"title", ""}, {"description", ""}, {"imageURL", ""}}));
}

TEST_F(EditingSessionCommit, WithoutAnEditorAddsAnItemThatHoldsOnlyItsID) {
  plugin->setEditedEPGUniqueIDs({"new"});
  plugin->commitEditing();
  EXPECT_EQ(itemInStore("new"), dictionaryOf({{"uniqueID", "new"}}));
}

TEST_F(EditingSessionCommit, WithoutAnEditorWritesTheUnchangedCopiesBackWithTheirIDs) {
  put("A", {{"title", "T"}, {"uniqueID", "somebody else"}});
  put("B", {{"title", "U"}});
  plugin->setEditedEPGUniqueIDs({"A", "B"});
  EXPECT_TRUE(plugin->commitEditing());
  EXPECT_EQ(itemInStore("A"), dictionaryOf({{"title", "T"}, {"uniqueID", "A"}}));
  EXPECT_EQ(itemInStore("B"), dictionaryOf({{"title", "U"}, {"uniqueID", "B"}}));
  environment.waitForThreads();
  EXPECT_EQ(storedIDs(), Names({"A", "B"}));
}

TEST_F(EditingSessionCommit, WithNothingUnderEditSavesTheUnchangedStore) {
  put("A", {{"title", "T"}});
  EXPECT_TRUE(plugin->commitEditing());
  environment.waitForThreads();
  EXPECT_EQ(environment.threadsStarted(), 1u);
  EXPECT_EQ(itemInStore("A"), dictionaryOf({{"title", "T"}}));
  EXPECT_EQ(storedIDs(), Names({"A"}));
}

TEST_F(EditingSessionCommit, WithAnOpenEditorAndNothingUnderEditSavesTheUnchangedStore) {
  put("A", {{"title", "T"}});
  edit({});
  typeTitle("typed");
  click(0, 1);
  EXPECT_TRUE(plugin->commitEditing());
  environment.waitForThreads();
  EXPECT_EQ(itemInStore("A"), dictionaryOf({{"title", "T"}}));
  EXPECT_EQ(storedIDs(), Names({"A"}));
}

TEST_F(EditingSessionCommit, StartsOneSave) {
  edit({"A", "B", "C"});
  plugin->commitEditing();
  environment.waitForThreads();
  EXPECT_EQ(environment.threadsStarted(), 1u);
}

TEST_F(EditingSessionCommit, SavesTheStoreAsItIsAfterTheCommit) {
  put("untouched", {{"title", "U"}});
  put("A", {{"title", "T"}});
  edit({"A", "new"});
  typeTitle("typed");
  click(2, 1);
  plugin->commitEditing();
  environment.waitForThreads();
  const PropertyListDictionary file = storeFile();
  ASSERT_EQ(file.size(), 3u);
  EXPECT_EQ(*file.find("A")->asDictionary(), itemInStore("A"));
  EXPECT_EQ(*file.find("new")->asDictionary(), itemInStore("new"));
  EXPECT_EQ(*file.find("untouched")->asDictionary(), itemInStore("untouched"));
}

TEST_F(EditingSessionCommit, LeavesOtherItemsUntouched) {
  put("other", {{"title", "U"}, {"tags", listOfNames({"x"})}});
  const Item other = stored("other");
  const PropertyListDictionary values = other->values();
  edit({"A"});
  typeTitle("typed");
  click(0, 0);
  plugin->commitEditing();
  EXPECT_EQ(stored("other"), other);
  EXPECT_EQ(other->values(), values);
}

TEST_F(EditingSessionCommit, OfTheSameIDTwiceLeavesTheLaterCopyInTheStore) {
  put("A", {});
  plugin->setEditedEPGUniqueIDs({"A", "A"});
  edited(0)->set("title", "first");
  edited(1)->set("title", "second");
  plugin->commitEditing();
  EXPECT_EQ(stored("A"), edited(1));
  EXPECT_EQ(storedTitle("A"), "second");
}

TEST_F(EditingSessionCommit, OfTheSameIDTwiceAroundAnotherLeavesTheLaterCopyInTheStore) {
  plugin->setEditedEPGUniqueIDs({"A", "B", "A"});
  plugin->commitEditing();
  EXPECT_EQ(stored("A"), edited(2));
  EXPECT_EQ(stored("B"), edited(1));
  EXPECT_EQ(plugin->epgItems()->size(), 2u);
}

TEST_F(EditingSessionCommit, PutsAUniqueIDRightThatDifferedFromTheKey) {
  put("A", {{"title", "T"}});
  plugin->duplicateEPGItemWithUniqueID("A", "B");
  environment.waitForThreads();
  put("A", {{"uniqueID", "A"}});
  plugin->duplicateEPGItemWithUniqueID("A", "B");
  ASSERT_EQ(textOf(*stored("B"), "uniqueID"), "A");
  edit({"B"});
  plugin->commitEditing();
  EXPECT_EQ(textOf(*stored("B"), "uniqueID"), "B");
  EXPECT_EQ(textOf(*stored("A"), "uniqueID"), "A");
}

TEST_F(EditingSessionCommit, FilesUnderTheUniqueIDInTheWorkingCopy) {
  put("A", {{"title", "T"}});
  const Item a = stored("A");
  plugin->setEditedEPGUniqueIDs({"A"});
  edited(0)->set(ZRLEPGDSUniqueIDKey, "B");
  plugin->commitEditing();
  EXPECT_EQ(stored("B"), edited(0));
  EXPECT_EQ(stored("A"), a);
}

TEST_F(EditingSessionCommit, FilesNowhereAWorkingCopyThatLostItsUniqueID) {
  plugin->setEditedEPGUniqueIDs({"A", "B", "C"});
  edited(0)->remove(ZRLEPGDSUniqueIDKey);
  edited(1)->set(ZRLEPGDSUniqueIDKey, PropertyList::fromInteger(3));
  EXPECT_TRUE(plugin->commitEditing());
  EXPECT_EQ(plugin->epgItems()->uniqueIDs(), Names({"C"}));
}

TEST_F(EditingSessionCommit, ReplacesAStoreEntryThatIsNoItem) {
  writeStoreFile({{"A", "just a string"}, {"B", PropertyList::fromInteger(1)}});
  startWithEditor();
  edit({"A"});
  plugin->commitEditing();
  environment.waitForThreads();
  EXPECT_TRUE(stored("A"));
  EXPECT_EQ(*storeFile().find("B"), PropertyList::fromInteger(1));
  EXPECT_TRUE(storeFile().find("A")->asDictionary());
}

TEST_F(EditingSessionCommit, BringsBackAnEntryThatWasRemovedWhileUnderEdit) {
  put("A", {{"title", "T"}});
  edit({"A"});
  plugin->removeEPGItemsWithUniqueIDs({"A"});
  EXPECT_FALSE(stored("A"));
  plugin->commitEditing();
  EXPECT_EQ(storedTitle("A"), "T");
}

TEST_F(EditingSessionCommit, KeepsKeysAndValuesThatNobodyHereKnows) {
  const PropertyList nested(
      dictionaryOf({{"list", PropertyList(PropertyList::Array{"a", PropertyList::fromReal(1.5)})}}));
  writeStoreFile({{"A", PropertyList(dictionaryOf({{"title", "T"},
                                                   {"rating", PropertyList::fromInteger(12)},
                                                   {"nested", nested},
                                                   {"data", PropertyList::fromData(std::string("\0\xFF", 2))},
                                                   {"date", PropertyList::fromDate(Instant{86400})},
                                                   {"", "nameless"}}))}});
  startWithEditor();
  edit({"A"});
  typeTitle("typed");
  click(0, 1);
  plugin->commitEditing();
  environment.waitForThreads();
  const PropertyListDictionary file = storeFile();
  EXPECT_EQ(*file.find("A"), PropertyList(dictionaryOf({{"uniqueID", "A"},
                                                        {"title", "typed"},
                                                        {"description", ""},
                                                        {"imageURL", ""},
                                                        {"tags", listOfNames({"x"})},
                                                        {"rating", PropertyList::fromInteger(12)},
                                                        {"nested", nested},
                                                        {"data", PropertyList::fromData(std::string("\0\xFF", 2))},
                                                        {"date", PropertyList::fromDate(Instant{86400})},
                                                        {"", "nameless"}})));
}

TEST_F(EditingSessionCommit, ReadsAKnownKeyOfAnotherTypeAsAbsent) {
  put("A", {{"title", PropertyList::fromInteger(3)}, {"tags", "no list"}});
  edit({"A"});
  EXPECT_EQ(views->title.stringValue(), "");
  EXPECT_EQ(stateInRow(0), TagStateOff);
  plugin->commitEditing();
  EXPECT_EQ(valueOf(*stored("A"), "title"), PropertyList(""));
  EXPECT_EQ(valueOf(*stored("A"), "tags"), PropertyList("no list"));
}

TEST_F(EditingSessionCommit, LeavesDifferentValuesAloneWhoseMixedFieldNobodyTouched) {
  put("A", {{"title", "T"}});
  put("B", {{"title", "U"}});
  edit({"A", "B"});
  EXPECT_EQ(views->title.placeholderString(), "<Multiple Values>");
  plugin->commitEditing();
  EXPECT_EQ(storedTitle("A"), "T");
  EXPECT_EQ(storedTitle("B"), "U");
}

TEST_F(EditingSessionCommit, KeepsTheSessionOpenOnTheSameWorkingCopies) {
  edit({"A", "B"});
  const auto list = plugin->editedItems();
  const Item a = edited(0);
  plugin->commitEditing();
  EXPECT_EQ(plugin->editedItems(), list);
  EXPECT_EQ(list->size(), 2u);
  EXPECT_EQ(edited(0), a);
}

TEST_F(EditingSessionCommit, RefreshesNoView) {
  edit({"A"});
  typeTitle("typed");
  views->journal.clear();
  plugin->commitEditing();
  EXPECT_EQ(views->journal, Journal());
}

TEST_F(EditingSessionCommit, TellsTheDelegateNothing) {
  edit({"A"});
  plugin->commitEditing();
  environment.waitForThreads();
  EXPECT_EQ(delegate.timesAsked(), 0u);
}

TEST_F(EditingSessionCommit, AnswersYesAndStaysInMemoryWhenTheSaveFails) {
  removeAll(dataFolder);
  edit({"A"});
  typeTitle("typed");
  EXPECT_TRUE(plugin->commitEditing());
  environment.waitForThreads();
  EXPECT_EQ(storedTitle("A"), "typed");
  EXPECT_FALSE(plugin->busyWriting());
  EXPECT_TRUE(environment.logged().empty());
}

TEST_F(EditingSessionCommit, AnswersYesWhenTheDiskIsFull) {
  environment.failOn(Call::Write, "EPGItems.plist", ENOSPC);
  edit({"A"});
  EXPECT_TRUE(plugin->commitEditing());
  environment.waitForThreads();
  EXPECT_FALSE(exists(storePath()));
  EXPECT_TRUE(environment.logged().empty());
  EXPECT_EQ(delegate.timesAsked(), 0u);
}

TEST_F(EditingSessionCommit, WithoutAStoreFilesNothingAndAnswersYes) {
  edit({"A"});
  plugin->setEpgItems(nullptr);
  EXPECT_TRUE(plugin->commitEditing());
  environment.waitForThreads();
  EXPECT_EQ(environment.threadsStarted(), 0u);
}

TEST_F(EditingSessionCommit, WhileASaveIsWritingStaysInMemoryUntilTheNextSave) {
  Gate gate;
  environment.holdBefore(Call::Open, "EPGItems.plist", gate);
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  ASSERT_TRUE(plugin->busyWriting());

  edit({"A"});
  typeTitle("typed");
  EXPECT_TRUE(plugin->commitEditing());
  gate.open();
  environment.waitForThreads();
  EXPECT_EQ(environment.threadsStarted(), 1u);
  EXPECT_EQ(storedIDs(), Names());
  EXPECT_EQ(storedTitle("A"), "typed");

  save();
  EXPECT_EQ(storedIDs(), Names({"A"}));
}

TEST_F(EditingSessionCommit, NeverWaitsForTheDisk) {
  Gate gate;
  environment.holdBefore(Call::Write, "EPGItems.plist", gate);
  edit({"A"});
  EXPECT_TRUE(plugin->commitEditing());
  gate.waitUntilHolding();  // Only now has the writing begun, and the commit has long returned.
  EXPECT_TRUE(stored("A"));
}

}  // namespace
}  // namespace epg::test
