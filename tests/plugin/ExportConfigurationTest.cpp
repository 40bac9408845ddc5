#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ExportConfigurationTest : public PluginTest {
 protected:
  ExportConfigurationTest() { put("E1", {{ZRLEPGDSTitleKey, "One"}}); }

  std::string desktop() const { return homeFolder + "/Desktop"; }
  /// Exports with the configuration and expects the day file in the folder.
  void expectExportTo(const std::string& wanted, const std::string& configuration) {
    exportAndWait(events, configuration);
    EXPECT_EQ("YES", delegate.outcomes().back());
    EXPECT_TRUE(exists(wanted + "/20120304.xml")) << "no day file in " << wanted;
    removeAll(wanted + "/20120304.xml");
  }

  const std::vector<EPGEvent> events{eventAt("E1", 1330905600)};
};

TEST_F(ExportConfigurationTest, NamesTheFolderOfTheDayFile) { expectExportTo(exportFolder, "Test"); }

TEST_F(ExportConfigurationTest, TheDefaultNameWithoutSuchAFileExportsToTheDesktop) {
  expectExportTo(desktop(), "Default EPG Settings");
}

TEST_F(ExportConfigurationTest, AFileWithTheDefaultNameIsReadLikeAnyOther) {
  configure("Default EPG Settings", {{ZRLEPGDSConfigExportPath, exportFolder}});
  expectExportTo(exportFolder, "Default EPG Settings");
  EXPECT_THAT(namesIn(desktop()), IsEmpty());
}

TEST_F(ExportConfigurationTest, AMissingOrUnreadableFileExportsToTheDesktopWithoutAWord) {
  writeFile(dataFolder + "/Broken.epgconf", "no property list");
  writeFile(dataFolder + "/List.epgconf", "<plist><array/></plist>");
  folder.makeFolder("data/Folder.epgconf");
  for (const char* const name : {"Not there", "Broken", "List", "Folder"}) expectExportTo(desktop(), name);
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES", "YES", "YES", "YES"));
  EXPECT_THAT(environment.logged(), IsEmpty());
}

TEST_F(ExportConfigurationTest, AFileThatMemoryCannotHoldExportsToTheDesktop) {
  environment.setMemorySize(10);
  expectExportTo(desktop(), "Test");
}

TEST_F(ExportConfigurationTest, APipeInTheFilesPlaceIsNotWaitedFor) {
  ASSERT_EQ(0, ::mkfifo((dataFolder + "/Pipe.epgconf").c_str(), 0666));
  expectExportTo(desktop(), "Pipe");
}

TEST_F(ExportConfigurationTest, WithoutAnExportPathDoesNotFallBackToTheDesktop) {
  configure("Bare", {{ZRLEPGDSConfigSourceID, "7"}});
  configure("Empty", {});
  configure("Number", {{ZRLEPGDSConfigExportPath, PropertyList::fromInteger(7)}});
  for (const char* const name : {"Bare", "Empty", "Number"}) exportAndWait(events, name);
  EXPECT_THAT(delegate.outcomes(), ElementsAre(writeErrorReport, writeErrorReport, writeErrorReport));
  EXPECT_THAT(namesIn(desktop()), IsEmpty());
}

TEST_F(ExportConfigurationTest, AnEmptyExportPathIsNoFolder) {
  configure("Nowhere", {{ZRLEPGDSConfigExportPath, ""}});
  exportAndWait(events, "Nowhere");
  EXPECT_THAT(delegate.outcomes(), ElementsAre(writeErrorReport));
  EXPECT_FALSE(exists("20120304.xml"));
}

TEST_F(ExportConfigurationTest, ATildeInTheExportPathIsTheHomeFolder) {
  folder.makeFolder("home/EPG");
  configure("Home", {{ZRLEPGDSConfigExportPath, "~/EPG"}});
  expectExportTo(homeFolder + "/EPG", "Home");
  configure("Home", {{ZRLEPGDSConfigExportPath, "~"}});
  expectExportTo(homeFolder, "Home");
  environment.setHomeFolderOfUser("anna", exportFolder);
  configure("Home", {{ZRLEPGDSConfigExportPath, "~anna"}});
  expectExportTo(exportFolder, "Home");
}

TEST_F(ExportConfigurationTest, ARelativeExportPathGoesFromTheWorkingFolder) {
  char before[4096];
  ASSERT_TRUE(::getcwd(before, sizeof before));
  ASSERT_EQ(0, ::chdir(folder.path().c_str()));
  configure("Relative", {{ZRLEPGDSConfigExportPath, "export"}});
  exportAndWait(events, "Relative");
  ASSERT_EQ(0, ::chdir(before));
  EXPECT_THAT(delegate.outcomes(), ElementsAre("YES"));
  EXPECT_TRUE(exists(dayFilePath()));
}

