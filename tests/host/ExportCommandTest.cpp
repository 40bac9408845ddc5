#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <cerrno>

#include "host/terminal/LineText.h"
#include "plist/PropertyListFile.h"
#include "store/ItemStoreFile.h"
#include "tests/host/CommandTest.h"
#include "tests/support/DayFileReader.h"
#include "tests/support/TimeZone.h"

namespace epg::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const char* const twoEvents =
    "<plist><array>"
    "<dict><key>eventEPGUniqueID</key><string>E2</string><key>eventEPGStartDateTime</key>"
    "<date>2012-03-05T23:05:00Z</date><key>eventEPGEndDateTime</key><date>2012-03-06T00:10:00Z</date></dict>"
    "<dict><key>eventEPGUniqueID</key><string>E1</string><key>eventEPGPlaybackUniqueID</key><string>P-100</string>"
    "<key>eventEPGStartDateTime</key><date>2012-03-05T06:30:00Z</date>"
    "<key>eventEPGEndDateTime</key><date>2012-03-05T06:55:00Z</date></dict>"
    "</array></plist>";

class ExportCommand : public CommandTest {
 protected:
  ExportCommand() {
    writeItemStore(storeOf({item("E1", {{"title", "Morning Prayer"}, {"tags", names({"Live", "Family"})}}),
                            item("E2", {{"title", "Kids' Corner"}, {"description", "Q&A with guests"}})}));
  }

  std::string eventsFile() const { return write("events.plist", twoEvents); }

  /// The path of the one day file in the folder.
  static std::string dayFileIn(const std::string& folder) {
    const std::vector<std::string> found = namesIn(folder);
    EXPECT_EQ(found.size(), 1U);
    return found.empty() ? std::string() : folder + "/" + found.front();
  }

 private:
  const TimeZone zone_{"UTC"};
};

/// Refuses to put a file into its place.
class ReadOnlyDisk : public ReportingEnvironment {
 public:
  using ReportingEnvironment::ReportingEnvironment;
  int renameFile(const std::string& /*from*/, const std::string& /*to*/) override { return EROFS; }
  int exchangeFiles(const std::string& /*one*/, const std::string& /*other*/) override { return EROFS; }
};

}  // namespace

TEST_F(ExportCommand, WritesTheDayFileAndPrintsItsPathLast) {
  const std::string folder = configureExport("Evening");
  const CommandResult result = runWell({"export", eventsFile()});
  EXPECT_EQ(result.messages, "");
  EXPECT_EQ(result.output, dayFileIn(folder) + "\n");
  const DayFile dayFile = dayFileFrom(contentOf(dayFileIn(folder)));
  EXPECT_EQ(dayFile.dateFrom, "05-03-2012");
  EXPECT_EQ(dayFile.dateTo, "06-03-2012");
  EXPECT_THAT(dayFile.titles(), ElementsAre("Morning Prayer", "Kids' Corner"));
  EXPECT_THAT(dayFile.starts(), ElementsAre("5.3.12 6:30", "5.3.12 23:5"));
}

TEST_F(ExportCommand, ExportsAGuideAsItWasImported) {
  const std::string folder = configureExport("Evening");
  const std::string guide = writeGuide(
      "<programme start='20261114070000 +0100' channel='one'><title>Kids' "
      "Corner</title><category>News</category></programme>"
      "<programme start='20261114060000 +0100' stop='20261114070000 +0100' "
      "channel='one'><title>Bare</title></programme>");
  runWell({"import", guide});
  const CommandResult result = runWell({"export", guide});
  EXPECT_EQ(result.messages, "");
  const DayFile dayFile = dayFileFrom(contentOf(dayFileIn(folder)));
  EXPECT_EQ(dayFile.dateTo, "");  // The last programme has no stop.
  EXPECT_THAT(dayFile.titles(), ElementsAre("Bare", "Kids' Corner"));
  EXPECT_THAT(dayFile.starts(), ElementsAre("14.11.26 5:0", "14.11.26 6:0"));
}

TEST_F(ExportCommand, TellsHowManyEventsWereLeftOut) {
  const std::string folder = configureExport("Evening");
  runWell({"remove", "E1"});
  EXPECT_EQ(runWell({"export", eventsFile()}).messages, "1 of 2 events has no item and was left out\n");
  EXPECT_THAT(dayFileFrom(contentOf(dayFileIn(folder))).titles(), ElementsAre("Kids' Corner"));
  runWell({"remove", "E2"});
  EXPECT_EQ(runWell({"export", eventsFile()}).messages, "2 of 2 events have no item and were left out\n");
  EXPECT_THAT(dayFileFrom(contentOf(dayFileIn(folder))).titles(), IsEmpty());
  const std::string bare = write("bare.plist", "<plist><array><dict/></array></plist>");
  EXPECT_EQ(runWell({"export", bare}).messages, "1 of 1 event has no item and was left out\n");
}

