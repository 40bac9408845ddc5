#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::Eq;
using testing::Optional;

class ExportPathTest : public PluginTest {
 protected:
  std::optional<std::string> pathAfterExportTo(const PropertyList& exportPath) {
    configure("Configured", {{ZRLEPGDSConfigExportPath, exportPath}});
    exportAndWait({}, "Configured");
    return plugin->exportPath();
  }
};

TEST_F(ExportPathTest, IsNothingBeforeTheFirstExport) { EXPECT_EQ(std::nullopt, plugin->exportPath()); }

TEST_F(ExportPathTest, IsTheFolderOfTheConfiguration) {
  EXPECT_THAT(pathAfterExportTo(exportFolder), Optional(exportFolder));
}

TEST_F(ExportPathTest, ALeadingTildeIsTheHomeFolder) {
  EXPECT_THAT(pathAfterExportTo("~/EPG"), Optional(homeFolder + "/EPG"));
  EXPECT_THAT(pathAfterExportTo("~"), Optional(homeFolder));
  EXPECT_THAT(pathAfterExportTo("~/"), Optional(homeFolder));
}

TEST_F(ExportPathTest, ATildeWithAUserNameIsThatUsersHomeFolder) {
  environment.setHomeFolderOfUser("anna", "/anna");
  EXPECT_THAT(pathAfterExportTo("~anna/EPG"), Optional(Eq("/anna/EPG")));
  EXPECT_THAT(pathAfterExportTo("~anna"), Optional(Eq("/anna")));
}

TEST_F(ExportPathTest, TheTildeOfAnUnknownUserStaysAsItIs) {
  EXPECT_THAT(pathAfterExportTo("~nobody-here/EPG"), Optional(Eq("~nobody-here/EPG")));
}

TEST_F(ExportPathTest, ATildeElsewhereStandsForItself) {
  EXPECT_THAT(pathAfterExportTo("/a/~/b~"), Optional(Eq("/a/~/b~")));
  EXPECT_THAT(pathAfterExportTo(" ~/EPG"), Optional(Eq(" ~/EPG")));
}

TEST_F(ExportPathTest, OtherPathsComeBackUnchanged) {
  EXPECT_THAT(pathAfterExportTo("relative/folder/"), Optional(Eq("relative/folder/")));
  EXPECT_THAT(pathAfterExportTo("//a//b/../c"), Optional(Eq("//a//b/../c")));
  EXPECT_THAT(pathAfterExportTo(""), Optional(Eq("")));
}

TEST_F(ExportPathTest, DoesNotAskWhetherTheFolderExists) {
  EXPECT_THAT(pathAfterExportTo("/no/such/folder"), Optional(Eq("/no/such/folder")));
}

TEST_F(ExportPathTest, WithoutAReadableConfigurationIsTheDesktopInTheHomeFolder) {
  exportAndWait({}, "Not there");
  EXPECT_THAT(plugin->exportPath(), Optional(homeFolder + "/Desktop"));
}

TEST_F(ExportPathTest, IsNothingAfterAConfigurationWithoutIt) {
  configure("Bare", {{ZRLEPGDSConfigSourceID, "7"}});
  exportAndWait({});
  exportAndWait({}, "Bare");
  EXPECT_EQ(std::nullopt, plugin->exportPath());
}

TEST_F(ExportPathTest, IsNothingWhenTheValueIsNoString) {
  EXPECT_EQ(std::nullopt, pathAfterExportTo(PropertyList::fromInteger(7)));
  EXPECT_EQ(std::nullopt, pathAfterExportTo(PropertyList(PropertyList::Array{"a"})));
}

TEST_F(ExportPathTest, GoesOnAnsweringTheFolderOfTheExportLastAccepted) {
  exportAndWait({});
  EXPECT_THAT(plugin->exportPath(), Optional(exportFolder));
  removeAll(dataFolder + "/Test.epgconf");
  EXPECT_THAT(plugin->exportPath(), Optional(exportFolder));
  exportAndWait({}, "Not there");
  EXPECT_THAT(plugin->exportPath(), Optional(homeFolder + "/Desktop"));
}

TEST_F(ExportPathTest, IsTheNewFolderAsSoonAsAnExportIsAccepted) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents({}, "Test");
  EXPECT_THAT(plugin->exportPath(), Optional(exportFolder));
}

TEST_F(ExportPathTest, FollowsTheHomeFolderOfTheMoment) {
  EXPECT_THAT(pathAfterExportTo("~/EPG"), Optional(homeFolder + "/EPG"));
  environment.setHomeFolder("/elsewhere");
  EXPECT_THAT(plugin->exportPath(), Optional(Eq("/elsewhere/EPG")));
}

}  // namespace
}  // namespace epg::test
