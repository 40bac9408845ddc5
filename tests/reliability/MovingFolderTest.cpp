// A data folder that is renamed or deleted while a save runs: the file is the old or the new one, wherever it is now.

#include <cstdio>

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

class MovingFolderTest : public PluginTest {};

TEST_F(MovingFolderTest, RenamedWhileASaveWritesTheStoreStaysWholeUnderTheNewName) {
  put("E1", {{ZRLEPGDSTitleKey, "Before"}});
  save();
  const std::string before = contentOf(storePath());
  Gate gate;
  environment.holdBefore(Call::Exchange, "EPGItems.plist", gate);
  put("E1", {{ZRLEPGDSTitleKey, "After"}});
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  const std::string elsewhere = dataFolder + " moved";
  ASSERT_EQ(0, std::rename(dataFolder.c_str(), elsewhere.c_str()));
  gate.open();
  environment.waitForThreads();

  EXPECT_FALSE(exists(dataFolder));
  EXPECT_EQ(before, contentOf(elsewhere + "/EPGItems.plist"));
  EXPECT_FALSE(plugin->busyWriting());

  ASSERT_EQ(0, std::rename(elsewhere.c_str(), dataFolder.c_str()));
  environment.letAllCallsPass();
  save();
  EXPECT_EQ("After", *stringValue(*storeFile().find("E1")->asDictionary(), ZRLEPGDSTitleKey));
  for (const std::string& name : namesIn(dataFolder)) EXPECT_EQ(std::string::npos, name.find(".tmp")) << name;
}

TEST_F(MovingFolderTest, DeletedWhileASaveWritesNothingComesBackAndTheMarkIsCleared) {
  Gate gate;
  environment.holdBefore(Call::Write, "EPGItems.plist", gate);
  put("E1", {{ZRLEPGDSTitleKey, "Lost"}});
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  removeAll(dataFolder);
  gate.open();
  environment.waitForThreads();
  EXPECT_FALSE(exists(dataFolder));
  EXPECT_FALSE(plugin->busyWriting());
  EXPECT_TRUE(environment.logged().empty());
}

}  // namespace
}  // namespace epg::test
