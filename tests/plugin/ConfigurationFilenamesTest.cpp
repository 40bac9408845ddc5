#include <cerrno>

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class ConfigurationFilenamesTest : public PluginTest {
 protected:
  ConfigurationFilenamesTest() {
    removeAll(dataFolder);
    folder.makeFolder("data");
  }
  void addFile(const std::string& name) const { writeFile(dataFolder + "/" + name, ""); }
};

TEST_F(ConfigurationFilenamesTest, AreTheNamesOfTheEpgconfFiles) {
  for (const char* const name : {"Morning.epgconf", "evening.epgconf", "notes.txt", "Night.EPGCONF"}) addFile(name);
  EXPECT_THAT(plugin->configurationFilenames(), UnorderedElementsAre("Morning", "evening"));
}

TEST_F(ConfigurationFilenamesTest, StandInTheOrderInWhichTheFolderIsListed) {
  environment.setListing({"zulu.epgconf", "notes.txt", "Alpha.epgconf", "Night.EPGCONF", "mike.epgconf"});
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("zulu", "Alpha", "mike"));
}

TEST_F(ConfigurationFilenamesTest, AFolderWithoutConfigurationsOffersTheDefaultName) {
  addFile("notes.txt");
  addFile("EPGItems.plist");
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Default EPG Settings"));
}

TEST_F(ConfigurationFilenamesTest, AnEmptyFolderOffersTheDefaultName) {
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Default EPG Settings"));
}

TEST_F(ConfigurationFilenamesTest, AMissingFolderOffersTheDefaultNameWithoutAWord) {
  removeAll(dataFolder);
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Default EPG Settings"));
  EXPECT_TRUE(environment.logged().empty());
  EXPECT_FALSE(exists(dataFolder));
}

TEST_F(ConfigurationFilenamesTest, AFolderThatCannotBeListedOffersTheDefaultName) {
  addFile("Morning.epgconf");
  for (const int error : {EACCES, EIO, EMFILE}) {
    environment.failOn(Call::List, "", error);
    EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Default EPG Settings"));
  }
  EXPECT_TRUE(environment.logged().empty());
}

TEST_F(ConfigurationFilenamesTest, OneConfigurationTakesTheDefaultNamesPlace) {
  addFile("Morning.epgconf");
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Morning"));
}

TEST_F(ConfigurationFilenamesTest, OnlyTheLastExtensionIsRemoved) {
  addFile("x.y.epgconf");
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("x.y"));
}

TEST_F(ConfigurationFilenamesTest, TheExtensionIsComparedExactly) {
  for (const char* const name : {"a.EPGCONF", "b.Epgconf", "c.epgconf2", "d.epgcon", "e.epgconf.bak", "epgconf",
                                 "f.epgconf ", "gepgconf", "h.epgconf."}) {
    addFile(name);
  }
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Default EPG Settings"));
}

TEST_F(ConfigurationFilenamesTest, AnExtensionWithoutANameIsAHiddenFileWithoutExtension) {
  addFile(".epgconf");
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Default EPG Settings"));
}

TEST_F(ConfigurationFilenamesTest, HiddenFilesAndFoldersCountByTheirExtensionAlone) {
  addFile(".hidden.epgconf");
  folder.makeFolder("data/folder.epgconf");
  EXPECT_THAT(plugin->configurationFilenames(), UnorderedElementsAre(".hidden", "folder"));
}

TEST_F(ConfigurationFilenamesTest, FilesAreNotLookedInto) {
  addFile("empty.epgconf");
  writeFile(dataFolder + "/broken.epgconf", "no property list");
  EXPECT_THAT(plugin->configurationFilenames(), UnorderedElementsAre("empty", "broken"));
}

TEST_F(ConfigurationFilenamesTest, SubfoldersAreNotListed) {
  folder.makeFolder("data/sub");
  addFile("sub/Inner.epgconf");
  addFile("Outer.epgconf");
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Outer"));
}

TEST_F(ConfigurationFilenamesTest, NamesMayHoldAnyCharacter) {
  for (const char* const name :
       {"Früh.epgconf", "two words.epgconf", "line\nfeed.epgconf", "😀.epgconf", "it's.epgconf"}) {
    addFile(name);
  }
  EXPECT_THAT(plugin->configurationFilenames(), UnorderedElementsAre("Früh", "two words", "line\nfeed", "😀", "it's"));
}

TEST_F(ConfigurationFilenamesTest, NamesOfOtherBytesThanUTF8AreListedAsTheyAre) {
  environment.setListing({"\xFF.epgconf"});
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("\xFF"));
}

TEST_F(ConfigurationFilenamesTest, AreListedAfreshEachTime) {
  addFile("Morning.epgconf");
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Morning"));
  removeAll(dataFolder + "/Morning.epgconf");
  addFile("Evening.epgconf");
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Evening"));
}

TEST_F(ConfigurationFilenamesTest, AFileCalledLikeTheDefaultIsListedLikeAnyOther) {
  addFile("Default EPG Settings.epgconf");
  addFile("Morning.epgconf");
  EXPECT_THAT(plugin->configurationFilenames(), UnorderedElementsAre("Default EPG Settings", "Morning"));
}

TEST_F(ConfigurationFilenamesTest, TemporaryFilesOfASaveAreNotListed) {
  Gate gate;
  environment.holdBefore(Call::Flush, "EPGItems.plist", gate);
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Default EPG Settings"));
}

TEST_F(ConfigurationFilenamesTest, TenThousandConfigurationsAreAllListed) {
  std::vector<std::string> listing;
  for (int i = 0; i < 10000; ++i) listing.push_back(std::to_string(i) + ".epgconf");
  environment.setListing(listing);
  const auto names = plugin->configurationFilenames();
  ASSERT_EQ(10000U, names.size());
  EXPECT_EQ("9999", names.back());
}

}  // namespace
}  // namespace epg::test
