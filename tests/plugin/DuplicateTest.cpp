#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;

class DuplicateTest : public PluginTest {
 protected:
  DuplicateTest() {
    put("E1", {{ZRLEPGDSUniqueIDKey, "E1"},
               {ZRLEPGDSTitleKey, "Morning Prayer"},
               {ZRLEPGDSTagsKey, PropertyList::Array{"Live", "Family"}},
               {"rating", PropertyList::fromInteger(12)}});
  }
  void duplicate(const std::string& source, const std::string& target) {
    plugin->duplicateEPGItemWithUniqueID(source, target);
    environment.waitForThreads();
  }
};

TEST_F(DuplicateTest, FilesACopyOfTheWholeItemUnderTheTargetAndSaves) {
  duplicate("E1", "E2");
  EXPECT_EQ(itemInStore("E1"), itemInStore("E2"));
  EXPECT_EQ(*storeFile().find("E1"), *storeFile().find("E2"));
}

TEST_F(DuplicateTest, FromAnIDWithoutAnItemChangesAndWritesNothing) {
  put("E2", {{ZRLEPGDSTitleKey, "stays"}});
  const std::size_t before = environment.threadsStarted();
  duplicate("E9", "E2");
  duplicate("E9", "E9");
  EXPECT_EQ(before, environment.threadsStarted());
  EXPECT_FALSE(exists(storePath()));
  EXPECT_EQ(dictionaryOf({{ZRLEPGDSTitleKey, "stays"}}), itemInStore("E2"));
  EXPECT_EQ(2U, plugin->epgItems()->size());
}

TEST_F(DuplicateTest, OntoAnIDWithAnItemReplacesThatItem) {
  put("E2", {{ZRLEPGDSUniqueIDKey, "E2"}, {ZRLEPGDSDescriptionKey, "gone"}});
  duplicate("E1", "E2");
  EXPECT_EQ(itemInStore("E1"), itemInStore("E2"));
  EXPECT_THAT(storedIDs(), ElementsAre("E1", "E2"));
}

TEST_F(DuplicateTest, TheCopyGoesOnNamingItsSource) {
  duplicate("E1", "E2");
  EXPECT_EQ("E1", textOf(*plugin->epgItems()->item("E2"), ZRLEPGDSUniqueIDKey));
  EXPECT_EQ("E1", *stringValue(*storeFile().find("E2")->asDictionary(), ZRLEPGDSUniqueIDKey));
}

TEST_F(DuplicateTest, EditingTheTargetSetsItsUniqueIDRight) {
  duplicate("E1", "E2");
  plugin->setEditedEPGUniqueIDs({"E2"});
  plugin->commitEditing();
  environment.waitForThreads();
  EXPECT_EQ("E2", *stringValue(*storeFile().find("E2")->asDictionary(), ZRLEPGDSUniqueIDKey));
  EXPECT_EQ("E1", *stringValue(*storeFile().find("E1")->asDictionary(), ZRLEPGDSUniqueIDKey));
}

TEST_F(DuplicateTest, ALaterCommitOfTheSourceDoesNotChangeTheCopy) {
  duplicate("E1", "E2");
  const PropertyListDictionary copied = itemInStore("E2");
  plugin->setEditedEPGUniqueIDs({"E1"});
  plugin->editedItems()->at(0)->set(ZRLEPGDSTitleKey, "Changed");
  plugin->editedItems()->at(0)->set(ZRLEPGDSTagsKey, PropertyList::Array{});
  plugin->commitEditing();
  environment.waitForThreads();
  EXPECT_EQ("Changed", textOf(*plugin->epgItems()->item("E1"), ZRLEPGDSTitleKey));
  EXPECT_EQ(copied, itemInStore("E2"));
  EXPECT_EQ(PropertyList(copied), *storeFile().find("E2"));
}

TEST_F(DuplicateTest, ALaterChangeOfTheCopyDoesNotChangeTheSource) {
  duplicate("E1", "E2");
  plugin->epgItems()->item("E2")->set(ZRLEPGDSTitleKey, "Changed");
  EXPECT_EQ("Morning Prayer", textOf(*plugin->epgItems()->item("E1"), ZRLEPGDSTitleKey));
}

TEST_F(DuplicateTest, OntoItselfReplacesTheItemByACopyAndSaves) {
  const auto before = plugin->epgItems()->item("E1");
  const PropertyListDictionary values = before->values();
  duplicate("E1", "E1");
  EXPECT_NE(before, plugin->epgItems()->item("E1"));
  EXPECT_EQ(values, itemInStore("E1"));
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
}

TEST_F(DuplicateTest, NeverChangesAnItemThatIsInTheStore) {
  put("E2", {{ZRLEPGDSTitleKey, "held"}});
  const auto source = plugin->epgItems()->item("E1");
  const auto replaced = plugin->epgItems()->item("E2");
  duplicate("E1", "E2");
  EXPECT_EQ(source, plugin->epgItems()->item("E1"));
  EXPECT_EQ(dictionaryOf({{ZRLEPGDSTitleKey, "held"}}), replaced->values());
}

TEST_F(DuplicateTest, AnItemWithoutAnyValueIsDuplicatedToo) {
  put("empty", {});
  duplicate("empty", "copy");
  EXPECT_TRUE(itemInStore("copy").empty());
  EXPECT_THAT(storedIDs(), ElementsAre("E1", "copy", "empty"));
}

TEST_F(DuplicateTest, AnAbsentKeyAndAnEmptyStringStayApart) {
  put("source", {{ZRLEPGDSTitleKey, ""}});
  duplicate("source", "copy");
  EXPECT_EQ(PropertyList(dictionaryOf({{ZRLEPGDSTitleKey, ""}})), *storeFile().find("copy"));
}

TEST_F(DuplicateTest, IDsMayBeAnyString) {
  duplicate("E1", "");
  duplicate("", "it's <&> \"E\"\n😀");
  EXPECT_THAT(storedIDs(), ElementsAre("", "E1", "it's <&> \"E\"\n😀"));
}

}  // namespace
}  // namespace epg::test
