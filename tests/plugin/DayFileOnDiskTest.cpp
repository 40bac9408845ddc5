#include <sys/stat.h>
#include <unistd.h>

#include <locale>

#include "tests/support/NaiveDayFile.h"
#include "tests/support/PluginTest.h"
#include "tests/support/WorkedExample.h"

namespace epg::test {
namespace {

using testing::ElementsAre;

class DayFileOnDiskTest : public PluginTest {
 protected:
  DayFileOnDiskTest() { put("E1", {{ZRLEPGDSTitleKey, "One"}}); }
  /// The names in the export folder after an export at this moment, in seconds since 1970.
  std::vector<std::string> filesAfterExportAt(double now) {
    removeAll(exportFolder);
    folder.makeFolder("export");
    environment.setNow(Instant::fromUnixTime(now));
    exportAndWait(events);
    return namesIn(exportFolder);
  }
  const std::vector<EPGEvent> events{eventAt("E1", 1330905600)};
};

TEST_F(DayFileOnDiskTest, TheWorkedExampleIsExactlyThisFile) {
  const TimeZone berlin("Europe/Berlin");
  environment.setNow(Instant::fromUnixTime(1330880400));  // 4 March 2012, 18:00 in Berlin
  put("E1", {{ZRLEPGDSTitleKey, "Morning Prayer"},
             {ZRLEPGDSDescriptionKey, "Live from studio 2"},
             {ZRLEPGDSImageURLKey, "images/prayer.jpg"},
             {ZRLEPGDSTagsKey, PropertyList::Array{"Live", "Family"}}});
  put("E2", {{ZRLEPGDSTitleKey, "Kids' Corner"}, {ZRLEPGDSDescriptionKey, "Q&A with guests"}});
  exportAndWait(
      {withPlaybackID(eventFromTo("E1", 1330925400, 1330926900), "P-100"), eventFromTo("E2", 1330985100, 1330989000)});
  EXPECT_THAT(namesIn(exportFolder), ElementsAre("20120304.xml"));
  EXPECT_EQ(workedExample(), contentOf(dayFilePath()));
}

TEST_F(DayFileOnDiskTest, IsNamedAfterTheDayOfTheExportInEightDigits) {
  EXPECT_THAT(filesAfterExportAt(1330880400), ElementsAre("20120304.xml"));
  EXPECT_THAT(filesAfterExportAt(1230768000), ElementsAre("20090101.xml"));
  EXPECT_THAT(filesAfterExportAt(946684799), ElementsAre("19991231.xml"));
  EXPECT_THAT(filesAfterExportAt(4118164200), ElementsAre("21000701.xml"));
}

TEST_F(DayFileOnDiskTest, TheDayChangesAtLocalMidnight) {
  EXPECT_THAT(filesAfterExportAt(1330905599.999), ElementsAre("20120304.xml"));
  EXPECT_THAT(filesAfterExportAt(1330905600), ElementsAre("20120305.xml"));
  const TimeZone kolkata("Asia/Kolkata");
  EXPECT_THAT(filesAfterExportAt(1330885799), ElementsAre("20120304.xml"));
  EXPECT_THAT(filesAfterExportAt(1330885800), ElementsAre("20120305.xml"));
}

TEST_F(DayFileOnDiskTest, TheZoneMayChangeBetweenTwoExports) {
  EXPECT_THAT(filesAfterExportAt(1330902000), ElementsAre("20120304.xml"));  // 23:00 UTC
  const TimeZone berlin("Europe/Berlin");
  EXPECT_THAT(filesAfterExportAt(1330902000), ElementsAre("20120305.xml"));
  EXPECT_THAT(dayFileFrom(contentOf(exportFolder + "/20120305.xml")).starts(), ElementsAre("5.3.12 1:0"));
}

TEST_F(DayFileOnDiskTest, BothDaylightSavingNightsHaveOneNameEach) {
  const TimeZone berlin("Europe/Berlin");
  EXPECT_THAT(filesAfterExportAt(1332629999), ElementsAre("20120324.xml"));  // 23:59:59
  EXPECT_THAT(filesAfterExportAt(1332630000), ElementsAre("20120325.xml"));
  EXPECT_THAT(filesAfterExportAt(1332712799), ElementsAre("20120325.xml"));  // a day of 23 hours
  EXPECT_THAT(filesAfterExportAt(1332712800), ElementsAre("20120326.xml"));
  EXPECT_THAT(filesAfterExportAt(1351375200), ElementsAre("20121028.xml"));
  EXPECT_THAT(filesAfterExportAt(1351465199), ElementsAre("20121028.xml"));  // a day of 25 hours
  EXPECT_THAT(filesAfterExportAt(1351465200), ElementsAre("20121029.xml"));
}

TEST_F(DayFileOnDiskTest, ASecondExportOfTheDayReplacesTheFileWhole) {
  put("E1", {{ZRLEPGDSDescriptionKey, std::string(10000, 'x')}});
  exportAndWait({eventAt("E1", 1330905600), eventAt("E1", 1330909200)});
  put("E1", {{ZRLEPGDSTitleKey, "short"}});
  exportAndWait(events);
  EXPECT_THAT(namesIn(exportFolder), ElementsAre("20120304.xml"));
  EXPECT_THAT(dayFile().titles(), ElementsAre("short"));
}

TEST_F(DayFileOnDiskTest, TheSameExportTwiceGivesTheSameBytes) {
  exportAndWait(events);
  const std::string first = contentOf(dayFilePath());
  exportAndWait(events);
  EXPECT_EQ(first, contentOf(dayFilePath()));
}

TEST_F(DayFileOnDiskTest, OtherFilesInTheFolderAreLeftAlone) {
  writeFile(exportFolder + "/20120303.xml", "yesterday");
  writeFile(exportFolder + "/20120304.xml.bak", "backup");
  exportAndWait(events);
  EXPECT_EQ("yesterday", contentOf(exportFolder + "/20120303.xml"));
  EXPECT_EQ("backup", contentOf(exportFolder + "/20120304.xml.bak"));
  EXPECT_EQ(3U, namesIn(exportFolder).size());
}

TEST_F(DayFileOnDiskTest, AReaderFindsTheOldFileUntilTheNewOneIsWhole) {
  exportAndWait(events);
  const std::string old = contentOf(dayFilePath());
  put("E1", {{ZRLEPGDSTitleKey, "new"}});
  Gate gate;
  environment.holdBefore(Call::Flush, "20120304.xml", gate);
  plugin->exportEvents(events, "Test");
  gate.waitUntilHolding();
  EXPECT_EQ(old, contentOf(dayFilePath()));
  gate.open();
  environment.waitForThreads();
  EXPECT_THAT(dayFile().titles(), ElementsAre("new"));
}

TEST_F(DayFileOnDiskTest, ALinkInTheFilesPlaceIsReplacedAndNotFollowed) {
  const std::string outside = folder.file("outside");
  writeFile(outside, "untouched");
  ASSERT_EQ(0, ::symlink(outside.c_str(), dayFilePath().c_str()));
  exportAndWait(events);
  EXPECT_EQ("untouched", contentOf(outside));
  struct stat status {};
  ASSERT_EQ(0, ::lstat(dayFilePath().c_str(), &status));
  EXPECT_TRUE(S_ISREG(status.st_mode));
}

TEST_F(DayFileOnDiskTest, MayLieInTheDataFolder) {
  configure("Here", {{ZRLEPGDSConfigExportPath, dataFolder}});
  exportAndWait(events, "Here");
  EXPECT_THAT(namesIn(dataFolder), ElementsAre("20120304.xml", "Here.epgconf", "Test.epgconf"));
}

/// Numbers as some people write them, for everything that asks the process's locale.
class GroupedNumbers {
 public:
  GroupedNumbers() : before_(std::locale::global(std::locale(std::locale::classic(), new Grouping))) {}
  GroupedNumbers(const GroupedNumbers&) = delete;
  GroupedNumbers& operator=(const GroupedNumbers&) = delete;
  ~GroupedNumbers() { std::locale::global(before_); }

