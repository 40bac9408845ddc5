// The object lives until the last of its threads has ended, and no longer.

#include <chrono>
#include <new>
#include <thread>

#include "store/ShardedItemStore.h"
#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;

class LifetimeTest : public PluginTest {
 protected:
  LifetimeTest() : end(plugin->end()) { put("E1", {{ZRLEPGDSTitleKey, "One"}}); }

  bool isGone() const { return end->waitFor(std::chrono::milliseconds(0)); }

  std::shared_ptr<ObjectEnd> end;
  const std::vector<EPGEvent> events{eventAt("E1", 1330905600)};
};

TEST_F(LifetimeTest, WithoutThreadsTheObjectGoesWithItsLastReference) {
  EXPECT_FALSE(isGone());
  auto second = plugin;
  plugin.reset();
  EXPECT_FALSE(isGone());
  second.reset();
  EXPECT_TRUE(isGone());
  end->wait();
}

TEST_F(LifetimeTest, ASaveKeepsTheObjectUntilItsFileIsWhole) {
  Gate gate;
  environment.holdBefore(Call::Flush, "EPGItems.plist", gate);
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  plugin.reset();
  EXPECT_FALSE(isGone());
  EXPECT_FALSE(exists(storePath()));
  gate.open();
  end->wait();
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
}

TEST_F(LifetimeTest, ASaveThatHasNotBegunKeepsTheObjectToo) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->saveEPGItemsToFile();
  plugin.reset();
  EXPECT_FALSE(isGone());
  gate.open();
  end->wait();
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
}

TEST_F(LifetimeTest, AnExportKeepsTheObjectUntilItsReportWasTaken) {
  Gate gate;
  bool livedDuringReport = false;
  delegate.duringReport = [&, pass = gate.passing()] {
    pass();
    livedDuringReport = !isGone();
  };
  plugin->exportEvents(events, "Test");
  gate.waitUntilHolding();
  plugin.reset();
  EXPECT_FALSE(isGone());
  gate.open();
  end->wait();
  EXPECT_TRUE(livedDuringReport);
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
  EXPECT_THAT(dayFile().titles(), ElementsAre("One"));
}

TEST_F(LifetimeTest, TheLastOfSeveralThreadsDecides) {
  Gate saving;
  Gate exporting;
  environment.holdBefore(Call::Write, "EPGItems.plist", saving);
  environment.holdBefore(Call::Write, "20120304.xml", exporting);
  plugin->saveEPGItemsToFile();
  plugin->exportEvents(events, "Test");
  saving.waitUntilHolding();
  exporting.waitUntilHolding();
  plugin.reset();
  exporting.open();
  delegate.waitForReports(1);
  EXPECT_FALSE(isGone());
  saving.open();
  end->wait();
  EXPECT_TRUE(exists(storePath()));
  EXPECT_TRUE(exists(dayFilePath()));
}

TEST_F(LifetimeTest, DroppingTheObjectNeitherWaitsNorStopsAnything) {
  Gate gate;
  environment.holdBefore(Call::Write, "20120304.xml", gate);
  plugin->exportEvents(events, "Test");
  gate.waitUntilHolding();
  plugin.reset();  // With the thread held, waiting here would never end.
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
}

TEST_F(LifetimeTest, TheStoreGoesWithTheObjectUnlessTheHostHoldsIt) {
  const std::weak_ptr<EPGItemStore> watched = plugin->epgItems();
  auto held = plugin->epgItems();
  plugin.reset();
  EXPECT_FALSE(watched.expired());
  EXPECT_EQ("One", textOf(*held->item("E1"), ZRLEPGDSTitleKey));
  held.reset();
  EXPECT_TRUE(watched.expired());
}

TEST_F(LifetimeTest, WhenTheEndIsToldEverythingTheObjectOwnedIsGone) {
  class Watched : public ShardedItemStore {
   public:
    explicit Watched(bool& gone) : gone_(gone) {}
    ~Watched() override { gone_ = true; }

   private:
    bool& gone_;
  };
  bool storeIsGone = false;
  plugin->setEpgItems(std::make_shared<Watched>(storeIsGone));
  Gate gate;
  environment.holdBefore(Call::Write, "EPGItems.plist", gate);
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  plugin.reset();
  EXPECT_FALSE(storeIsGone);
  gate.open();
  end->wait();
  EXPECT_TRUE(storeIsGone);
}

TEST_F(LifetimeTest, ManyMayWaitForTheEnd) {
  std::vector<std::thread> waiting;
  for (int i = 0; i < 4; ++i) waiting.emplace_back([told = end] { told->wait(); });
  plugin.reset();
  for (std::thread& thread : waiting) thread.join();
  EXPECT_TRUE(isGone());
}

TEST_F(LifetimeTest, AHostMayDropTheObjectFromInsideTheReport) {
  delegate.duringReport = [&] { plugin.reset(); };
  plugin->exportEvents(events, "Test");
  end->wait();
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
}

TEST_F(LifetimeTest, WithoutAThreadToGiveTheWorkIsDoneBeforeTheCallReturns) {
  class WithoutThreads : public Environment {
   public:
    void detachThread(std::function<void()> body) override { body(); }
  } withoutThreads;
  {
    const auto another = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, dataFolder, withoutThreads);
    another->setDelegate(&delegate);
    another->epgItems()->setItem("E1", itemTitled("One"));
    another->saveEPGItemsToFile();
    EXPECT_THAT(storedIDs(), ElementsAre("E1"));
    another->exportEvents(events, "Test");
    EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
    EXPECT_FALSE(another->busyExporting());
    EXPECT_FALSE(another->busyWriting());
  }
}

/// A system that has no memory to start a thread with.
class WithoutMemory : public Environment {
 public:
  bool refuses = true;
  std::vector<std::string> lines;
  void detachThread(std::function<void()> body) override {
    if (refuses) throw std::bad_alloc();
    body();
  }
  void log(const std::string& line) override { lines.push_back(line); }
};

TEST_F(LifetimeTest, ASaveThatCannotBeStartedIsLoggedAndTheNextOneBringsAllToDisk) {
  WithoutMemory withoutMemory;
  const auto another = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, dataFolder, withoutMemory);
  another->setEditedEPGUniqueIDs({"E1"});
  EXPECT_TRUE(another->commitEditing());
  another->duplicateEPGItemWithUniqueID("E1", "E2");
  another->removeEPGItemsWithUniqueIDs({"E1"});
  const char* const line = "An error occured while trying to write the EPG items to disk (std::bad_alloc)";
  EXPECT_THAT(withoutMemory.lines, ElementsAre(line, line, line));
  EXPECT_FALSE(another->busyWriting());
  withoutMemory.refuses = false;
  another->saveEPGItemsToFile();
  EXPECT_THAT(storedIDs(), ElementsAre("E2"));
}

TEST_F(LifetimeTest, AnExportThatCannotBeStartedIsReportedAndLeavesTheObjectIdle) {
  WithoutMemory withoutMemory;
  const auto another = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, dataFolder, withoutMemory);
  another->setDelegate(&delegate);
  another->exportEvents(events, "Test");
  EXPECT_THAT(delegate.outcomes(), ElementsAre(writeErrorReport));
  EXPECT_FALSE(another->busyExporting());
  withoutMemory.refuses = false;
  another->exportEvents(events, "Test");
  EXPECT_THAT(delegate.outcomes(), ElementsAre(writeErrorReport, "YES"));
}

}  // namespace
}  // namespace epg::test
