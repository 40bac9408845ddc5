#pragma once

#include <optional>
#include <string>
#include <vector>

#include "export/DayFileElements.h"
#include "export/EventOrder.h"
#include "model/EPGEvent.h"
#include "model/EPGItemStore.h"
#include "platform/ByteSink.h"
#include "platform/LocalCalendar.h"

namespace epg {

/// Appends the whole day file, bytes as they are in the file: the elements of `xmlEventWithDictionary` in lines, each
/// level four spaces deeper, and every apostrophe as "&#39;". The events are written in the order given; "dateFrom" and
/// "dateTo" come from the first and the last of them. Items are looked up when their events' turn comes, a few at once.
///
/// False, with an undefined beginning appended, when a value is not UTF-8. Ends early when the sink fails.
bool writeDayFile(ByteSink& file, const LocalCalendar& calendar, const DateFormatter& rootDateFormatter,
                  const EPGItemStore& items, const EventOrder& events, const PlaybackIDHash& hash = playbackIDHash);

/// The same as a text. Nothing when a value is not UTF-8.
std::optional<std::string> dayFileContent(const LocalCalendar& calendar, const DateFormatter& rootDateFormatter,
                                          const EPGItemStore& items, const std::vector<EPGEvent>& events,
                                          const PlaybackIDHash& hash = playbackIDHash);

}  // namespace epg
