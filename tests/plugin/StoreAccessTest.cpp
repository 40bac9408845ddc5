// The store and the list under edit as a host uses them.

#include <atomic>
#include <thread>

#include "store/ShardedItemStore.h"
#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StoreAccessTest : public PluginTest {};

TEST_F(StoreAccessTest, WhatTheHostChangesInTheStoreIsSaved) {
  plugin->epgItems()->setItem("E1", itemTitled("A"));
  save();
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
  plugin->epgItems()->item("E1")->set(ZRLEPGDSTitleKey, "B");
  save();
  EXPECT_EQ(dictionaryOf({{"E1", dictionaryOf({{ZRLEPGDSTitleKey, "B"}})}}), storeFile());
}

TEST_F(StoreAccessTest, TheStoreIsAlwaysTheSameObjectUntilItIsReplaced) {
  const auto store = plugin->epgItems();
  put("E1", {});
  plugin->removeEPGItemsWithUniqueIDs({"E1"});
  EXPECT_EQ(store, plugin->epgItems());
  const auto another = std::make_shared<ShardedItemStore>();
  plugin->setEpgItems(another);
  EXPECT_EQ(another, plugin->epgItems());
}

TEST_F(StoreAccessTest, AReplacedStoreIsWhatIsEditedSavedAndExported) {
  put("E1", {});
  const auto another = std::make_shared<ShardedItemStore>(dictionaryOf({{"E2", dictionaryOf({})}}));
  plugin->setEpgItems(another);
  plugin->duplicateEPGItemWithUniqueID("E2", "E3");
  environment.waitForThreads();
  EXPECT_THAT(storedIDs(), ElementsAre("E2", "E3"));
  exportAndWait({eventAt("E1", 0), eventAt("E3", 1330905600)});
  EXPECT_EQ(1U, dayFile().programs.size());
}

TEST_F(StoreAccessTest, AReadStoreStaysValidAfterItWasReplaced) {
  put("E1", {{ZRLEPGDSTitleKey, "A"}});
  const auto held = plugin->epgItems();
  plugin->setEpgItems(std::make_shared<ShardedItemStore>());
  EXPECT_EQ("A", textOf(*held->item("E1"), ZRLEPGDSTitleKey));
}

TEST_F(StoreAccessTest, WithoutAStoreThereAreNoItemsAndNothingIsSaved) {
  put("E1", {});
  plugin->setEpgItems(nullptr);
  plugin->removeEPGItemsWithUniqueIDs({"E1"});
  plugin->duplicateEPGItemWithUniqueID("E1", "E2");
  plugin->saveEPGItemsToFile();
  plugin->setEditedEPGUniqueIDs({"E1"});
  EXPECT_TRUE(plugin->commitEditing());
  environment.waitForThreads();
  EXPECT_FALSE(exists(storePath()));
  exportAndWait({eventAt("E1", 1330905600)});
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
  EXPECT_THAT(dayFile().programs, IsEmpty());
}

TEST_F(StoreAccessTest, TheListUnderEditCanBeReplacedAndRead) {
  const auto list = listOf({itemTitled("A")});
  plugin->setEditedItems(list);
  EXPECT_EQ(list, plugin->editedItems());
  plugin->setEditedItems(nullptr);
  EXPECT_FALSE(plugin->editedItems());
  EXPECT_TRUE(plugin->commitEditing());
}

TEST_F(StoreAccessTest, AccessorsMayBeUsedWhileAnotherThreadReplacesTheirFields) {
  const auto withItem = [] {
    auto store = std::make_shared<ShardedItemStore>();
    store->setItem("E1", itemTitled("A"));
    return store;
  };
  plugin->setEpgItems(withItem());
  plugin->setEditedItems(listOf({itemTitled("A")}));
  std::atomic<bool> done{false};
  std::thread reader([&] {
    while (!done) {
      const auto store = plugin->epgItems();
      EXPECT_EQ("A", textOf(*store->item("E1"), ZRLEPGDSTitleKey));
      EXPECT_EQ(1U, plugin->editedItems()->size());
    }
  });
  for (int i = 0; i < 1000; ++i) {
    plugin->setEpgItems(withItem());
    plugin->setEditedItems(listOf({itemTitled("A")}));
  }
  done = true;
  reader.join();
}

}  // namespace
}  // namespace epg::test
