// Sizes and shapes that nobody means: the plug-in stays whole, and what it wrote is read back.

#include <algorithm>
#include <set>

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

class HostileFilesTest : public PluginTest {
 protected:
  std::vector<std::string> pathsThatNobodyMeans() const {
    return {"../x",
            "/x",
            "a/../../b",
            "../../x",
            "./x",
            "x/",
            "..",
            "/",
            "../export/x",
            folder.file("x"),
            std::string("x\0y", 3)};
  }

  /// Beside the folders that the plug-in was given there is nothing, nor is there where the test runs.
  void expectNothingElsewhere() const {
    EXPECT_EQ((std::vector<std::string>{"data", "export", "home"}), namesIn(folder.path()));
    EXPECT_EQ((std::vector<std::string>{"Desktop"}), namesIn(homeFolder));
    for (const char* path : {"/x", "/x.xml", "/x.epgconf", "x", "../x", "../x.xml", "b", "../b", "../../b"}) {
      EXPECT_FALSE(exists(path)) << path;
    }
  }
};

TEST_F(HostileFilesTest, AMillionTagsOnOneItemAreSavedAndExported) {
  PropertyList::Array tags;
  constexpr std::size_t count = 1000000;
  tags.reserve(count);
  for (std::size_t i = 0; i < count; ++i) tags.emplace_back("tag " + std::to_string(i));
  put("E1", {{ZRLEPGDSTagsKey, PropertyList(std::move(tags))}});
  save();
  EXPECT_EQ(count, tagsValue(*storeFile().find("E1")->asDictionary())->size());
  exportAndWait({eventAt("E1", 0)});
  const DayFile file = dayFile();
  ASSERT_EQ(1U, file.programs.size());
  ASSERT_EQ(count, file.programs[0].tags.size());
  EXPECT_EQ("tag 999999", file.programs[0].tags.back());
}

TEST_F(HostileFilesTest, ATitleOf64MegabytesIsSavedAndExported) {
  std::string title(std::size_t{64} << 20, 't');
  for (std::size_t i = 0; i < title.size(); i += 4096) title[i] = '\'';
  put("E1", {{ZRLEPGDSTitleKey, title}});
  save();
  EXPECT_TRUE(*stringValue(*storeFile().find("E1")->asDictionary(), ZRLEPGDSTitleKey) == title);
  exportAndWait({eventAt("E1", 0)});
  EXPECT_EQ((std::vector<std::string>{"YES"}), delegate.outcomes());
  const std::string file = contentOf(dayFilePath());
  EXPECT_GT(file.size(), title.size());
  EXPECT_EQ(std::string::npos, file.find('\''));
}

TEST_F(HostileFilesTest, TenThousandConfigurationsAreAllListed) {
  std::set<std::string> expected;
  for (int i = 0; i < 10000; ++i) {
    const std::string name = "Configuration " + std::to_string(i);
    writeFile(dataFolder + "/" + name + ".epgconf", "");
    expected.insert(name);
  }
  for (const std::string& name : plugin->configurationFilenames()) expected.erase(name);
  EXPECT_TRUE(expected.empty()) << expected.size() << " are missing, " << *expected.begin() << " among them";
}

TEST_F(HostileFilesTest, ConfigurationsAreListedAndUsedWhateverTheirNamesHold) {
  const std::vector<std::string> names = {"line\nbreak",
                                          "tab\tstop",
                                          " ",
                                          "quote\"'",
                                          "\xF0\x9F\x93\xBA live",
                                          "\xE4\xB8\xAD\xE6\x96\x87",
                                          "..x",
                                          "%s%n",
                                          "\xF3\xA0\x80\x81plane fourteen"};
  for (const std::string& name : names) configure(name, {{ZRLEPGDSConfigExportPath, exportFolder}});
  const std::vector<std::string> listed = plugin->configurationFilenames();
  put("E1", {{ZRLEPGDSTitleKey, "Title"}});
  for (const std::string& name : names) {
    EXPECT_EQ(1, std::count(listed.begin(), listed.end(), name)) << name;
    removeAll(dayFilePath());
    exportAndWait({eventAt("E1", 0)}, name);
    EXPECT_TRUE(exists(dayFilePath())) << name;
  }
}

