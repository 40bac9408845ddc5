#include "platform/LocalCalendar.h"

#include <time.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>

#include "platform/CivilDate.h"

namespace epg {

namespace {

/// The years that the calendar is asked for; all that a four-digit file name and the root's dates can hold, with
/// room to spare, and far from the ends of every type on the way.
constexpr std::int64_t firstYear = -99999;
constexpr std::int64_t lastYear = 99999;

int weekdayOfFirst(std::int64_t year, int month) {
  constexpr int thursday = 4;  // 1 January 1970
  const std::int64_t days = secondsSince1970(CivilDate{year, month, 1, 0, 0, 0}) / 86400;
  return static_cast<int>(((days + thursday) % 7 + 7) % 7);
}

/// The same moment in one of the last years before 2038, with the same weekdays: daylight-saving rules for years to
/// come go by these alone. Before and after the leap day each part of the year is looked for by itself, so that no
/// year is further back than rules have stayed the same.
std::int64_t sameTimeBefore2038(std::int64_t seconds) {
  const CivilDate wanted = civilDateFromSecondsSince1970(seconds);
  const int part = wanted.month < 3 ? 1 : 3;
  std::int64_t year = 2037;
  while (weekdayOfFirst(year, part) != weekdayOfFirst(wanted.year, part)) --year;
  return seconds - secondsSince1970(CivilDate{wanted.year, part, 1, 0, 0, 0}) +
         secondsSince1970(CivilDate{year, part, 1, 0, 0, 0});
}

class SystemZone : public LocalZone {
 public:
  explicit SystemZone(SystemTime systemTime) : narrow_(systemTime == SystemTime::ThirtyTwoBits || sizeof(time_t) < 8) {
    ::tzset();
  }

  std::optional<std::int64_t> secondsAheadOfUTC(std::int64_t secondsSince1970) const override {
    std::int64_t countable = secondsSince1970;
    if (narrow_) {
      constexpr std::int64_t latest = std::numeric_limits<std::int32_t>::max();
      if (countable > latest) countable = sameTimeBefore2038(countable);
      if (countable < -latest) countable = -latest;
    }
    const auto systemSeconds = static_cast<time_t>(countable);
    struct tm local {};
    if (!::localtime_r(&systemSeconds, &local)) return std::nullopt;
    return local.tm_gmtoff;
  }

 private:
  bool narrow_;
};

}  // namespace

std::shared_ptr<const LocalZone> systemZone(SystemTime systemTime) { return std::make_shared<SystemZone>(systemTime); }

std::optional<LocalCalendar::Components> LocalCalendar::components(Instant instant) const {
  const double seconds = std::floor(instant.unixTime());
  static const auto first = static_cast<double>(secondsSince1970(CivilDate{firstYear, 1, 1, 0, 0, 0}));
  static const auto end = static_cast<double>(secondsSince1970(CivilDate{lastYear + 1, 1, 1, 0, 0, 0}));
  if (!(seconds >= first && seconds < end)) return std::nullopt;

  const auto wanted = static_cast<std::int64_t>(seconds);
  const std::optional<std::int64_t> ahead = zone_->secondsAheadOfUTC(wanted);
  if (!ahead) return std::nullopt;
  const CivilDate date = civilDateFromSecondsSince1970(wanted + *ahead);
  Components components;
  components.year = static_cast<int>(date.year);
  components.month = date.month;
  components.day = date.day;
  components.hour = date.hour;
  components.minute = date.minute;
  components.second = date.second;
  return components;
}

bool isSameCalendarDay(const LocalCalendar& calendar, std::optional<Instant> first, std::optional<Instant> second) {
  if (!first || !second) return !first && !second;
  const auto one = calendar.components(*first);
  const auto other = calendar.components(*second);
  return one && other && one->year == other->year && one->month == other->month && one->day == other->day;
}

std::string DateFormatter::stringFromDate(const LocalCalendar& calendar, Instant date) const {
  const std::optional<LocalCalendar::Components> components = calendar.components(date);
  if (!components) return {};
  std::string text;
  std::size_t at = 0;
  const auto field = [&](const char* name, int value, int width) {
    const std::string wanted = name;
    if (format_.compare(at, wanted.size(), wanted) != 0) return false;
    char digits[16];
    std::snprintf(digits, sizeof digits, "%0*d", width, value);
    text += digits;
    at += wanted.size();
    return true;
  };
  while (at < format_.size()) {
    if (field("yyyy", components->year, 4) || field("MM", components->month, 2) || field("dd", components->day, 2)) {
      continue;
    }
    text += format_[at++];
  }
  return text;
}

}  // namespace epg
