#include "host/terminal/LocalTimeText.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "platform/CivilDate.h"
#include "platform/LocalCalendar.h"

namespace epg {

std::string localTimeText(const LocalCalendar& calendar, std::optional<Instant> instant) {
  const std::optional<LocalCalendar::Components> local = instant ? calendar.components(*instant) : std::nullopt;
  if (!local) return "-";
  const CivilDate date{local->year, local->month, local->day, local->hour, local->minute, local->second};
  const auto utc = static_cast<std::int64_t>(std::floor(instant->unixTime()));
  const auto minutesEast = static_cast<int>((secondsSince1970(date) - utc) / 60);
  char text[128];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d %c%02d%02d", local->year, local->month, local->day,
                local->hour, local->minute, local->second, minutesEast < 0 ? '-' : '+', std::abs(minutesEast) / 60,
                std::abs(minutesEast) % 60);
  return text;
}

std::string durationText(double seconds) {
  const auto whole = static_cast<std::int64_t>(std::llround(seconds));
  char text[64];
  std::snprintf(text, sizeof text, "%lld:%02d:%02d", static_cast<long long>(whole / 3600),
                static_cast<int>(whole / 60 % 60), static_cast<int>(whole % 60));
  return text;
}

}  // namespace epg
