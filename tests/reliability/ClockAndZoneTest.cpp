// Exports around midnight, on both nights when the clocks change, in zones with odd offsets, and with the zone changed
// between two exports: file name and times are those that a clock on the wall shows.

#include "platform/CivilDate.h"
#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

double utc(int year, int month, int day, int hour, int minute, int second = 0) {
  return static_cast<double>(secondsSince1970(CivilDate{year, month, day, hour, minute, second}));
}

class ClockAndZoneTest : public PluginTest {
 protected:
  void SetUp() override { put("E1", {{ZRLEPGDSTitleKey, "Title"}}); }

  /// The one file that an export at this moment leaves.
  std::string fileOfExportAt(double now) {
    for (const std::string& name : namesIn(exportFolder)) removeAll(exportFolder + "/" + name);
    environment.setNow(Instant::fromUnixTime(now));
    exportAndWait({eventAt("E1", now)});
    const std::vector<std::string> names = namesIn(exportFolder);
    return names.size() == 1 ? names.front() : "not one file";
  }

  std::vector<std::string> startsInFile(const std::vector<double>& starts) {
    environment.setNow(Instant::fromUnixTime(utc(2012, 3, 4, 6, 0)));  // The same day in every zone tried.
    std::vector<EPGEvent> events;
    for (const double start : starts) events.push_back(eventFromTo("E1", start, start + 60));
    exportAndWait(events);
    return dayFile().starts();
  }
};

TEST_F(ClockAndZoneTest, MidnightSeparatesTheFilesOfTwoDays) {
  TimeZone::use("Europe/Rome");
  EXPECT_EQ("20120304.xml", fileOfExportAt(utc(2012, 3, 4, 22, 59, 59)));
  EXPECT_EQ("20120305.xml", fileOfExportAt(utc(2012, 3, 4, 23, 0, 0)));
  EXPECT_EQ("20120304.xml", fileOfExportAt(utc(2012, 3, 4, 22, 59, 59) + 0.999));
}

TEST_F(ClockAndZoneTest, TheNightWhenClocksGoForwardSkipsAnHour) {
  TimeZone::use("Europe/Rome");
  EXPECT_EQ((std::vector<std::string>{"25.3.12 1:30", "25.3.12 1:59", "25.3.12 3:0", "25.3.12 3:30"}),
            startsInFile(
                {utc(2012, 3, 25, 0, 30), utc(2012, 3, 25, 0, 59), utc(2012, 3, 25, 1, 0), utc(2012, 3, 25, 1, 30)}));
}

TEST_F(ClockAndZoneTest, TheNightWhenClocksGoBackHasAnHourTwiceInTheOrderOfTime) {
  TimeZone::use("Europe/Rome");
  EXPECT_EQ(
      (std::vector<std::string>{"28.10.12 1:59", "28.10.12 2:30", "28.10.12 2:0", "28.10.12 2:30", "28.10.12 3:0"}),
      startsInFile({utc(2012, 10, 28, 2, 0), utc(2012, 10, 27, 23, 59), utc(2012, 10, 28, 1, 30),
                    utc(2012, 10, 28, 0, 30), utc(2012, 10, 28, 1, 0)}));
}

TEST_F(ClockAndZoneTest, OffsetsOfHalvesAndQuartersOfAnHour) {
  TimeZone::use("Asia/Kolkata");
  EXPECT_EQ((std::vector<std::string>{"1.1.12 5:30"}), startsInFile({utc(2012, 1, 1, 0, 0)}));
  TimeZone::use("Asia/Kathmandu");
  EXPECT_EQ((std::vector<std::string>{"1.1.12 5:45"}), startsInFile({utc(2012, 1, 1, 0, 0)}));
  TimeZone::use("Australia/Lord_Howe");  // Its clocks change by half an hour.
  EXPECT_EQ((std::vector<std::string>{"1.1.12 11:0", "1.7.12 10:30"}),
            startsInFile({utc(2012, 1, 1, 0, 0), utc(2012, 7, 1, 0, 0)}));
  TimeZone::use("Pacific/Kiritimati");
  EXPECT_EQ("20120305.xml", fileOfExportAt(utc(2012, 3, 4, 10, 0)));
}

TEST_F(ClockAndZoneTest, OffsetsOfTheirOwnTime) {
  TimeZone::use("Africa/Monrovia");  // 44 minutes and 30 seconds behind until 1972.
  EXPECT_EQ((std::vector<std::string>{"31.12.-31 23:15", "1.1.-20 0:0"}),
            startsInFile({utc(1970, 1, 1, 0, 0), utc(1980, 1, 1, 0, 0)}));
}

TEST_F(ClockAndZoneTest, AZoneChangedBetweenTwoExportsCountsFromTheNextOneOn) {
  TimeZone::use("America/New_York");
  EXPECT_EQ("20120304.xml", fileOfExportAt(utc(2012, 3, 5, 2, 0)));
  EXPECT_EQ((std::vector<std::string>{"4.3.12 21:0"}), dayFile().starts());
  TimeZone::use("Asia/Tokyo");
  EXPECT_EQ("20120305.xml", fileOfExportAt(utc(2012, 3, 5, 2, 0)));
}

TEST_F(ClockAndZoneTest, AClockThatGoesBackOnlyNamesTheFile) {
  EXPECT_EQ("20120304.xml", fileOfExportAt(utc(2012, 3, 4, 12, 0)));
  EXPECT_EQ("20120303.xml", fileOfExportAt(utc(2012, 3, 3, 12, 0)));
  EXPECT_EQ("19700101.xml", fileOfExportAt(0));
}

}  // namespace
}  // namespace epg::test
