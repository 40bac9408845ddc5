#include "platform/CivilDate.h"

#include <gtest/gtest.h>
#include <time.h>

#include <cstdint>
#include <limits>
#include <ostream>
#include <random>

namespace epg {

inline bool operator==(const CivilDate& a, const CivilDate& b) {
  return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour && a.minute == b.minute &&
         a.second == b.second;
}

inline void PrintTo(const CivilDate& date, std::ostream* out) {
  *out << date.year << '-' << date.month << '-' << date.day << ' ' << date.hour << ':' << date.minute << ':'
       << date.second;
}

namespace test {
namespace {

/// What the C library makes of the same second.
CivilDate libraryDate(std::int64_t seconds) {
  const auto time = static_cast<time_t>(seconds);
  struct tm fields {};
  EXPECT_NE(::gmtime_r(&time, &fields), nullptr);
  return CivilDate{fields.tm_year + std::int64_t{1900},
                   fields.tm_mon + 1,
                   fields.tm_mday,
                   fields.tm_hour,
                   fields.tm_min,
                   fields.tm_sec};
}

std::int64_t librarySeconds(const CivilDate& date) {
  struct tm fields {};
  fields.tm_year = static_cast<int>(date.year - 1900);
  fields.tm_mon = date.month - 1;
  fields.tm_mday = date.day;
  fields.tm_hour = date.hour;
  fields.tm_min = date.minute;
  fields.tm_sec = date.second;
  return std::int64_t{::timegm(&fields)};
}

void expectLikeTheLibrary(std::int64_t seconds) {
  const CivilDate date = civilDateFromSecondsSince1970(seconds);
  EXPECT_EQ(date, libraryDate(seconds)) << seconds;
  EXPECT_EQ(librarySeconds(date), seconds);
  EXPECT_EQ(secondsSince1970(date), seconds);
  EXPECT_TRUE(isValid(date)) << seconds;
}

TEST(CivilDateCount, StartsIn1970) {
  EXPECT_EQ(secondsSince1970(CivilDate{1970, 1, 1, 0, 0, 0}), 0);
  EXPECT_EQ(civilDateFromSecondsSince1970(0), (CivilDate{1970, 1, 1, 0, 0, 0}));
}

TEST(CivilDateCount, KnowsTheReferenceDate) { EXPECT_EQ(secondsSince1970(CivilDate{2001, 1, 1, 0, 0, 0}), 978307200); }

TEST(CivilDateCount, GoesOnBefore1970) {
  EXPECT_EQ(civilDateFromSecondsSince1970(-1), (CivilDate{1969, 12, 31, 23, 59, 59}));
  EXPECT_EQ(civilDateFromSecondsSince1970(-86400), (CivilDate{1969, 12, 31, 0, 0, 0}));
  EXPECT_EQ(civilDateFromSecondsSince1970(-86401), (CivilDate{1969, 12, 30, 23, 59, 59}));
}

TEST(CivilDateCount, GoesOnAfter2038) {
  EXPECT_EQ(civilDateFromSecondsSince1970(std::int64_t{1} << 31), (CivilDate{2038, 1, 19, 3, 14, 8}));
}

TEST(CivilDateCount, EqualsTheLibraryOnBothSidesOfEveryNewYear) {
  for (std::int64_t year = -800; year <= 4000; ++year) {
    const std::int64_t start = secondsSince1970(CivilDate{year, 1, 1, 0, 0, 0});
    expectLikeTheLibrary(start);
    expectLikeTheLibrary(start - 1);
  }
}

TEST(CivilDateCount, EqualsTheLibraryOnBothSidesOfEveryFirstOfMarch) {
  for (std::int64_t year = -800; year <= 4000; ++year) {
    const std::int64_t start = secondsSince1970(CivilDate{year, 3, 1, 0, 0, 0});
    expectLikeTheLibrary(start);
    expectLikeTheLibrary(start - 1);
  }
}

TEST(CivilDateCount, EqualsTheLibraryOnEveryDayOf400Years) {
  const std::int64_t start = secondsSince1970(CivilDate{1899, 12, 31, 12, 34, 56});
  for (std::int64_t day = 0; day < 146098; ++day) {
    const std::int64_t seconds = start + day * 86400;
    ASSERT_EQ(civilDateFromSecondsSince1970(seconds), libraryDate(seconds)) << seconds;
  }
}

TEST(CivilDateCount, EqualsTheLibraryAtRandom) {
  std::mt19937_64 random(20120304);
  std::uniform_int_distribution<std::int64_t> seconds(-4000000000000, 4000000000000);
  for (int i = 0; i < 50000; ++i) expectLikeTheLibrary(seconds(random));
}

TEST(CivilDateCount, HoldsEverySecondOfSixtyFourBits) {
  for (const std::int64_t seconds :
       {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::min() + 1,
        std::numeric_limits<std::int64_t>::max()}) {
    const CivilDate date = civilDateFromSecondsSince1970(seconds);
    EXPECT_TRUE(isValid(date));
    EXPECT_EQ(date.year < 0, seconds < 0);
  }
}

TEST(CivilDateMonths, HaveTheirLengths) {
  const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (int month = 1; month <= 12; ++month) EXPECT_EQ(daysInMonth(2011, month), lengths[month - 1]);
}

TEST(CivilDateMonths, FebruaryIsLongerInLeapYears) {
  for (const std::int64_t year : {2012, 2000, 1600, 0, -4, -400}) EXPECT_EQ(daysInMonth(year, 2), 29) << year;
  for (const std::int64_t year : {2011, 1900, 2100, 1, -1, -100}) EXPECT_EQ(daysInMonth(year, 2), 28) << year;
}

TEST(CivilDateFields, AtTheirEndsAreValid) {
  EXPECT_TRUE(isValid(CivilDate{2012, 1, 1, 0, 0, 0}));
  EXPECT_TRUE(isValid(CivilDate{2012, 12, 31, 23, 59, 59}));
  EXPECT_TRUE(isValid(CivilDate{2012, 2, 29, 0, 0, 0}));
  EXPECT_TRUE(isValid(CivilDate{-99999, 4, 30, 0, 0, 0}));
}

TEST(CivilDateFields, BeyondTheirEndsAreNot) {
  for (const CivilDate& date :
       {CivilDate{2012, 0, 1, 0, 0, 0}, CivilDate{2012, 13, 1, 0, 0, 0}, CivilDate{2012, 1, 0, 0, 0, 0},
        CivilDate{2012, 1, 32, 0, 0, 0}, CivilDate{2012, 4, 31, 0, 0, 0}, CivilDate{2011, 2, 29, 0, 0, 0},
        CivilDate{2012, 1, 1, -1, 0, 0}, CivilDate{2012, 1, 1, 24, 0, 0}, CivilDate{2012, 1, 1, 0, -1, 0},
        CivilDate{2012, 1, 1, 0, 60, 0}, CivilDate{2012, 1, 1, 0, 0, -1}, CivilDate{2012, 1, 1, 0, 0, 60},
        CivilDate{2012, -1, 1, 0, 0, 0}}) {
    EXPECT_FALSE(isValid(date)) << ::testing::PrintToString(date);
  }
}

}  // namespace
}  // namespace test
}  // namespace epg
