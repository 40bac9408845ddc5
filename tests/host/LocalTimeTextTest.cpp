#include "host/terminal/LocalTimeText.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/LocalCalendar.h"
#include "tests/support/TimeZone.h"

namespace epg::test {

namespace {

std::string inZone(const std::string& zone, double unixTime) {
  const TimeZone local(zone);
  return localTimeText(LocalCalendar(), Instant::fromUnixTime(unixTime));
}

}  // namespace

TEST(LocalTimeText, IsTheLocalTimeWithItsDistanceFromUTC) {
  EXPECT_EQ(inZone("UTC", 999043500), "2001-08-29 00:05:00 +0000");
  EXPECT_EQ(inZone("Europe/Berlin", 999043500), "2001-08-29 02:05:00 +0200");
  EXPECT_EQ(inZone("America/St_Johns", 999043500), "2001-08-28 21:35:00 -0230");
  EXPECT_EQ(inZone("Asia/Kathmandu", 999043500.9), "2001-08-29 05:50:00 +0545");
  EXPECT_EQ(inZone("UTC", -1), "1969-12-31 23:59:59 +0000");
}

TEST(LocalTimeText, TellsTheTwoHoursApartWhenClocksGoBack) {
  EXPECT_EQ(inZone("Europe/Berlin", 1792888200), "2026-10-25 02:30:00 +0200");
  EXPECT_EQ(inZone("Europe/Berlin", 1792891800), "2026-10-25 02:30:00 +0100");
}

TEST(LocalTimeText, IsADashWithoutATime) {
  EXPECT_EQ(localTimeText(LocalCalendar(), std::nullopt), "-");
  EXPECT_EQ(localTimeText(LocalCalendar(), Instant{std::nan("")}), "-");
}

TEST(DurationText, CountsHoursMinutesAndSeconds) {
  EXPECT_EQ(durationText(0), "0:00:00");
  EXPECT_EQ(durationText(59.6), "0:01:00");
  EXPECT_EQ(durationText(3661), "1:01:01");
  EXPECT_EQ(durationText(360000), "100:00:00");
}

}  // namespace epg::test