TEST_F(ExportConfigurationTest, AnExportPathMayEndWithSlashesAndHoldAnything) {
  configure("Slash", {{ZRLEPGDSConfigExportPath, exportFolder + "//"}});
  expectExportTo(exportFolder, "Slash");
  const std::string odd = folder.makeFolder("it's \"odd\" & <ünï> \n");
  configure("Odd", {{ZRLEPGDSConfigExportPath, odd}});
  expectExportTo(odd, "Odd");
}

TEST_F(ExportConfigurationTest, ItsNameMayHoldDotsSpacesUnicodeAndLineFeeds) {
  for (const char* const name : {"x.y", "two words", "Früh", "line\nfeed", "it's", "😀", ".hidden", "Evening.epgconf"}) {
    configure(name, {{ZRLEPGDSConfigExportPath, exportFolder}});
    expectExportTo(exportFolder, name);
  }
  EXPECT_THAT(namesIn(desktop()), IsEmpty());
}

TEST_F(ExportConfigurationTest, ANameWithASlashIsAPathInTheDataFolder) {
  folder.makeFolder("data/sub");
  configure("sub/Inner", {{ZRLEPGDSConfigExportPath, exportFolder}});
  expectExportTo(exportFolder, "sub/Inner");
  expectExportTo(desktop(), "sub/Other");
}

TEST_F(ExportConfigurationTest, ASlashBeforeOrBehindTheNameDoesNotMatter) {
  expectExportTo(exportFolder, "/Test");
  expectExportTo(exportFolder, "Test/");
}

TEST_F(ExportConfigurationTest, AnEmptyNameIsNoConfigurationInTheDataFolder) {
  writeFile(dataFolder + "/.epgconf", contentOf(dataFolder + "/Test.epgconf"));
  expectExportTo(desktop(), "");
}

TEST_F(ExportConfigurationTest, ANameThatNoFileCanHaveExportsToTheDesktop) {
  expectExportTo(desktop(), std::string("Test\0", 5));
  expectExportTo(desktop(), std::string(10000, 'x'));
  expectExportTo(desktop(), "..");
}

TEST_F(ExportConfigurationTest, ItsNameIsComparedAsTheFileSystemDoes) {
  configure("Evening", {{ZRLEPGDSConfigExportPath, exportFolder}});
  writeFile(dataFolder + "/Night.EPGCONF", contentOf(dataFolder + "/Evening.epgconf"));
  expectExportTo(exportFolder, "Evening");
  expectExportTo(desktop(), "Evening ");
}

TEST_F(ExportConfigurationTest, IsReadAfreshForEveryExport) {
  expectExportTo(exportFolder, "Test");
  const std::string other = folder.makeFolder("other");
  configure("Test", {{ZRLEPGDSConfigExportPath, other}});
  expectExportTo(other, "Test");
}

TEST_F(ExportConfigurationTest, IsReadBeforeTheCallReturns) {
  Gate gate;
  environment.holdBefore(Call::StartThread, "", gate);
  plugin->exportEvents(events, "Test");
  configure("Test", {{ZRLEPGDSConfigExportPath, desktop()}});
  removeAll(dataFolder);
  gate.open();
  environment.waitForThreads();
  EXPECT_TRUE(exists(dayFilePath()));
  EXPECT_THAT(namesIn(desktop()), IsEmpty());
}

TEST_F(ExportConfigurationTest, OtherKeysAndTheSourceIDPlayNoPart) {
  configure("More", {{ZRLEPGDSConfigExportPath, exportFolder},
                     {ZRLEPGDSConfigSourceID, PropertyList::Array{"odd"}},
                     {"exportpath", desktop()},
                     {"more", PropertyList(dictionaryOf({}))}});
  exportAndWait(events, "More");
  const std::string withMore = contentOf(dayFilePath());
  exportAndWait(events);
  EXPECT_EQ(withMore, contentOf(dayFilePath()));
}

TEST_F(ExportConfigurationTest, IsNeverWritten) {
  const std::string before = contentOf(dataFolder + "/Test.epgconf");
  exportAndWait(events);
  exportAndWait(events, "Not there");
  EXPECT_EQ(before, contentOf(dataFolder + "/Test.epgconf"));
  EXPECT_THAT(namesIn(dataFolder), ElementsAre("Test.epgconf"));
}

TEST_F(ExportConfigurationTest, MayBeInUTF16OrBinary) {
  std::string utf16 = "\xFE\xFF";
  for (const char c : "<plist><dict><key>exportPath</key><string>" + exportFolder + "</string></dict></plist>") {
    utf16 += '\0';
    utf16 += c;
  }
  writeFile(dataFolder + "/Wide.epgconf", utf16);
  expectExportTo(exportFolder, "Wide");
  // {"exportPath": "~"} in the binary form.
  const std::string binary(
      "bplist00\xD1\x01\x02ZexportPathQ~\x08\x0B\x16\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x03\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
      "\0\x18",
      59);
  writeFile(dataFolder + "/Binary.epgconf", binary);
  expectExportTo(homeFolder, "Binary");
}

}  // namespace
}  // namespace epg::test
