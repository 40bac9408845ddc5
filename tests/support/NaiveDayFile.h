#pragma once

#include <optional>
#include <string>
#include <vector>

#include "export/DayFileElements.h"

namespace epg::test {

/// Appends the element on lines of its own, `level` steps of four spaces deep, line feeds between. An element that
/// holds only text stands on one line with it, an empty one as start tag and end tag. Attribute values stand between
/// double quotes, apostrophes stay as they are. False, with an undefined rest appended, when a value is not UTF-8.
bool appendXMLElement(std::string& document, const XMLElement& element, int level);

/// The day file in the plainest way, to be compared with: the elements of every event, serialised, and the apostrophe
/// pass over the whole document.
std::optional<std::string> naiveDayFile(const LocalCalendar& calendar, const DateFormatter& rootDateFormatter,
                                        const EPGItemStore& items, const std::vector<EPGEvent>& events,
                                        const PlaybackIDHash& hash = playbackIDHash);

}  // namespace epg::test
