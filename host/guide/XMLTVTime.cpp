#include "host/guide/XMLTVTime.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "host/terminal/LineText.h"
#include "platform/CivilDate.h"

namespace epg {

namespace {

constexpr int offset(int hours, int minutes = 0) { return hours * 60 + (hours < 0 ? -minutes : minutes); }

/// Names that mean the same zone in all guides. Left out on purpose because they do not: IST (India, Ireland, Israel),
/// AST and ADT (Atlantic, Arabia), GST, SST and the like.
const struct {
  const char* name;
  int minutes;
} namedZones[] = {
    {"Z", 0},
    {"UT", 0},
    {"UTC", 0},
    {"GMT", 0},
    {"WET", 0},
    {"WEST", offset(1)},
    {"BST", offset(1)},
    {"CET", offset(1)},
    {"CEST", offset(2)},
    {"MET", offset(1)},
    {"MEST", offset(2)},
    {"EET", offset(2)},
    {"EEST", offset(3)},
    {"MSK", offset(3)},
    {"SAST", offset(2)},
    {"NST", offset(-3, 30)},
    {"NDT", offset(-2, 30)},
    {"EST", offset(-5)},
    {"EDT", offset(-4)},
    {"CST", offset(-6)},
    {"CDT", offset(-5)},
    {"MST", offset(-7)},
    {"MDT", offset(-6)},
    {"PST", offset(-8)},
    {"PDT", offset(-7)},
    {"AKST", offset(-9)},
    {"AKDT", offset(-8)},
    {"HST", offset(-10)},
    {"AWST", offset(8)},
    {"ACST", offset(9, 30)},
    {"ACDT", offset(10, 30)},
    {"AEST", offset(10)},
    {"AEDT", offset(11)},
    {"NZST", offset(12)},
    {"NZDT", offset(13)},
    {"JST", offset(9)},
    {"KST", offset(9)},
    {"HKT", offset(8)},
    {"SGT", offset(8)},
};

bool isDigit(char c) { return c >= '0' && c <= '9'; }

int number(std::string_view digits, std::size_t from, std::size_t length) {
  int value = 0;
  for (std::size_t i = from; i < from + length; ++i) value = value * 10 + (digits[i] - '0');
  return value;
}

/// Minutes east of UTC.
std::optional<int> zoneOffset(std::string_view zone, std::string* problem) {
  if (zone.empty()) return 0;
  if (zone[0] == '+' || zone[0] == '-') {
    const bool fourDigits = zone.size() == 5 && std::all_of(zone.begin() + 1, zone.end(), isDigit);
    const int hours = fourDigits ? number(zone, 1, 2) : 0;
    const int minutes = fourDigits ? number(zone, 3, 2) : 0;
    // No place on Earth is further from UTC than fourteen hours.
    if (!fourDigits || minutes > 59 || hours * 60 + minutes > offset(14)) {
      *problem = "\"" + std::string(zone) + "\" is no offset from UTC of the form +hhmm or -hhmm";
      return std::nullopt;
    }
    return zone[0] == '-' ? -(hours * 60 + minutes) : hours * 60 + minutes;
  }
  std::string name(zone);
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  for (const auto& named : namedZones) {
    if (name == named.name) return named.minutes;
  }
  *problem = "the time zone \"" + std::string(zone) + "\" is unknown or ambiguous";
  return std::nullopt;
}

/// The date and time in the digits. For a leap second it is the second before, and `leapSecond` is set.
std::optional<CivilDate> civilDate(std::string_view digits, bool* leapSecond) {
  const std::size_t length = digits.size();
  if (length < 4 || length > 14 || length % 2 != 0) return std::nullopt;
  CivilDate date;
  date.year = number(digits, 0, 4);
  if (length >= 6) date.month = number(digits, 4, 2);
  if (length >= 8) date.day = number(digits, 6, 2);
  if (length >= 10) date.hour = number(digits, 8, 2);
  if (length >= 12) date.minute = number(digits, 10, 2);
  if (length >= 14) date.second = number(digits, 12, 2);
  *leapSecond = date.second == 60;
  if (*leapSecond) date.second = 59;
  if (date.year < 1 || !isValid(date)) return std::nullopt;
  return date;
}

}  // namespace

std::optional<Instant> instantFromXMLTVTime(std::string_view text, std::string* problem) {
  const std::string_view time = strippedOfWhiteSpace(text);
  const auto digits = static_cast<std::size_t>(std::find_if_not(time.begin(), time.end(), isDigit) - time.begin());
  bool leapSecond = false;
  const std::optional<CivilDate> date = civilDate(time.substr(0, digits), &leapSecond);
  if (!date) {
    *problem = "\"" + std::string(time) + "\" is no time of the form YYYYMMDDhhmmss, with or without a zone";
    return std::nullopt;
  }
  const std::optional<int> zone = zoneOffset(strippedOfWhiteSpace(time.substr(digits)), problem);
  if (!zone) return std::nullopt;
  const std::int64_t seconds = secondsSince1970(*date) + (leapSecond ? 1 : 0) - std::int64_t{*zone} * 60;
  return Instant::fromUnixTime(static_cast<double>(seconds));
}

std::string xmltvTimeInUTC(Instant instant) {
  const CivilDate date = civilDateFromSecondsSince1970(static_cast<std::int64_t>(std::floor(instant.unixTime())));
  char text[80];
  std::snprintf(text, sizeof text, "%04d%02d%02d%02d%02d%02d", static_cast<int>(date.year), date.month, date.day,
                date.hour, date.minute, date.second);
  return text;
}

}  // namespace epg
