#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Instant.h"

namespace epg {

/// The instant of a time in a guide: "YYYYMMDDhhmmss", optionally followed by a zone: "+hhmm", "-hhmm" or one of the
/// usual names ("BST" being +0100). Without a zone the time is UTC. Fields may be missing at the end, down to "YYYY";
/// they count as January, the 1st and midnight.
///
/// Nothing, with the reason in `problem`, for any other form, for a date that does not exist and for a zone name that
/// is unknown or ambiguous. A leap second counts as the first second of the next minute.
std::optional<Instant> instantFromXMLTVTime(std::string_view text, std::string* problem);

/// "YYYYMMDDhhmmss" in UTC, of an instant in the years 1 to 9999; fractions of a second are cut off.
std::string xmltvTimeInUTC(Instant instant);

}  // namespace epg
