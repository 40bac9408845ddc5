#pragma once

#include <optional>
#include <string>

#include "platform/Instant.h"

namespace epg {

class LocalCalendar;

/// "2026-11-14 06:30:00 +0100": the calendar's local time and its distance from UTC, which tells the two hours apart
/// that have the same name when clocks go back. "-" without an instant.
std::string localTimeText(const LocalCalendar& calendar, std::optional<Instant> instant);

/// "1:05:30" (hours, minutes, seconds).
std::string durationText(double seconds);

}  // namespace epg
