#include <gtest/gtest.h>
#include <time.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "export/DayFile.h"
#include "tests/support/Events.h"
#include "tests/support/TimeZone.h"

namespace epg::test {
namespace {

/// The children as "day 5, month 3, year 12".
std::string childrenOf(const XMLElement& element) {
  std::string children;
  for (const XMLElement& child : element.children) {
    EXPECT_TRUE(child.children.empty() && child.attributes.empty());
    children += (children.empty() ? "" : ", ") + child.name + " " + child.text;
  }
  return children;
}

std::string dateOf(std::optional<Instant> instant) {
  const XMLElement element = dateXMLElementWithDate(LocalCalendar(), instant);
  EXPECT_EQ("date", element.name);
  EXPECT_TRUE(element.attributes.empty());
  return childrenOf(element);
}

std::string timeOf(std::optional<Instant> instant) {
  const XMLElement element = timeXMLElementWithDate(LocalCalendar(), instant);
  EXPECT_EQ("time", element.name);
  EXPECT_TRUE(element.attributes.empty());
  return childrenOf(element);
}

std::string dateAt(double secondsSince1970) { return dateOf(Instant::fromUnixTime(secondsSince1970)); }
std::string timeAt(double secondsSince1970) { return timeOf(Instant::fromUnixTime(secondsSince1970)); }

class DateElementTest : public testing::Test {
 protected:
  TimeZone zone{"UTC"};
};

TEST_F(DateElementTest, HoldsDayMonthAndYearInThisOrder) { EXPECT_EQ("day 5, month 3, year 12", dateAt(1330925400)); }

TEST_F(DateElementTest, TimeHoldsHourAndMinuteInThisOrder) { EXPECT_EQ("hour 5, minute 30", timeAt(1330925400)); }

TEST_F(DateElementTest, YearIsTheYearLess2000) {
  EXPECT_EQ("day 1, month 1, year 9", dateAt(1230768000));       // 2009
  EXPECT_EQ("day 1, month 1, year 0", dateAt(946684800));        // 2000
  EXPECT_EQ("day 31, month 12, year -1", dateAt(946684799));     // 1999
  EXPECT_EQ("day 15, month 6, year -50", dateAt(-616850760));    // 1950
  EXPECT_EQ("day 1, month 7, year 100", dateAt(4118164200));     // 2100
  EXPECT_EQ("day 1, month 1, year -399", dateAt(-11644473600));  // 1601
}

TEST_F(DateElementTest, LeapDaysAreDays) {
  EXPECT_EQ("day 29, month 2, year 12", dateAt(1330473600));
  EXPECT_EQ("day 28, month 2, year 100", dateAt(4107542399));
  EXPECT_EQ("day 1, month 3, year 100", dateAt(4107542400));  // 2100 is no leap year.
}

TEST_F(DateElementTest, MidnightIsHourZeroAndMinuteZero) {
  EXPECT_EQ("hour 0, minute 0", timeAt(1330905600));
  EXPECT_EQ("day 5, month 3, year 12", dateAt(1330905600));
}

TEST_F(DateElementTest, TheLastSecondOfADayBelongsToIt) {
  EXPECT_EQ("hour 23, minute 59", timeAt(1330905599));
  EXPECT_EQ("day 4, month 3, year 12", dateAt(1330905599));
}

TEST_F(DateElementTest, NothingHasLeadingZeros) {
  for (int day = 0; day < 365; ++day) {
    const double instant = 1230768000 + day * days + day % 24 * hours + day % 60 * minutes;
    const auto seconds = static_cast<time_t>(instant);
    struct tm expected {};
    ASSERT_TRUE(::gmtime_r(&seconds, &expected));
    EXPECT_EQ("day " + std::to_string(expected.tm_mday) + ", month " + std::to_string(expected.tm_mon + 1) + ", year 9",
              dateAt(instant));
    EXPECT_EQ("hour " + std::to_string(expected.tm_hour) + ", minute " + std::to_string(expected.tm_min),
              timeAt(instant));
  }
}

TEST_F(DateElementTest, FractionsOfASecondAreCutOffTowardsThePast) {
  EXPECT_EQ("hour 23, minute 59", timeAt(1330905599.999));
  EXPECT_EQ("hour 23, minute 59", timeAt(-0.001));
  EXPECT_EQ("day 31, month 12, year -31", dateAt(-0.001));
}

TEST_F(DateElementTest, AnAbsentDateGivesEmptyElements) {
  EXPECT_EQ("day , month , year ", dateOf(std::nullopt));
  EXPECT_EQ("hour , minute ", timeOf(std::nullopt));
}

TEST_F(DateElementTest, ADateThatNoCalendarCountsGivesEmptyElements) {
  for (const double seconds : {std::nan(""), std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity(), 1e300, -1e300, 1e16, -1e16}) {
    EXPECT_EQ("day , month , year ", dateAt(seconds)) << seconds;
    EXPECT_EQ("hour , minute ", timeAt(seconds)) << seconds;
  }
}

struct LocalTime {
  const char* zone;
  double secondsSince1970;
  const char* date;
  const char* time;
};

class LocalTimeTest : public testing::TestWithParam<LocalTime> {};

TEST_P(LocalTimeTest, IsThatOfTheMachinesZone) {
  const LocalTime& expected = GetParam();
  const TimeZone zone(expected.zone);
  EXPECT_EQ(expected.date, dateAt(expected.secondsSince1970));
  EXPECT_EQ(expected.time, timeAt(expected.secondsSince1970));
}

// Computed with another implementation of the zone database than the system's own.
INSTANTIATE_TEST_SUITE_P(
    SpringForward, LocalTimeTest,
    testing::Values(LocalTime{"Europe/Berlin", 1332637199, "day 25, month 3, year 12", "hour 1, minute 59"},
                    LocalTime{"Europe/Berlin", 1332637200, "day 25, month 3, year 12", "hour 3, minute 0"},
                    LocalTime{"America/New_York", 1331449140, "day 11, month 3, year 12", "hour 1, minute 59"},
                    LocalTime{"America/New_York", 1331449200, "day 11, month 3, year 12", "hour 3, minute 0"},
                    // A day that begins at one in the morning.
                    LocalTime{"America/Sao_Paulo", 1350788340, "day 20, month 10, year 12", "hour 23, minute 59"},
                    LocalTime{"America/Sao_Paulo", 1350788400, "day 21, month 10, year 12", "hour 1, minute 0"}));
INSTANTIATE_TEST_SUITE_P(
    FallBack, LocalTimeTest,
    testing::Values(LocalTime{"Europe/Berlin", 1351380600, "day 28, month 10, year 12", "hour 1, minute 30"},
                    LocalTime{"Europe/Berlin", 1351384200, "day 28, month 10, year 12", "hour 2, minute 30"},
                    LocalTime{"Europe/Berlin", 1351387800, "day 28, month 10, year 12", "hour 2, minute 30"},
                    LocalTime{"Europe/Berlin", 1351391400, "day 28, month 10, year 12", "hour 3, minute 30"},
                    LocalTime{"America/New_York", 1352007000, "day 4, month 11, year 12", "hour 1, minute 30"},
                    LocalTime{"America/New_York", 1352010600, "day 4, month 11, year 12", "hour 1, minute 30"}));
INSTANTIATE_TEST_SUITE_P(
    OddOffsets, LocalTimeTest,
    testing::Values(LocalTime{"Asia/Kolkata", 1330972199, "day 5, month 3, year 12", "hour 23, minute 59"},
                    LocalTime{"Asia/Kolkata", 1330972200, "day 6, month 3, year 12", "hour 0, minute 0"},
                    LocalTime{"Asia/Kathmandu", 1330971300, "day 6, month 3, year 12", "hour 0, minute 0"},
                    LocalTime{"Pacific/Marquesas", 1330939740, "day 4, month 3, year 12", "hour 23, minute 59"},
                    LocalTime{"Pacific/Kiritimati", 1330941600, "day 6, month 3, year 12", "hour 0, minute 0"},
                    // A whole day was left out.
                    LocalTime{"Pacific/Apia", 1325239140, "day 29, month 12, year 11", "hour 23, minute 59"},
                    LocalTime{"Pacific/Apia", 1325239200, "day 31, month 12, year 11", "hour 0, minute 0"}));
INSTANTIATE_TEST_SUITE_P(
    FarYears, LocalTimeTest,
    testing::Values(LocalTime{"Europe/Berlin", -616850760, "day 15, month 6, year -50", "hour 13, minute 34"},
                    LocalTime{"Europe/London", -457707600, "day 1, month 7, year -45", "hour 12, minute 0"},
                    LocalTime{"Europe/London", -1800, "day 1, month 1, year -30", "hour 0, minute 30"},
                    LocalTime{"Europe/Berlin", 4118164200, "day 2, month 7, year 100", "hour 0, minute 30"},
                    LocalTime{"Europe/Berlin", 4102525800, "day 1, month 1, year 100", "hour 23, minute 30"},
                    // Local mean time, with an offset that holds seconds.
                    LocalTime{"Europe/Berlin", -2524521600, "day 1, month 1, year -110", "hour 0, minute 53"}));

}  // namespace
}  // namespace epg::test
