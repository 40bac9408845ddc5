#include <gtest/gtest.h>

#include <cmath>
#include <optional>

#include "plugin/EPGDorvaSelinManagerPlugin.h"
#include "tests/support/Events.h"
#include "tests/support/TimeZone.h"

namespace epg::test {
namespace {

bool sameDay(std::optional<Instant> first, std::optional<Instant> second) {
  const bool result = EPGDorvaSelinManagerPlugin::isDateEqualToDate(first, second);
  EXPECT_EQ(result, EPGDorvaSelinManagerPlugin::isDateEqualToDate(second, first)) << "depends on the order";
  return result;
}
bool sameDay(double first, double second) {
  return sameDay(Instant::fromUnixTime(first), Instant::fromUnixTime(second));
}

constexpr double fifthOfMarch = 1330905600;  // 2012, midnight UTC

class SameDayTest : public testing::Test {
 protected:
  TimeZone zone{"UTC"};
};

TEST_F(SameDayTest, TwoAbsentDatesAreEqual) { EXPECT_TRUE(sameDay(std::nullopt, std::nullopt)); }

TEST_F(SameDayTest, ADateAndNoDateDiffer) { EXPECT_FALSE(sameDay(Instant{0}, std::nullopt)); }

TEST_F(SameDayTest, TheTimeOfDayPlaysNoPart) {
  EXPECT_TRUE(sameDay(fifthOfMarch + minutes, fifthOfMarch + 23 * hours + 59 * minutes));
  EXPECT_TRUE(sameDay(fifthOfMarch, fifthOfMarch + 86399.999));
}

TEST_F(SameDayTest, TwoMinutesOverMidnightDiffer) {
  EXPECT_FALSE(sameDay(fifthOfMarch - minutes, fifthOfMarch + minutes));
  EXPECT_FALSE(sameDay(fifthOfMarch - 0.001, fifthOfMarch));
}

TEST_F(SameDayTest, TheSameDayOfAnotherMonthOrYearDiffers) {
  EXPECT_FALSE(sameDay(fifthOfMarch, fifthOfMarch + 31 * days));
  EXPECT_FALSE(sameDay(fifthOfMarch, fifthOfMarch + 365 * days));
}

TEST_F(SameDayTest, TheDayIsThatOfTheLocalZone) {
  const double evening = fifthOfMarch + 22.5 * hours;
  EXPECT_TRUE(sameDay(evening, evening + hours));
  const TimeZone berlin("Europe/Berlin");
  EXPECT_FALSE(sameDay(evening, evening + hours));
  EXPECT_TRUE(sameDay(fifthOfMarch - hours, fifthOfMarch));
}

TEST_F(SameDayTest, DaysOf23And25HoursAreOneDay) {
  const TimeZone berlin("Europe/Berlin");
  EXPECT_TRUE(sameDay(1332630000, 1332712799));
  EXPECT_FALSE(sameDay(1332630000, 1332712800));
  EXPECT_TRUE(sameDay(1351375200, 1351465199));
  EXPECT_FALSE(sameDay(1351375200, 1351465200));
}

TEST_F(SameDayTest, DatesThatAreNoNumbersAreNoDay) {
  EXPECT_FALSE(sameDay(std::nan(""), std::nan("")));
  EXPECT_FALSE(sameDay(std::nan(""), 0));
}

}  // namespace
}  // namespace epg::test