TEST_F(HostileFilesTest, IDsThatLookLikePathsNameNoFile) {
  std::vector<EPGEvent> events;
  for (const std::string& id : pathsThatNobodyMeans()) {
    put(id, {{ZRLEPGDSTitleKey, id}});
    events.push_back(eventAt(id, 0));
    events.back().eventEPGPlaybackUniqueID = id;
  }
  plugin->setEditedEPGUniqueIDs(pathsThatNobodyMeans());
  plugin->commitEditing();
  environment.waitForThreads();
  exportAndWait(events);
  EXPECT_EQ((std::vector<std::string>{"YES"}), delegate.outcomes());
  EXPECT_EQ(events.size(), dayFile().programs.size());
  EXPECT_EQ((std::vector<std::string>{"EPGItems.plist", "Test.epgconf"}), namesIn(dataFolder));
  EXPECT_EQ((std::vector<std::string>{"20120304.xml"}), namesIn(exportFolder));
  expectNothingElsewhere();
  EXPECT_TRUE(namesIn(homeFolder + "/Desktop").empty());
}

TEST_F(HostileFilesTest, NothingIsWrittenUnderTheNameOfAConfiguration) {
  for (const std::string& name : pathsThatNobodyMeans()) exportAndWait({}, name);
  // None of them can be read, so every one of them means the default configuration.
  EXPECT_EQ((std::vector<std::string>{"20120304.xml"}), namesIn(homeFolder + "/Desktop"));
  EXPECT_EQ((std::vector<std::string>{"Test.epgconf"}), namesIn(dataFolder));
  EXPECT_TRUE(namesIn(exportFolder).empty());
  expectNothingElsewhere();
}

TEST_F(HostileFilesTest, AConfigurationsNameIsJoinedToTheDataFolderAsItIs) {
  configure("../elsewhere", {{ZRLEPGDSConfigExportPath, exportFolder}});
  const std::string before = contentOf(folder.file("elsewhere.epgconf"));
  exportAndWait({}, "../elsewhere");
  EXPECT_EQ((std::vector<std::string>{"20120304.xml"}), namesIn(exportFolder));
  EXPECT_EQ((std::vector<std::string>{"data", "elsewhere.epgconf", "export", "home"}), namesIn(folder.path()));
  EXPECT_EQ(before, contentOf(folder.file("elsewhere.epgconf")));
}

TEST_F(HostileFilesTest, AStoreNestedBeyondTheLimitIsUnreadableAndIsNeverWritten) {
  std::string deep = "<plist><dict><key>E1</key>";
  for (int i = 0; i < 100000; ++i) deep += "<array>";
  for (int i = 0; i < 100000; ++i) deep += "</array>";
  deep += "</dict></plist>";
  stop();
  writeFile(storePath(), deep);
  start();
  EXPECT_EQ(0U, plugin->epgItems()->size());

  PropertyList nested(PropertyList::Array{});
  for (int i = 0; i < PropertyList::maximumDepth; ++i) nested = PropertyList(PropertyList::Array{nested});
  put("E1", {{"nested", nested}});
  save();
  EXPECT_EQ(deep, contentOf(storePath())) << "a store that cannot be read back must not replace anything";
}

TEST_F(HostileFilesTest, AGuideOfEntitiesThatExplodeIsUnreadableAsAStore) {
  std::string bomb = "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\">";
  for (char c = 'b'; c < 'z'; ++c) {
    bomb += std::string("<!ENTITY ") + c + " \"";
    for (int i = 0; i < 10; ++i) bomb += std::string("&") + static_cast<char>(c - 1) + ";";
    bomb += "\">";
  }
  bomb += "]><plist><dict><key>E1</key><string>&y;</string></dict></plist>";
  stop();
  writeFile(storePath(), bomb);
  start();
  EXPECT_EQ(0U, plugin->epgItems()->size());
}

}  // namespace
}  // namespace epg::test