 private:
  struct Grouping : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\1"; }
    char do_decimal_point() const override { return ','; }
  };
  std::locale before_;
};

TEST_F(DayFileOnDiskTest, TheLocaleOfTheHostDoesNotShow) {
  put("E1", {{"rating", PropertyList::fromReal(1234.5)}, {"number", PropertyList::fromInteger(123456789)}});
  const std::vector<EPGEvent> one = {withPlaybackID(eventFromTo("E1", 1330905600, 1330909200), "P-100")};
  exportAndWait(one);
  save();
  const std::string file = contentOf(dayFilePath());
  const std::string store = contentOf(storePath());
  const GroupedNumbers grouped;
  start();
  EXPECT_EQ(PropertyList::fromReal(1234.5), *itemInStore("E1").find("rating"));
  exportAndWait(one);
  save();
  EXPECT_EQ(file, contentOf(dayFilePath()));
  EXPECT_EQ(store, contentOf(storePath()));
}

TEST_F(DayFileOnDiskTest, ShortDateStringIsTheDayInEightDigits) {
  EXPECT_EQ("20120304", plugin->shortDateStringWithDate(Instant::fromUnixTime(1330880400)));
  EXPECT_EQ("20090101", plugin->shortDateStringWithDate(Instant::fromUnixTime(1230768000)));
  EXPECT_EQ("19500615", plugin->shortDateStringWithDate(Instant::fromUnixTime(-616850760)));
}

TEST_F(DayFileOnDiskTest, TheElementsOfTheObjectAreThoseOfTheFile) {
  put("E1", {{ZRLEPGDSTitleKey, "One"}, {ZRLEPGDSTagsKey, PropertyList::Array{"Live"}}});
  const EPGEvent event = withPlaybackID(eventAt("E1", 1330905600), "P");
  exportAndWait({event});
  std::string program;
  ASSERT_TRUE(plugin->xmlEventWithDictionary(event));
  ASSERT_TRUE(appendXMLElement(program, *plugin->xmlEventWithDictionary(event), 1));
  EXPECT_THAT(contentOf(dayFilePath()), testing::HasSubstr(program));

  std::string parts;
  const PropertyList tags = PropertyList::Array{"Live"};
  ASSERT_TRUE(appendXMLElement(parts, plugin->dateXMLElementWithDate(event.eventEPGStartDateTime), 2));
  ASSERT_TRUE(appendXMLElement(parts, plugin->timeXMLElementWithDate(event.eventEPGStartDateTime), 2));
  EXPECT_THAT(program, testing::HasSubstr(parts));
  std::string tagsText;
  ASSERT_TRUE(appendXMLElement(tagsText, plugin->tagsXMLElementWithTags(tags.asArray()), 2));
  EXPECT_THAT(program, testing::HasSubstr(tagsText));
  EXPECT_FALSE(plugin->xmlEventWithDictionary(eventAt("unknown", 0)));
}

}  // namespace
}  // namespace epg::test