TEST_F(ExportCommand, WarnsOfProgrammesThatItCannotUse) {
  configureExport("Evening");
  const CommandResult result = runWell({"export", writeGuide("<programme start='2001'/>")});
  EXPECT_THAT(result.messages, HasSubstr("guide.xml: line 3, column 1: programme skipped"));
}

TEST_F(ExportCommand, TakesTheOnlyConfiguration) {
  const std::string folder = configureExport("Evening");
  runWell({"export", eventsFile()});
  EXPECT_THAT(namesIn(folder), testing::SizeIs(1));
}

TEST_F(ExportCommand, MustBeToldWhichOfSeveralConfigurations) {
  const std::string evening = configureExport("Evening");
  const std::string morning = configureExport("Morning");
  const CommandResult refused = run({"export", eventsFile()});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.output, "");
  EXPECT_THAT(refused.messages,
              AllOf(HasSubstr("--configuration"), HasSubstr("\n  Evening\n"), HasSubstr("\n  Morning\n")));
  EXPECT_THAT(namesIn(evening), IsEmpty());
  runWell({"export", eventsFile(), "--configuration", "Morning"});
  EXPECT_THAT(namesIn(evening), IsEmpty());
  EXPECT_THAT(namesIn(morning), testing::SizeIs(1));
}

TEST_F(ExportCommand, RefusesAConfigurationThatThereIsNot) {
  const std::string folder = configureExport("Evening");
  for (const char* name : {"evening", "Evening.epgconf", "../data/Evening", "./Evening", ""}) {
    const CommandResult result = run({"export", eventsFile(), "--configuration", name});
    EXPECT_EQ(result.status, 1) << name;
    EXPECT_THAT(result.messages, HasSubstr("there is no export configuration \"" + std::string(name) + "\"")) << name;
  }
  EXPECT_THAT(namesIn(folder), IsEmpty());
}

TEST_F(ExportCommand, RefusesAConfigurationThatCannotBeRead) {
  writeFile(dataFolder() + "/Broken.epgconf", "<plist><dict>\n<key>");
  const CommandResult result = run({"export", eventsFile()});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.messages, testing::StartsWith(dataFolder() + "/Broken.epgconf: not a property list: line 2"));
}

TEST_F(ExportCommand, ReportsAConfigurationWithoutAFolder) {
  writeFile(dataFolder() + "/Bare.epgconf", "<plist><dict/></plist>");
  const CommandResult result = run({"export", eventsFile()});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages, "EPG XML File Write Error: the export configuration names no folder (\"exportPath\")\n");
}

