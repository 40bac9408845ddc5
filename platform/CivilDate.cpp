#include "platform/CivilDate.h"

namespace epg {

namespace {

constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t daysPerEra = 146097;  // 400 years, after which the calendar repeats.

bool isLeapYear(std::int64_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

std::int64_t floorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b != 0 && (a < 0) != (b < 0) ? 1 : 0); }

/// Days from 1 March of the year 0 to 1 January 1970.
constexpr std::int64_t daysToEpoch = 719468;

/// Counting years from 1 March puts the leap day last, and the days before a month follow one line.
std::int64_t daysBeforeMonth(int monthFromMarch) { return (153 * monthFromMarch + 2) / 5; }

}  // namespace

int daysInMonth(std::int64_t year, int month) {
  static const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && isLeapYear(year) ? 29 : days[month - 1];
}

bool isValid(const CivilDate& date) {
  return date.month >= 1 && date.month <= 12 && date.day >= 1 && date.day <= daysInMonth(date.year, date.month) &&
         date.hour >= 0 && date.hour <= 23 && date.minute >= 0 && date.minute <= 59 && date.second >= 0 &&
         date.second <= 59;
}

std::int64_t secondsSince1970(const CivilDate& date) {
  const int monthFromMarch = (date.month + 9) % 12;
  const std::int64_t year = date.year - (date.month <= 2 ? 1 : 0);
  const std::int64_t era = floorDivide(year, 400);
  const std::int64_t yearOfEra = year - era * 400;
  const std::int64_t dayOfEra =
      yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + daysBeforeMonth(monthFromMarch) + date.day - 1;
  const std::int64_t days = era * daysPerEra + dayOfEra - daysToEpoch;
  return days * secondsPerDay + date.hour * 3600 + date.minute * 60 + date.second;
}

CivilDate civilDateFromSecondsSince1970(std::int64_t seconds) {
  const std::int64_t day = floorDivide(seconds, secondsPerDay);
  // Not by multiplying back, which the lowest of all seconds would not survive.
  const auto secondOfDay = static_cast<int>((seconds % secondsPerDay + secondsPerDay) % secondsPerDay);
  const std::int64_t days = day + daysToEpoch;
  const std::int64_t era = floorDivide(days, daysPerEra);
  const std::int64_t dayOfEra = days - era * daysPerEra;
  // Leap days so far are taken out before dividing by the length of a common year.
  const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const auto dayOfYear = static_cast<int>(dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100));
  const int monthFromMarch = (5 * dayOfYear + 2) / 153;

  CivilDate date;
  date.month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  date.day = dayOfYear - static_cast<int>(daysBeforeMonth(monthFromMarch)) + 1;
  date.year = yearOfEra + era * 400 + (date.month <= 2 ? 1 : 0);
  date.hour = secondOfDay / 3600;
  date.minute = secondOfDay / 60 % 60;
  date.second = secondOfDay % 60;
  return date;
}

}  // namespace epg
