#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RemoveTest : public PluginTest {
 protected:
  RemoveTest() {
    for (const char* const id : {"E1", "E2", "E3"}) put(id, {{ZRLEPGDSTitleKey, id}});
  }
  void remove(const std::vector<std::string>& ids) {
    plugin->removeEPGItemsWithUniqueIDs(ids);
    environment.waitForThreads();
  }
};

TEST_F(RemoveTest, TakesEveryListedItemOutOfStoreAndFile) {
  remove({"E3", "E1"});
  EXPECT_THAT(plugin->epgItems()->uniqueIDs(), ElementsAre("E2"));
  EXPECT_THAT(storedIDs(), ElementsAre("E2"));
}

TEST_F(RemoveTest, IDsWithoutAnItemLeaveTheStoreUnchangedAndStillRewriteTheFile) {
  writeFile(storePath(), "old");
  remove({"E4", "", "e1"});
  EXPECT_THAT(plugin->epgItems()->uniqueIDs(), ElementsAre("E1", "E2", "E3"));
  EXPECT_THAT(storedIDs(), ElementsAre("E1", "E2", "E3"));
}

TEST_F(RemoveTest, AnEmptyListRewritesTheFile) {
  writeFile(storePath(), "old");
  remove({});
  EXPECT_THAT(storedIDs(), ElementsAre("E1", "E2", "E3"));
}

TEST_F(RemoveTest, RepeatedIDsAreRemovedOnce) {
  remove({"E1", "E1", "E4", "E1", "E4"});
  EXPECT_THAT(storedIDs(), ElementsAre("E2", "E3"));
}

TEST_F(RemoveTest, TheLastItemLeavesAnEmptyStoreFile) {
  remove({"E1", "E2", "E3"});
  EXPECT_TRUE(storeFile().empty());
  start();
  EXPECT_EQ(0U, plugin->epgItems()->size());
}

TEST_F(RemoveTest, GoesByTheStoreKeyAndNotByTheItemsOwnID) {
  put("copy", {{ZRLEPGDSUniqueIDKey, "E1"}});
  remove({"E1"});
  EXPECT_THAT(storedIDs(), ElementsAre("E2", "E3", "copy"));
}

TEST_F(RemoveTest, SavesOnceForTheWholeList) {
  const std::size_t before = environment.threadsStarted();
  remove({"E1", "E2", "E3"});
  EXPECT_EQ(before + 1, environment.threadsStarted());
}

TEST_F(RemoveTest, DoesNotTellTheDelegate) {
  remove({"E1"});
  EXPECT_THAT(delegate.reports(), IsEmpty());
  EXPECT_EQ(0U, delegate.timesAsked());
}

TEST_F(RemoveTest, ReachesTheNextStart) {
  remove({"E1", "E2"});
  start();
  EXPECT_THAT(plugin->epgItems()->uniqueIDs(), ElementsAre("E3"));
}

TEST_F(RemoveTest, ManyThousandIDsAtOnce) {
  std::vector<std::string> ids;
  for (int i = 0; i < 20000; ++i) {
    ids.push_back("many " + std::to_string(i));
    if (i % 2 == 0) put(ids.back(), {});
  }
  remove(ids);
  EXPECT_THAT(storedIDs(), ElementsAre("E1", "E2", "E3"));
}

}  // namespace
}  // namespace epg::test
