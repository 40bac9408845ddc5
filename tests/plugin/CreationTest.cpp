#include <sys/stat.h>

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CreationTest : public PluginTest {};

TEST_F(CreationTest, StartsIdleWithNothingUnderEditAndNoDelegate) {
  const auto fresh = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, dataFolder, environment);
  EXPECT_EQ(nullptr, fresh->delegate());
  ASSERT_TRUE(fresh->epgItems());
  EXPECT_EQ(0U, fresh->epgItems()->size());
  ASSERT_TRUE(fresh->editedItems());
  EXPECT_EQ(0U, fresh->editedItems()->size());
  EXPECT_FALSE(fresh->busyWriting());
  EXPECT_FALSE(fresh->busyExporting());
  EXPECT_FALSE(fresh->exportPath());
}

TEST_F(CreationTest, StartsNoThreadAndWritesNothing) {
  writeStoreFile({{"E1", dictionaryOf({{ZRLEPGDSTitleKey, "Title"}})}});
  const std::size_t before = environment.threadsStarted();
  const auto names = namesIn(dataFolder);
  const std::string store = contentOf(storePath());
  start();
  plugin->configurationFilenames();
  EXPECT_EQ(before, environment.threadsStarted());
  EXPECT_EQ(names, namesIn(dataFolder));
  EXPECT_EQ(store, contentOf(storePath()));
}

TEST_F(CreationTest, LoadsTheItemsOfTheStoreFile) {
  writeStoreFile({{"E1", dictionaryOf({{ZRLEPGDSTitleKey, "Morning Prayer"},
                                       {ZRLEPGDSTagsKey, PropertyList::Array{"Live", "Family"}}})},
                  {"E2", dictionaryOf({})}});
  start();
  EXPECT_THAT(plugin->epgItems()->uniqueIDs(), ElementsAre("E1", "E2"));
  EXPECT_EQ(
      dictionaryOf({{ZRLEPGDSTitleKey, "Morning Prayer"}, {ZRLEPGDSTagsKey, PropertyList::Array{"Live", "Family"}}}),
      itemInStore("E1"));
  EXPECT_TRUE(itemInStore("E2").empty());
}

TEST_F(CreationTest, AStoreFileThatHoldsAnArrayGivesAnEmptyStoreWithoutAWord) {
  writeFile(storePath(), "<plist version=\"1.0\"><array><dict/></array></plist>");
  start();
  EXPECT_EQ(0U, plugin->epgItems()->size());
  EXPECT_THAT(environment.logged(), IsEmpty());
  EXPECT_THAT(delegate.reports(), IsEmpty());
}

TEST_F(CreationTest, AStoreFileThatIsNoPropertyListGivesAnEmptyStoreWithoutAWord) {
  for (const char* const content : {"", "no property list", "<plist><dict><key>E1</key>", "<html></html>", "bplist00",
                                    "<plist><string>E1</string></plist>"}) {
    writeFile(storePath(), content);
    start();
    EXPECT_EQ(0U, plugin->epgItems()->size()) << content;
    EXPECT_EQ(content, contentOf(storePath()));
  }
  EXPECT_THAT(environment.logged(), IsEmpty());
}

TEST_F(CreationTest, AMissingDataFolderGivesAnEmptyStoreAndIsNotMade) {
  removeAll(dataFolder);
  start();
  EXPECT_EQ(0U, plugin->epgItems()->size());
  EXPECT_FALSE(exists(dataFolder));
  EXPECT_THAT(environment.logged(), IsEmpty());
}

TEST_F(CreationTest, AStoreFileThatCannotBeReadGivesAnEmptyStoreWithoutAWord) {
  writeStoreFile({{"E1", dictionaryOf({})}});
  for (const Call call : {Call::Open, Call::Info, Call::Read}) {
    environment.failOn(call, "EPGItems.plist", EIO);
    start();
    EXPECT_EQ(0U, plugin->epgItems()->size());
    environment.letAllCallsPass();
  }
  EXPECT_THAT(environment.logged(), IsEmpty());
}

TEST_F(CreationTest, TheNextSaveReplacesAnUnreadableStoreFile) {
  writeFile(storePath(), "no property list");
  start();
  put("E1", {});
  save();
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
}

TEST_F(CreationTest, AStoreFileThatMemoryCannotHoldGivesAnEmptyStoreWithoutAWord) {
  writeStoreFile({{"E1", dictionaryOf({})}});
  environment.setMemorySize(10);
  start();
  EXPECT_EQ(0U, plugin->epgItems()->size());
  EXPECT_THAT(environment.logged(), IsEmpty());
}

TEST_F(CreationTest, APipeInTheStoreFilesPlaceIsNotWaitedFor) {
  ASSERT_EQ(0, ::mkfifo(storePath().c_str(), 0666));
  start();
  EXPECT_EQ(0U, plugin->epgItems()->size());
}

TEST_F(CreationTest, AFolderInTheStoreFilesPlaceGivesAnEmptyStore) {
  folder.makeFolder("data/EPGItems.plist");
  start();
  EXPECT_EQ(0U, plugin->epgItems()->size());
}

TEST_F(CreationTest, KeepsTheDataFolderPathItWasGiven) {
  std::string path = dataFolder;
  const auto fresh = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, path, environment);
  path.assign(path.size(), 'x');
  fresh->saveEPGItemsToFile();
  environment.waitForThreads();
  EXPECT_TRUE(exists(storePath()));
}

TEST_F(CreationTest, ADataFolderPathMayEndWithASlash) {
  writeStoreFile({{"E1", dictionaryOf({})}});
  const auto fresh = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, dataFolder + "/", environment);
  EXPECT_EQ(1U, fresh->epgItems()->size());
  fresh->removeEPGItemsWithUniqueIDs({"E1"});
  environment.waitForThreads();
  EXPECT_TRUE(storeFile().empty());
  EXPECT_THAT(fresh->configurationFilenames(), ElementsAre("Test"));
}

TEST_F(CreationTest, WithoutAnEnvironmentOfItsOwnAnObjectUsesTheSystems) {
  auto standard = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, dataFolder);
  const auto end = standard->end();
  standard->epgItems()->setItem("E1", itemWith({}));
  standard->saveEPGItemsToFile();
  standard.reset();
  end->wait();
  EXPECT_THAT(storedIDs(), ElementsAre("E1"));
}

TEST_F(CreationTest, TwoObjectsOfOneProcessKnowNothingOfEachOther) {
  const std::string otherFolder = folder.makeFolder("other data");
  const auto other = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, otherFolder, environment);
  put("E1", {});
  save();
  EXPECT_EQ(0U, other->epgItems()->size());
  EXPECT_THAT(namesIn(otherFolder), IsEmpty());
}

}  // namespace
}  // namespace epg::test
