#pragma once

#include <optional>
#include <string>

#include "platform/Instant.h"

namespace epg {

class LocalCalendar;

/// "2026-11-14 06:30:00 +0100": local time with its offset from UTC, without which an hour would be ambiguous when
/// clocks go back. "-" without an instant.
std::string localTimeText(const LocalCalendar& calendar, std::optional<Instant> instant);

/// "1:05:30" (hours, minutes, seconds).
std::string durationText(double seconds);

}  // namespace epg
