#pragma once

#include <cstdint>

namespace epg {

/// A date and time of day in the Gregorian calendar (also before its time), in no zone or in UTC.
struct CivilDate {
  std::int64_t year = 1970;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

int daysInMonth(std::int64_t year, int month);

/// Whether every field is in its range and the day exists in its month.
bool isValid(const CivilDate& date);

/// Seconds from 1 January 1970, 00:00:00, leap seconds not counted. Needs a valid date in the years that 64 bits hold.
std::int64_t secondsSince1970(const CivilDate& date);
CivilDate civilDateFromSecondsSince1970(std::int64_t seconds);

}  // namespace epg
