// An export reads the store as it is at that moment, not as it was when the host asked.

#include <utility>

#include "store/ShardedItemStore.h"
#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;

class LiveStoreTest : public PluginTest {
 protected:
  LiveStoreTest() {
    put("E1", {{ZRLEPGDSTitleKey, "One"}});
    put("E2", {{ZRLEPGDSTitleKey, "Two"}});
  }
  const std::vector<EPGEvent> events{eventAt("E1", 1330905600), eventAt("E2", 1330909200)};
};

TEST_F(LiveStoreTest, ChangesBetweenTheCallAndTheWritingAreExported) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(events, "Test");
  put("E1", {{ZRLEPGDSTitleKey, "One changed"}});
  plugin->epgItems()->item("E2")->set(ZRLEPGDSTitleKey, "Two changed");
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(dayFile().titles(), ElementsAre("One changed", "Two changed"));
}

TEST_F(LiveStoreTest, AnItemRemovedInBetweenIsLeftOutAndOneAddedIsThere) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents({eventAt("E1", 1330905600), eventAt("E3", 1330909200)}, "Test");
  plugin->epgItems()->removeItem("E1");
  put("E3", {{ZRLEPGDSTitleKey, "Three"}});
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(dayFile().titles(), ElementsAre("Three"));
}

TEST_F(LiveStoreTest, ACommitInBetweenIsExported) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(events, "Test");
  plugin->setEditedEPGUniqueIDs({"E1"});
  plugin->editedItems()->at(0)->set(ZRLEPGDSTitleKey, "Edited");
  plugin->commitEditing();
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(dayFile().titles(), ElementsAre("Edited", "Two"));
}

TEST_F(LiveStoreTest, WorkingCopiesThatAreNotCommittedAreNotExported) {
  plugin->setEditedEPGUniqueIDs({"E1"});
  plugin->editedItems()->at(0)->set(ZRLEPGDSTitleKey, "Not committed");
  exportAndWait(events);
  EXPECT_THAT(dayFile().titles(), ElementsAre("One", "Two"));
}

/// A store that runs something when an item is looked up.
class WatchedStore : public ShardedItemStore {
 public:
  std::function<void(const std::string&)> duringLookup;

  std::shared_ptr<EPGItem> item(const std::string& uniqueID) const override {
    if (duringLookup) duringLookup(uniqueID);
    return ShardedItemStore::item(uniqueID);
  }
  std::vector<std::optional<PropertyListDictionary>> values(
      const std::vector<const std::string*>& uniqueIDs) const override {
    return EPGItemStore::values(uniqueIDs);
  }
};

TEST_F(LiveStoreTest, AnItemChangedWhileTheFileIsMadeIsReadWhenItsTurnComes) {
  const auto store = std::make_shared<WatchedStore>();
  store->setItem("E1", itemTitled("One"));
  store->setItem("E2", itemTitled("Two"));
  plugin->setEpgItems(store);
  Gate gate;
  store->duringLookup = [pass = gate.passing()](const std::string& uniqueID) {
    if (uniqueID == "E2") pass();
  };
  plugin->exportEvents(events, "Test");
  gate.waitUntilHolding();
  store->setItem("E1", itemTitled("too late"));
  store->setItem("E2", itemTitled("in time"));
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(dayFile().titles(), ElementsAre("One", "in time"));
}

TEST_F(LiveStoreTest, AnItemIsNeverReadHalfChanged) {
  const auto item = itemWith({{ZRLEPGDSTitleKey, "0"}, {ZRLEPGDSDescriptionKey, "0"}});
  plugin->epgItems()->setItem("E1", item);
  environment.setFlushesToDisk(false);
  const std::vector<EPGEvent> many(200, eventAt("E1", 1330905600));
  for (int round = 0; round < 20; ++round) {
    plugin->exportEvents(many, "Test");
    for (int change = 0; change < 200; ++change) {
      const PropertyList number(std::to_string(round * 1000 + change));
      item->setValues({{ZRLEPGDSTitleKey, number}, {ZRLEPGDSDescriptionKey, number}});
    }
    environment.waitForThreads();
    for (const DayFileProgram& program : dayFile().programs) ASSERT_EQ(program.title, program.description);
  }
}

}  // namespace
}  // namespace epg::test