TEST_F(ExportCommand, RefusesAFolderWhoseNameDoesNotFitOnALine) {
  for (const char* name : {"two\nlines", "tab\tstop", "delete\x7F", "separator\xE2\x80\xA8"}) {
    const std::string folder = configureExport(name);
    PropertyListDictionary configuration;
    configuration.set("exportPath", folder);
    writeFile(dataFolder() + "/Evening.epgconf", propertyListXML(PropertyList(configuration)).value_or(""));
    const CommandResult result = run({"export", eventsFile(), "--configuration", "Evening"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.messages,
              "the export configuration \"Evening\" names a folder with line feeds or other control "
              "characters: " +
                  escapedForLine(folder) + "\n");
    EXPECT_THAT(namesIn(folder), IsEmpty());
  }
}

TEST_F(ExportCommand, DoesNotTakeALinkThatLeadsNowhereForTheDefaultConfiguration) {
  const std::string path = dataFolder() + "/Default EPG Settings.epgconf";
  ASSERT_EQ(symlink("nowhere", path.c_str()), 0);
  for (const std::vector<std::string>& more :
       {std::vector<std::string>{}, {"--configuration", "Default EPG Settings"}}) {
    std::vector<std::string> arguments = {"export", eventsFile()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const CommandResult result = run(arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.messages, path + ": a link to a file that is not there\n");
  }
}

TEST_F(ExportCommand, WritesNoFileByATextOfAGuideOrOfAListOfEvents) {
  const std::string folder = configureExport("Evening");
  const std::string marks[] = {"../mark", "../../mark", "a/../../mark", file("mark"), "./mark", "..", "/", "mark/"};
  std::string list;
  std::string guide;
  for (const std::string& mark : marks) {
    runWell({"edit", "--title", mark, "--", mark});
    list += "<dict><key>eventEPGUniqueID</key><string>" + mark +
            "</string><key>eventEPGPlaybackUniqueID</key><string>" + mark + "</string></dict>";
    guide += "<programme start='2001' channel='" + mark + "'><title>" + mark + "</title><icon src='" + mark +
             "'/><episode-num system='" + mark + "'>" + mark + "</episode-num></programme>";
  }
  const std::string eventsFile = write("events.plist", "<plist><array>" + list + "</array></plist>");
  const std::string guideFile = writeGuide(guide);
  const std::vector<std::string> outside = namesIn(file(""));
  runWell({"import", guideFile});
  runWell({"export", eventsFile});
  runWell({"export", guideFile});
  for (const std::string& mark : marks) {
    EXPECT_EQ(run({"export", eventsFile, "--configuration", mark}).status, 1) << mark;
    EXPECT_EQ(run({"duplicate", mark, mark + " copy"}).status, 0) << mark;
  }
  EXPECT_EQ(namesIn(file("")), outside);
  EXPECT_THAT(namesIn(dataFolder()), ElementsAre("EPGItems.plist", "Evening.epgconf"));
  EXPECT_THAT(namesIn(folder), testing::SizeIs(1));
  EXPECT_FALSE(exists("mark"));
  EXPECT_FALSE(exists("../mark"));
}

TEST_F(ExportCommand, WritesToTheDesktopWithoutAnyConfiguration) {
  class Home : public ReportingEnvironment {
   public:
    Home(Messages& messages, std::string path) : ReportingEnvironment(messages), path_(std::move(path)) {}
    std::string homeFolder() override { return path_; }

   private:
    std::string path_;
  };
  useEnvironment([this](Messages& messages) { return std::make_unique<Home>(messages, file("home")); });
  const CommandResult failed = run({"export", eventsFile()});
  EXPECT_EQ(failed.status, 1);
  EXPECT_THAT(failed.messages, HasSubstr(file("home/Desktop/")));
  runWell({"--data-folder", file("home/Desktop/data"), "import", writeGuide("")});
  runWell({"export", eventsFile()});
  runWell({"export", eventsFile(), "--configuration", "Default EPG Settings"});
  EXPECT_THAT(namesIn(file("home/Desktop")), testing::SizeIs(2));
  configureExport("Evening");
  runWell({"export", eventsFile(), "--configuration", "Default EPG Settings"});
}

TEST_F(ExportCommand, ReportsWhatThePlugInAndTheSystemSayOfAFailure) {
  const std::string folder = configureExport("Evening");
  useEnvironment([](Messages& messages) { return std::make_unique<ReadOnlyDisk>(messages); });
  const CommandResult result = run({"export", eventsFile()});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.messages, testing::MatchesRegex("EPG XML File Write Error: .*/export of Evening/[0-9]*\\.xml: "
                                                     "Read-only file system\n"));
  EXPECT_THAT(namesIn(folder), IsEmpty());
  useEnvironment([](Messages& messages) { return std::make_unique<ReportingEnvironment>(messages); });
  removeAll(folder);
  EXPECT_THAT(run({"export", eventsFile()}).messages, HasSubstr("No such file or directory"));
}

TEST_F(ExportCommand, RefusesEventsThatCannotBeRead) {
  const std::string folder = configureExport("Evening");
  const CommandResult result = run({"export", write("events.plist", "<plist><array><string/></array></plist>")});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages, file("events.plist") + ": event 1: not a dictionary\n");
  EXPECT_THAT(namesIn(folder), IsEmpty());
}

TEST_F(ExportCommand, RefusesAStoreThatCannotBeRead) {
  const std::string folder = configureExport("Evening");
  writeFile(storePath(), "<plist>");
  EXPECT_EQ(run({"export", eventsFile()}).status, 1);
  EXPECT_THAT(namesIn(folder), IsEmpty());
}

TEST_F(ExportCommand, NeedsNoPermissionToChangeTheDataFolder) {
  const std::string before = contentOf(storePath());
  configureExport("Evening");
  runWell({"export", eventsFile()});
  EXPECT_EQ(contentOf(storePath()), before);
  EXPECT_THAT(namesIn(dataFolder()), ElementsAre("EPGItems.plist", "Evening.epgconf"));
}

}  // namespace epg::test
