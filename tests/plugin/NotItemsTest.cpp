// Entries of the store that are no dictionaries are no items, and are written back as they were.

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotItemsTest : public PluginTest {
 protected:
  NotItemsTest() {
    writeStoreFile({{"array", PropertyList::Array{PropertyList(dictionaryOf({{ZRLEPGDSTitleKey, "no item"}}))}},
                    {"item", dictionaryOf({{ZRLEPGDSTitleKey, "an item"}})},
                    {"number", PropertyList::fromInteger(7)},
                    {"text", "no item"}});
    before = contentOf(storePath());
    start();
  }

  std::string before;
};

TEST_F(NotItemsTest, AreWrittenBackAsTheyWere) {
  save();
  EXPECT_EQ(before, contentOf(storePath()));
}

TEST_F(NotItemsTest, DoNotCountAsItems) {
  EXPECT_THAT(plugin->epgItems()->uniqueIDs(), ElementsAre("item"));
  EXPECT_EQ(1U, plugin->epgItems()->size());
}

TEST_F(NotItemsTest, AreNotExported) {
  exportAndWait({eventAt("array", 0), eventAt("number", 1), eventAt("text", 2)});
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
  EXPECT_THAT(dayFile().programs, IsEmpty());
}

TEST_F(NotItemsTest, AreNotRemoved) {
  plugin->removeEPGItemsWithUniqueIDs({"array", "number", "text"});
  environment.waitForThreads();
  EXPECT_EQ(before, contentOf(storePath()));
}

TEST_F(NotItemsTest, AreNotDuplicated) {
  const std::size_t threads = environment.threadsStarted();
  plugin->duplicateEPGItemWithUniqueID("text", "copy");
  plugin->duplicateEPGItemWithUniqueID("number", "item");
  EXPECT_EQ(threads, environment.threadsStarted());
  EXPECT_EQ(before, contentOf(storePath()));
}

TEST_F(NotItemsTest, GiveWayToAnItemThatIsFiledInTheirPlace) {
  plugin->duplicateEPGItemWithUniqueID("item", "text");
  environment.waitForThreads();
  EXPECT_EQ(*storeFile().find("item"), *storeFile().find("text"));
  EXPECT_THAT(storedIDs(), ElementsAre("array", "item", "number", "text"));
}

TEST_F(NotItemsTest, EditingOneMakesANewItem) {
  plugin->setEditedEPGUniqueIDs({"number"});
  plugin->commitEditing();
  environment.waitForThreads();
  EXPECT_EQ(PropertyList(dictionaryOf({{ZRLEPGDSUniqueIDKey, "number"}})), *storeFile().find("number"));
}

}  // namespace
}  // namespace epg::test
