#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/DayFileOf.h"
#include "tests/support/DayFileReader.h"
#include "tests/support/Events.h"
#include "tests/support/TimeZone.h"
#include "tests/support/WorkedExample.h"

namespace epg::test {
namespace {

using testing::ElementsAre;

constexpr double fifthOfMarch = 1330905600;  // 2012, midnight UTC

class DayFileTest : public testing::Test {
 protected:
  std::string bytesOf(const std::vector<EPGEvent>& events) const {
    const auto bytes = items.dayFile(events);
    EXPECT_TRUE(bytes);
    return bytes.value_or("");
  }
  DayFile fileOf(const std::vector<EPGEvent>& events) const { return dayFileFrom(bytesOf(events)); }

  TimeZone zone{"UTC"};
  ItemsForDayFile items{Entries{{ZRLEPGDSTitleKey, "Title"}}};
};

TEST_F(DayFileTest, TwoEventsGiveExactlyThisFile) {
  const TimeZone berlin("Europe/Berlin");
  items.add("E1", {{ZRLEPGDSTitleKey, "Morning Prayer"},
                   {ZRLEPGDSDescriptionKey, "Live from studio 2"},
                   {ZRLEPGDSImageURLKey, "images/prayer.jpg"},
                   {ZRLEPGDSTagsKey, PropertyList::Array{"Live", "Family"}}});
  items.add("E2", {{ZRLEPGDSTitleKey, "Kids' Corner"}, {ZRLEPGDSDescriptionKey, "Q&A with guests"}});
  const std::string expected = workedExample();
  EXPECT_EQ(expected, bytesOf({withPlaybackID(eventFromTo("E1", 1330925400, 1330926900), "P-100"),
                               eventFromTo("E2", 1330985100, 1330989000)}));
  dayFileFrom(expected);
}

TEST_F(DayFileTest, NoEventsGiveEmptyDatesAndNoChildren) {
  EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<programs dateFrom=\"\" dateTo=\"\"></programs>\n",
            bytesOf({}));
  EXPECT_TRUE(fileOf({}).programs.empty());
}

TEST_F(DayFileTest, WithoutAnyItemTheRootHasItsDatesAndNoChildren) {
  EXPECT_EQ(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<programs dateFrom=\"05-03-2012\" dateTo=\"06-03-2012\"></programs>\n",
      bytesOf({eventAt("unknown", fifthOfMarch),
               eventFromTo("unknown too", fifthOfMarch + 23 * hours, fifthOfMarch + 25 * hours)}));
}

TEST_F(DayFileTest, OneEventGivesBothDates) {
  const DayFile file = fileOf({eventFromTo("E", fifthOfMarch + 23 * hours, fifthOfMarch + 25 * hours)});
  EXPECT_EQ("05-03-2012", file.dateFrom);
  EXPECT_EQ("06-03-2012", file.dateTo);
}

TEST_F(DayFileTest, DateToComesFromTheLastEventEvenWhenAnEarlierOneEndsLater) {
  const DayFile file = fileOf({eventFromTo("E", fifthOfMarch, fifthOfMarch + 50 * hours),
                               eventFromTo("E", fifthOfMarch + hours, fifthOfMarch + 2 * hours)});
  EXPECT_EQ("05-03-2012", file.dateTo);
}

TEST_F(DayFileTest, EventsWithoutAnItemAreLeftOutButCountAsFirstAndLast) {
  const DayFile file = fileOf({eventFromTo("unknown", fifthOfMarch, fifthOfMarch + hours),
                               eventFromTo("E", fifthOfMarch + 2 * days, fifthOfMarch + 2 * days + hours),
                               eventFromTo("unknown", fifthOfMarch + 4 * days, fifthOfMarch + 5 * days)});
  EXPECT_EQ("05-03-2012", file.dateFrom);
  EXPECT_EQ("10-03-2012", file.dateTo);
  EXPECT_THAT(file.starts(), ElementsAre("7.3.12 0:0"));
}

TEST_F(DayFileTest, AFirstEventWithoutAStartGivesAnEmptyDateFrom) {
  const DayFile file = fileOf({eventWithoutTimes("E"), eventFromTo("E", fifthOfMarch, fifthOfMarch + hours)});
  EXPECT_EQ("", file.dateFrom);
  EXPECT_EQ("05-03-2012", file.dateTo);
}

TEST_F(DayFileTest, ALastEventWithoutAnEndGivesAnEmptyDateTo) {
  const DayFile file = fileOf({eventFromTo("E", fifthOfMarch, fifthOfMarch + hours), eventAt("E", fifthOfMarch)});
  EXPECT_EQ("05-03-2012", file.dateFrom);
  EXPECT_EQ("", file.dateTo);
}

TEST_F(DayFileTest, TimesThatAreNoNumbersCountAsAbsent) {
  const double nan = std::nan("");
  const DayFile file = fileOf({eventFromTo("E", nan, nan)});
  EXPECT_EQ("", file.dateFrom);
  EXPECT_EQ("", file.dateTo);
  EXPECT_THAT(file.starts(), ElementsAre(".. :"));
}

TEST_F(DayFileTest, AnEventOverMidnightIsWrittenWithItsStart) {
  const DayFile file = fileOf({eventFromTo("E", fifthOfMarch + 23.5 * hours, fifthOfMarch + 24.5 * hours)});
  EXPECT_THAT(file.starts(), ElementsAre("5.3.12 23:30"));
}

TEST_F(DayFileTest, DatesOfTheRootHaveLeadingZerosAndFourDigitsForTheYear) {
  const DayFile file = fileOf({eventFromTo("E", 946684799, 1230768000)});
  EXPECT_EQ("31-12-1999", file.dateFrom);
  EXPECT_EQ("01-01-2009", file.dateTo);
}

TEST_F(DayFileTest, EventsStandInTheOrderOfTheList) {
  const DayFile file = fileOf(
      {eventAt("E", fifthOfMarch + 3 * hours), eventAt("E", fifthOfMarch), eventAt("E", fifthOfMarch + 2 * hours)});
  EXPECT_THAT(file.starts(), ElementsAre("5.3.12 3:0", "5.3.12 0:0", "5.3.12 2:0"));
}

TEST_F(DayFileTest, TheSameEntryMayStandManyTimes) {
  const EPGEvent event = withPlaybackID(eventAt("E", fifthOfMarch), "P");
  const DayFile file = fileOf({event, event, event});
  ASSERT_EQ(3U, file.programs.size());
  EXPECT_EQ(file.programs[0], file.programs[1]);
  EXPECT_EQ(file.programs[0], file.programs[2]);
}

TEST_F(DayFileTest, HasNoByteOrderMark) { EXPECT_EQ("<?xml", bytesOf({}).substr(0, 5)); }

TEST_F(DayFileTest, HasLineFeedsOnlyAndEndsWithOne) {
  const std::string bytes = bytesOf({eventAt("E", fifthOfMarch)});
  EXPECT_EQ(std::string::npos, bytes.find('\r'));
  EXPECT_EQ(std::string::npos, bytes.find('\t'));
  EXPECT_EQ("</programs>\n", bytes.substr(bytes.size() - 12));
}

TEST_F(DayFileTest, NeverUsesTheCompactFormOfAnEmptyElement) {
  items.add("empty", {});
  EXPECT_EQ(std::string::npos, bytesOf({eventWithoutTimes("empty")}).find("/>"));
}

TEST_F(DayFileTest, IsTheSameForTheSameEvents) {
  const std::vector<EPGEvent> events = {withPlaybackID(eventAt("E", fifthOfMarch), "P"), eventWithoutTimes("E")};
  EXPECT_EQ(bytesOf(events), bytesOf(events));
}

TEST_F(DayFileTest, FollowsTheZoneOfTheMachine) {
  const std::vector<EPGEvent> events = {eventFromTo("E", fifthOfMarch, fifthOfMarch)};
  {
    const TimeZone kolkata("Asia/Kolkata");
    EXPECT_THAT(fileOf(events).starts(), ElementsAre("5.3.12 5:30"));
  }
  const TimeZone newYork("America/New_York");
  const DayFile file = fileOf(events);
  EXPECT_THAT(file.starts(), ElementsAre("4.3.12 19:0"));
  EXPECT_EQ("04-03-2012", file.dateFrom);
  EXPECT_EQ("04-03-2012", file.dateTo);
}

TEST_F(DayFileTest, TheNightWhenTheClocksGoBackWritesTheSameHourTwice) {
  const TimeZone berlin("Europe/Berlin");
  const double halfPastTwo = 1351384200;
  EXPECT_THAT(fileOf({eventAt("E", halfPastTwo - hours), eventAt("E", halfPastTwo), eventAt("E", halfPastTwo + hours),
                      eventAt("E", halfPastTwo + 2 * hours)})
                  .starts(),
              ElementsAre("28.10.12 1:30", "28.10.12 2:30", "28.10.12 2:30", "28.10.12 3:30"));
}

TEST_F(DayFileTest, TheNightWhenTheClocksGoForwardSkipsAnHour) {
  const TimeZone berlin("Europe/Berlin");
  const double halfPastOne = 1332635400;
  EXPECT_THAT(
      fileOf({eventAt("E", halfPastOne), eventAt("E", halfPastOne + hours), eventAt("E", halfPastOne + 2 * hours)})
          .starts(),
      ElementsAre("25.3.12 1:30", "25.3.12 3:30", "25.3.12 4:30"));
}

}  // namespace
}  // namespace epg::test
