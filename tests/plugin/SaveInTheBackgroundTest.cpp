// Saves that are still under way while the host goes on.

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;

class SaveInTheBackgroundTest : public PluginTest {};

TEST_F(SaveInTheBackgroundTest, TheHostNeverWaitsForTheDisk) {
  put("E1", {});
  Gate gate;
  environment.holdBefore(Call::Open, "EPGItems.plist", gate);
  plugin->removeEPGItemsWithUniqueIDs({});
  gate.waitUntilHolding();
  EXPECT_FALSE(exists(storePath()));
  EXPECT_TRUE(plugin->busyWriting());
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
  EXPECT_FALSE(plugin->busyWriting());
}

TEST_F(SaveInTheBackgroundTest, ASaveThatIsAskedForWhileOneIsWritingIsDropped) {
  put("E1", {});
  put("gone", {});
  Gate gate;
  environment.holdBefore(Call::Write, "EPGItems.plist", gate);
  plugin->removeEPGItemsWithUniqueIDs({"gone"});
  gate.waitUntilHolding();
  const std::size_t threads = environment.threadsStarted();

  plugin->duplicateEPGItemWithUniqueID("E1", "E2");

  EXPECT_EQ(threads, environment.threadsStarted());
  gate.open();
  environment.waitForThreads();
  EXPECT_EQ(threads, environment.threadsStarted()) << "a dropped save is not tried again";
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
  EXPECT_THAT(plugin->epgItems()->uniqueIDs(), ElementsAre("E1", "E2"));

  save();
  EXPECT_THAT(storedIDs(), ElementsAre("E1", "E2"));
}

TEST_F(SaveInTheBackgroundTest, TwoSavesCanWriteAtOnceBeforeTheFirstHasBegun) {
  put("E1", {});
  Gate begin;
  environment.holdBefore(Call::StartThread, "", begin);
  plugin->saveEPGItemsToFile();
  begin.waitUntilHolding(1);
  EXPECT_FALSE(plugin->busyWriting());
  put("E2", {});
  plugin->saveEPGItemsToFile();
  begin.waitUntilHolding(2);
  Gate writing;
  environment.holdBefore(Call::Write, "EPGItems.plist", writing);
  begin.open();
  writing.waitUntilHolding(2);
  EXPECT_TRUE(plugin->busyWriting());
  writing.open();
  environment.waitForThreads();
  EXPECT_FALSE(plugin->busyWriting());
  const auto ids = storedIDs();
  EXPECT_TRUE(ids == std::vector<std::string>{"E1"} || ids == (std::vector<std::string>{"E1", "E2"}));
  EXPECT_THAT(namesIn(dataFolder), ElementsAre("EPGItems.plist", "Test.epgconf"));
}

TEST_F(SaveInTheBackgroundTest, OfTwoSavesAtOnceTheOneWrittenLastStandsEvenIfItIsTheOlder) {
  put("E1", {});
  Gate older;
  environment.holdBefore(Call::StartThread, "", older);
  plugin->saveEPGItemsToFile();
  older.waitUntilHolding();
  environment.letAllCallsPass();
  put("E2", {});
  plugin->saveEPGItemsToFile();
  environment.waitForReplacements(1);
  EXPECT_THAT(storedIDs(), ElementsAre("E1", "E2"));
  older.open();
  environment.waitForReplacements(2);
  environment.waitForThreads();
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
}

TEST_F(SaveInTheBackgroundTest, WritesTheStoreAsItWasWhenTheSaveWasAskedFor) {
  put("E1", {{ZRLEPGDSTitleKey, "before"}});
  put("E2", {});
  Gate begin;
  environment.holdBefore(Call::StartThread, "", begin);
  plugin->saveEPGItemsToFile();
  plugin->epgItems()->setItem("E1", itemTitled("after"));
  plugin->epgItems()->removeItem("E2");
  put("E3", {});
  begin.open();
  environment.waitForThreads();
  EXPECT_EQ(dictionaryOf({{"E1", dictionaryOf({{ZRLEPGDSTitleKey, "before"}})}, {"E2", dictionaryOf({})}}),
            storeFile());
}

TEST_F(SaveInTheBackgroundTest, WritesTheStoreThatWasThereEvenWhenTheHostReplacesIt) {
  put("E1", {});
  Gate begin;
  environment.holdBefore(Call::StartThread, "", begin);
  plugin->saveEPGItemsToFile();
  plugin->setEpgItems(nullptr);
  begin.open();
  environment.waitForThreads();
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
}

TEST_F(SaveInTheBackgroundTest, AReaderFindsTheOldFileUntilTheNewOneIsWhole) {
  put("E1", {});
  save();
  const std::string old = contentOf(storePath());
  put("E2", {});
  Gate gate;
  environment.holdBefore(Call::Flush, ".EPGItems.plist", gate);
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  EXPECT_EQ(old, contentOf(storePath()));
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(storedIDs(), ElementsAre("E1", "E2"));
}

TEST_F(SaveInTheBackgroundTest, ACommitIsDroppedLikeEveryOtherSaveButStaysInTheStore) {
  Gate gate;
  environment.holdBefore(Call::Write, "EPGItems.plist", gate);
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  plugin->setEditedEPGUniqueIDs({"E1"});
  EXPECT_TRUE(plugin->commitEditing());
  gate.open();
  environment.waitForThreads();
  EXPECT_TRUE(storeFile().empty());
  EXPECT_THAT(plugin->epgItems()->uniqueIDs(), ElementsAre("E1"));
}

TEST_F(SaveInTheBackgroundTest, AnExportGoesOnWhileASaveIsHeld) {
  put("E1", {});
  Gate gate;
  environment.holdBefore(Call::Write, "EPGItems.plist", gate);
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  plugin->exportEvents({eventAt("E1", 1330905600)}, "Test");
  delegate.waitForReports(1);
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
}

}  // namespace
}  // namespace epg::test
