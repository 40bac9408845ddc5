#include "platform/LocalCalendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <sstream>
#include <string>

#include "platform/CivilDate.h"
#include "tests/platform/ZoneChange.h"
#include "tests/support/TimeZone.h"

namespace epg::test {
namespace {

double utc(std::int64_t year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return static_cast<double>(secondsSince1970(CivilDate{year, month, day, hour, minute, second}));
}

std::string text(const std::optional<LocalCalendar::Components>& components) {
  if (!components) return "(nothing)";
  std::ostringstream stream;
  stream << components->year << '-' << components->month << '-' << components->day << ' ' << components->hour << ':'
         << components->minute << ':' << components->second;
  return stream.str();
}

std::string local(double unixTime, SystemTime systemTime = SystemTime::Natural) {
  return text(LocalCalendar(systemZone(systemTime)).components(Instant::fromUnixTime(unixTime)));
}

/// Local minus universal time, in seconds.
double offsetAt(double unixTime) {
  const auto components = LocalCalendar().components(Instant::fromUnixTime(unixTime));
  if (!components) return std::nan("");
  return utc(components->year, components->month, components->day, components->hour, components->minute,
             components->second) -
         std::floor(unixTime);
}

double offsetIn(const std::string& zone, double unixTime) {
  const TimeZone here(zone);
  return offsetAt(unixTime);
}

constexpr double hours = 3600;

// Without the zone files every zone is UTC, and a day export is wrong by hours without a word.
TEST(LocalZoneFiles, AreInstalled) {
  EXPECT_DOUBLE_EQ(offsetIn("Europe/Rome", utc(2012, 7, 1)), 2 * hours) << "the package tzdata is missing";
  EXPECT_DOUBLE_EQ(offsetIn("America/New_York", utc(2012, 7, 1)), -4 * hours) << "the package tzdata is missing";
}

TEST(LocalCalendar, IsUTCWhereTheZoneIs) {
  const TimeZone here("UTC");
  EXPECT_EQ(local(utc(2012, 3, 4, 18, 5, 9)), "2012-3-4 18:5:9");
}

TEST(LocalCalendar, FollowsAChangeOfTheZone) {
  const TimeZone here("Europe/Rome");
  EXPECT_EQ(local(utc(2012, 1, 1, 12)), "2012-1-1 13:0:0");
  changeZoneTo("America/New_York");
  EXPECT_EQ(local(utc(2012, 1, 1, 12)), "2012-1-1 7:0:0");
  changeZoneTo("Asia/Tokyo");
  EXPECT_EQ(local(utc(2012, 1, 1, 12)), "2012-1-1 21:0:0");
}

TEST(LocalCalendar, TakesZonesThatAreRulesAndNoNames) {
  const TimeZone here("XST-1:30XDT,M3.5.0,M10.5.0");
  EXPECT_EQ(local(utc(2012, 1, 1, 12)), "2012-1-1 13:30:0");
  EXPECT_EQ(local(utc(2012, 7, 1, 12)), "2012-7-1 14:30:0");
}

TEST(LocalCalendar, KnowsTheNightsInWhichClocksChange) {
  const struct {
    const char* zone;
    CivilDate utc;
    const char* expected;
  } rows[] = {// Spring nights skip an hour.
              {"Europe/Rome", {2012, 3, 25, 0, 59, 59}, "2012-3-25 1:59:59"},
              {"Europe/Rome", {2012, 3, 25, 1, 0, 0}, "2012-3-25 3:0:0"},
              {"America/New_York", {2012, 3, 11, 6, 59, 59}, "2012-3-11 1:59:59"},
              {"America/New_York", {2012, 3, 11, 7, 0, 0}, "2012-3-11 3:0:0"},
              // Autumn nights have one twice.
              {"Europe/Rome", {2012, 10, 28, 0, 30, 0}, "2012-10-28 2:30:0"},
              {"Europe/Rome", {2012, 10, 28, 0, 59, 59}, "2012-10-28 2:59:59"},
              {"Europe/Rome", {2012, 10, 28, 1, 0, 0}, "2012-10-28 2:0:0"},
              {"Europe/Rome", {2012, 10, 28, 1, 30, 0}, "2012-10-28 2:30:0"},
              {"America/New_York", {2012, 11, 4, 5, 59, 59}, "2012-11-4 1:59:59"},
              {"America/New_York", {2012, 11, 4, 6, 0, 0}, "2012-11-4 1:0:0"},
              // By half an hour.
              {"Australia/Lord_Howe", {2012, 3, 31, 14, 59, 59}, "2012-4-1 1:59:59"},
              {"Australia/Lord_Howe", {2012, 3, 31, 15, 0, 0}, "2012-4-1 1:30:0"},
              // A day that a zone skipped.
              {"Pacific/Apia", {2011, 12, 30, 9, 59, 59}, "2011-12-29 23:59:59"},
              {"Pacific/Apia", {2011, 12, 30, 10, 0, 0}, "2011-12-31 0:0:0"}};
  for (const auto& row : rows) {
    const TimeZone here(row.zone);
    EXPECT_EQ(local(static_cast<double>(secondsSince1970(row.utc))), row.expected) << row.zone;
  }
}

TEST(LocalCalendar, KnowsTheOffsetsOfEveryZoneAndTime) {
  const struct {
    const char* zone;
    std::int64_t year;
    int month;
    double offset;
  } rows[] = {// Of half and quarter hours, and more than twelve.
              {"Asia/Kolkata", 2012, 7, 5.5 * hours},
              {"Asia/Kathmandu", 2012, 7, 5.75 * hours},
              {"Pacific/Chatham", 2012, 7, 12.75 * hours},
              {"Pacific/Kiritimati", 2012, 7, 14 * hours},
              // Of the nineteenth century.
              {"Europe/Rome", 1880, 1, 49 * 60 + 56},
              {"America/New_York", 1880, 1, -(4 * hours + 56 * 60 + 2)},
              // Before 1970.
              {"Europe/Rome", 1968, 7, 2 * hours},
              {"Europe/Rome", 1960, 7, 1 * hours},
              {"Europe/London", 1969, 1, 1 * hours},
              // Behind 2038.
              {"Europe/Rome", 2045, 7, 2 * hours},
              {"Europe/Rome", 2045, 1, 1 * hours},
              {"America/New_York", 2299, 7, -4 * hours}};
  for (const auto& row : rows) {
    EXPECT_DOUBLE_EQ(offsetIn(row.zone, utc(row.year, row.month, 1)), row.offset) << row.zone << " in " << row.year;
  }
}

TEST(LocalCalendar, FractionsCountToTheSecondBefore) {
  const TimeZone here("UTC");
  EXPECT_EQ(local(utc(2012, 3, 4, 18, 5, 9) + 0.999), "2012-3-4 18:5:9");
  EXPECT_EQ(local(-0.5), "1969-12-31 23:59:59");
}

TEST(LocalCalendar, HasNothingForWhatIsNoTime) {
  EXPECT_EQ(local(std::nan("")), "(nothing)");
  EXPECT_EQ(local(std::numeric_limits<double>::infinity()), "(nothing)");
  EXPECT_EQ(local(-std::numeric_limits<double>::infinity()), "(nothing)");
  EXPECT_EQ(local(std::numeric_limits<double>::max()), "(nothing)");
  EXPECT_EQ(local(-1e19), "(nothing)");
  EXPECT_EQ(local(1e19), "(nothing)");
}

TEST(LocalCalendar, CountsFiveDigitsOfYearsBothWays) {
  const TimeZone here("UTC");
  EXPECT_EQ(local(utc(99999, 12, 31, 23, 59, 59)), "99999-12-31 23:59:59");
  EXPECT_EQ(local(utc(100000, 1, 1)), "(nothing)");
  EXPECT_EQ(local(utc(-99999, 1, 1)), "-99999-1-1 0:0:0");
  EXPECT_EQ(local(utc(-99999, 1, 1) - 1), "(nothing)");
}

// Zones whose rules stay as they have been since 2009, the first year that the narrow clock may go back to.
class SteadyZone : public ::testing::TestWithParam<const char*> {};

/// At random times, the same ones in every run.
void expectSameInBothBetween(double first, double last) {
  std::mt19937_64 random(2038);
  std::uniform_real_distribution<double> seconds(first, last);
  for (int i = 0; i < 20000; ++i) {
    const double time = seconds(random);
    ASSERT_EQ(local(time, SystemTime::ThirtyTwoBits), local(time)) << std::fixed << time;
  }
}

TEST_P(SteadyZone, NarrowSystemTimeTellsTheSameTimesFrom1902Until2300) {
  const TimeZone here(GetParam());
  expectSameInBothBetween(utc(1902, 1, 1), utc(2038, 1, 19));
  expectSameInBothBetween(utc(2038, 1, 1), utc(2300, 1, 1));
}

TEST_P(SteadyZone, NarrowSystemTimeTellsEveryHourOf2040TheSame) {
  const TimeZone here(GetParam());
  for (double time = utc(2040, 1, 1); time < utc(2041, 1, 1); time += 1800) {
    ASSERT_EQ(local(time, SystemTime::ThirtyTwoBits), local(time)) << std::fixed << time;
  }
}

INSTANTIATE_TEST_SUITE_P(LocalCalendar, SteadyZone,
                         ::testing::Values("UTC", "Europe/Rome", "America/New_York", "Asia/Kolkata", "Asia/Kathmandu",
                                           "Australia/Lord_Howe", "Australia/Sydney", "Pacific/Auckland", "Asia/Tokyo",
                                           "Pacific/Chatham", "Europe/London"),
                         [](const auto& zone) {
                           std::string name = zone.param;
                           for (char& c : name) c = c == '/' ? '_' : c;
                           return name;
                         });

TEST(NarrowSystemTime, GoesOnAcrossItsOwnEnd) {
  const TimeZone here("Europe/Rome");
  constexpr auto narrow = SystemTime::ThirtyTwoBits;
  EXPECT_EQ(local(2147483647, narrow), "2038-1-19 4:14:7");
  EXPECT_EQ(local(2147483648.0, narrow), "2038-1-19 4:14:8");
  EXPECT_EQ(local(-2147483647, narrow), "1901-12-13 21:45:53");
}

TEST(NarrowSystemTime, KeepsTheFirstOffsetBeforeItsBeginning) {
  const TimeZone here("America/New_York");
  EXPECT_EQ(local(utc(1850, 1, 1, 12), SystemTime::ThirtyTwoBits), "1850-1-1 7:0:0");
}

TEST(NarrowSystemTime, CountsAsFarAsTheWideOne) {
  const TimeZone here("UTC");
  constexpr auto narrow = SystemTime::ThirtyTwoBits;
  EXPECT_EQ(local(utc(99999, 2, 28, 1, 2, 3), narrow), "99999-2-28 1:2:3");
  EXPECT_EQ(local(utc(96000, 2, 29, 1, 2, 3), narrow), "96000-2-29 1:2:3");
  EXPECT_EQ(local(utc(-99999, 1, 1), narrow), "-99999-1-1 0:0:0");
  EXPECT_EQ(local(std::nan(""), narrow), "(nothing)");
}

}  // namespace
}  // namespace epg::test
