#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "platform/CivilDate.h"
#include "platform/LocalCalendar.h"
#include "tests/platform/ZoneChange.h"
#include "tests/support/TimeZone.h"

namespace epg::test {
namespace {

std::string formatted(const std::string& format, const CivilDate& utc) {
  return DateFormatter(format).stringFromDate(LocalCalendar(),
                                              Instant::fromUnixTime(static_cast<double>(secondsSince1970(utc))));
}

TEST(DateFormatter, WritesThePartsThatTheFormatNames) {
  const struct {
    const char* behaviour;
    const char* format;
    CivilDate date;
    const char* expected;
  } rows[] = {
      {"leading zeros", "yyyyMMdd", {2012, 3, 4, 0, 0, 0}, "20120304"},
      {"a year of three digits", "yyyyMMdd", {900, 12, 31, 0, 0, 0}, "09001231"},
      {"a year of five digits", "yyyyMMdd", {12012, 3, 4, 0, 0, 0}, "120120304"},
      {"any order", "dd/MM/yyyy", {2012, 3, 4, 0, 0, 0}, "04/03/2012"},
      {"any other character stands for itself", "-yy M d yyy é%d\n", {2012, 3, 4, 0, 0, 0}, "-yy M d yyy é%d\n"},
      {"an empty format", "", {2012, 3, 4, 0, 0, 0}, ""},
      {"a part that stands again", "ddddMMMyyyyy", {2012, 3, 4, 0, 0, 0}, "040403M2012y"}};
  const TimeZone here("UTC");
  for (const auto& row : rows) EXPECT_EQ(formatted(row.format, row.date), row.expected) << row.behaviour;
}

TEST(DateFormatter, GoesByTheLocalDay) {
  const CivilDate lateInLondon{2012, 12, 31, 23, 30, 0};
  const TimeZone here("Europe/London");
  EXPECT_EQ(formatted("yyyyMMdd", lateInLondon), "20121231");
  changeZoneTo("Europe/Rome");
  EXPECT_EQ(formatted("yyyyMMdd", lateInLondon), "20130101");
  changeZoneTo("America/New_York");
  EXPECT_EQ(formatted("yyyyMMdd", CivilDate{2013, 1, 1, 4, 59, 59}), "20121231");
}

TEST(DateFormatter, FollowsAChangeOfTheZoneBetweenTwoDates) {
  const TimeZone here("Asia/Tokyo");
  const DateFormatter formatter("dd");
  const Instant date = Instant::fromUnixTime(15 * 3600);
  EXPECT_EQ(formatter.stringFromDate(LocalCalendar(), date), "02");
  changeZoneTo("UTC");
  EXPECT_EQ(formatter.stringFromDate(LocalCalendar(), date), "01");
}

TEST(DateFormatter, MidnightBelongsToTheNewDay) {
  const TimeZone here("Europe/Rome");
  EXPECT_EQ(formatted("yyyyMMdd", CivilDate{2012, 3, 24, 22, 59, 59}), "20120324");
  EXPECT_EQ(formatted("yyyyMMdd", CivilDate{2012, 3, 24, 23, 0, 0}), "20120325");
}

TEST(DateFormatter, IsEmptyForWhatIsNoTime) {
  const DateFormatter formatter("yyyyMMdd");
  EXPECT_EQ(formatter.stringFromDate(LocalCalendar(), Instant{std::nan("")}), "");
  EXPECT_EQ(formatter.stringFromDate(LocalCalendar(), Instant{std::numeric_limits<double>::infinity()}), "");
  EXPECT_EQ(formatter.stringFromDate(LocalCalendar(), Instant{-1e300}), "");
}

}  // namespace
}  // namespace epg::test
