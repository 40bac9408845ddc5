#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/ShardedItemStore.h"
#include "tests/support/SessionTest.h"

namespace epg::test {
namespace {

class EditingSessionWorkingCopies : public SessionTest {
 protected:
  std::vector<std::string> editedIDs() const {
    std::vector<std::string> ids;
    for (std::size_t i = 0; i < plugin->editedItems()->size(); ++i) {
      ids.push_back(textOf(*edited(i), ZRLEPGDSUniqueIDKey).value_or("(none)"));
    }
    return ids;
  }
};

TEST_F(EditingSessionWorkingCopies, AreNoneAfterCreation) {
  ASSERT_TRUE(plugin->editedItems());
  EXPECT_EQ(plugin->editedItems()->size(), 0u);
}

TEST_F(EditingSessionWorkingCopies, StandInTheOrderOfTheNamedIDs) {
  put("A", {});
  put("B", {});
  plugin->setEditedEPGUniqueIDs({"B", "new", "A"});
  EXPECT_EQ(editedIDs(), Names({"B", "new", "A"}));
}

TEST_F(EditingSessionWorkingCopies, OfAStoredItemHoldItsEntries) {
  put("A", {{"uniqueID", "A"}, {"title", "T"}, {"tags", listOfNames({"x"})}});
  plugin->setEditedEPGUniqueIDs({"A"});
  EXPECT_EQ(edited(0)->values(), itemInStore("A"));
}

TEST_F(EditingSessionWorkingCopies, OfAnIDWithoutAnItemHoldOnlyTheID) {
  plugin->setEditedEPGUniqueIDs({"new"});
  EXPECT_EQ(edited(0)->values(), dictionaryOf({{"uniqueID", "new"}}));
}

TEST_F(EditingSessionWorkingCopies, AreNotTheStoredItems) {
  put("A", {{"uniqueID", "A"}});
  plugin->setEditedEPGUniqueIDs({"A"});
  EXPECT_NE(edited(0), stored("A"));
}

TEST_F(EditingSessionWorkingCopies, CreateNoItemInTheStore) {
  plugin->setEditedEPGUniqueIDs({"new"});
  EXPECT_FALSE(stored("new"));
  EXPECT_EQ(plugin->epgItems()->size(), 0u);
}

TEST_F(EditingSessionWorkingCopies, LeaveTheStoreAsItIs) {
  put("A", {{"title", "T"}});
  const Item before = stored("A");
  const PropertyListDictionary values = before->values();
  edit({"A", "A", "new"});
  click(0, 1);
  typeTitle("typed");
  EXPECT_EQ(stored("A"), before);
  EXPECT_EQ(before->values(), values);
  EXPECT_EQ(plugin->epgItems()->uniqueIDs(), Names({"A"}));
}

TEST_F(EditingSessionWorkingCopies, StartNoSave) {
  put("A", {});
  edit({"A"});
  click(0, 1);
  EXPECT_EQ(environment.threadsStarted(), 0u);
  EXPECT_FALSE(exists(storePath()));
}

TEST_F(EditingSessionWorkingCopies, ShareTheTagListWithTheStoredItem) {
  put("A", {{"tags", listOfNames({"x"})}});
  plugin->setEditedEPGUniqueIDs({"A"});
  const PropertyListDictionary copy = edited(0)->values();
  const PropertyListDictionary original = stored("A")->values();
  EXPECT_EQ(tagsValue(copy)->data(), tagsValue(original)->data());
}

TEST_F(EditingSessionWorkingCopies, GetTheKeyOfTheStoreAsTheirUniqueID) {
  put("A", {{"uniqueID", "somebody else"}, {"title", "T"}});
  plugin->setEditedEPGUniqueIDs({"A"});
  EXPECT_EQ(editedIDs(), Names({"A"}));
  EXPECT_EQ(textOf(*stored("A"), "uniqueID"), "somebody else");
}

TEST_F(EditingSessionWorkingCopies, GetAUniqueIDInPlaceOfAValueOfAnotherType) {
  put("A", {{"uniqueID", PropertyList::fromInteger(5)}});
  plugin->setEditedEPGUniqueIDs({"A"});
  EXPECT_EQ(valueOf(*edited(0), "uniqueID"), PropertyList("A"));
}

TEST_F(EditingSessionWorkingCopies, KeepWhatTheItemHoldsBesides) {
  const PropertyList nested(dictionaryOf({{"a", PropertyList(PropertyList::Array{PropertyList::fromReal(1.5)})}}));
  put("A", {{"rating", PropertyList::fromInteger(12)},
            {"first shown", PropertyList::fromDate(Instant{100})},
            {"thumbnail", PropertyList::fromData(std::string("\0\1", 2))},
            {"nested", nested},
            {"", PropertyList::fromBoolean(true)}});
  plugin->setEditedEPGUniqueIDs({"A"});
  EXPECT_EQ(valueOf(*edited(0), "rating"), PropertyList::fromInteger(12));
  EXPECT_EQ(valueOf(*edited(0), "first shown"), PropertyList::fromDate(Instant{100}));
  EXPECT_EQ(valueOf(*edited(0), "thumbnail"), PropertyList::fromData(std::string("\0\1", 2)));
  EXPECT_EQ(valueOf(*edited(0), "nested"), nested);
  EXPECT_EQ(valueOf(*edited(0), ""), PropertyList::fromBoolean(true));
}

TEST_F(EditingSessionWorkingCopies, OfTheSameIDTwiceAreTwo) {
  put("A", {{"title", "T"}});
  plugin->setEditedEPGUniqueIDs({"A", "A"});
  ASSERT_EQ(plugin->editedItems()->size(), 2u);
  EXPECT_NE(edited(0), edited(1));
  EXPECT_EQ(edited(0)->values(), edited(1)->values());
}

TEST_F(EditingSessionWorkingCopies, AreMadeAnewByNamingAgain) {
  put("A", {{"tags", listOfNames({"x"})}});
  edit({"A"});
  click(1, 1);
  ASSERT_EQ(tagsOf(*edited(0)), Names({"x", "y"}));
  plugin->setEditedEPGUniqueIDs({"A"});
  EXPECT_EQ(tagsOf(*edited(0)), Names({"x"}));
}

TEST_F(EditingSessionWorkingCopies, AreNoneAfterNamingNothing) {
  put("A", {});
  plugin->setEditedEPGUniqueIDs({"A"});
  plugin->setEditedEPGUniqueIDs({});
  EXPECT_EQ(plugin->editedItems()->size(), 0u);
}

TEST_F(EditingSessionWorkingCopies, TakeAnyStringForAnID) {
  const Names ids = {"", " ", "a/b", "../x", "Café", "\xF0\x9F\x8E\xAC", "line\nbreak", std::string("zero\0byte", 9)};
  plugin->setEditedEPGUniqueIDs(ids);
  EXPECT_EQ(editedIDs(), ids);
  plugin->commitEditing();
  for (const std::string& id : ids) EXPECT_TRUE(stored(id)) << id;
}

TEST_F(EditingSessionWorkingCopies, OfAStoreEntryThatIsNoItemAreNew) {
  writeStoreFile({{"A", "just a string"}});
  startWithEditor();
  plugin->setEditedEPGUniqueIDs({"A"});
  EXPECT_EQ(edited(0)->values(), dictionaryOf({{"uniqueID", "A"}}));
}

TEST_F(EditingSessionWorkingCopies, AreMadeFromTheStoreThatTheHostHasSet) {
  put("A", {{"title", "old store"}});
  const auto other = std::make_shared<ShardedItemStore>();
  other->setItem("A", itemTitled("new store"));
  plugin->setEpgItems(other);
  plugin->setEditedEPGUniqueIDs({"A"});
  EXPECT_EQ(textOf(*edited(0), "title"), "new store");
}

TEST_F(EditingSessionWorkingCopies, WithoutAStoreAreNew) {
  put("A", {{"title", "T"}});
  plugin->setEpgItems(nullptr);
  plugin->setEditedEPGUniqueIDs({"A"});
  EXPECT_EQ(edited(0)->values(), dictionaryOf({{"uniqueID", "A"}}));
}

TEST_F(EditingSessionWorkingCopies, AreShownInAnOpenEditor) {
  put("A", {{"title", "T"}, {"tags", listOfNames({"x"})}});
  put("B", {{"title", "T"}});
  edit({"A", "B"});
  EXPECT_EQ(views->title.stringValue(), "T");
  EXPECT_EQ(stateInRow(0), TagStateMixed);
  EXPECT_EQ(stateInRow(1), TagStateOff);
}

TEST_F(EditingSessionWorkingCopies, OfManyIDsAreAllMade) {
  Names ids;
  for (int i = 0; i < 20000; ++i) ids.push_back("entry " + std::to_string(i));
  plugin->setEditedEPGUniqueIDs(ids);
  EXPECT_EQ(editedIDs(), ids);
}

}  // namespace
}  // namespace epg::test
