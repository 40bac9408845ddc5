#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Instant.h"

namespace epg {

/// The moment that a guide's time names: "YYYYMMDDhhmmss", or less of it by whole fields from "YYYY" on (what is
/// missing is the first of its kind: January, the 1st, midnight), then optionally a zone: "+hhmm", "-hhmm" or one
/// of the usual names ("BST" being +0100). Without a zone the time is UTC.
///
/// Nothing, with the reason in `problem`, for any other form, for a date that the calendar lacks and for a zone name
/// that is unknown or means different zones to different people. A leap second counts as the first second of the
/// next minute.
std::optional<Instant> instantFromXMLTVTime(std::string_view text, std::string* problem);

/// "YYYYMMDDhhmmss" in UTC, of an instant in the years 1 to 9999; fractions of a second are cut off.
std::string xmltvTimeInUTC(Instant instant);

}  // namespace epg
