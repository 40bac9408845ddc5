#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "export/DayFileElements.h"
#include "export/EventOrder.h"
#include "model/EPGEvent.h"
#include "platform/ByteSink.h"
#include "platform/LocalCalendar.h"

namespace epg {

/// Is told, a few EPG unique IDs at a time, whose items are going to be looked up next, so that what lies far away in
/// memory can be fetched for all of them at once.
using EPGItemsAhead = std::function<void(const std::vector<const std::string*>& uniqueIDs)>;

/// Appends the whole day file, bytes as they are in the file: the elements of `xmlEventWithDictionary` in lines, each
/// level four spaces deeper, and every apostrophe as "&#39;". The events are written in the order given; "dateFrom" and
/// "dateTo" come from the first and the last of them. Each item is looked up when its event's turn comes.
///
/// False, with an undefined beginning appended, when a value is not UTF-8. Ends early when the sink fails.
bool writeDayFile(ByteSink& file, const LocalCalendar& calendar, const DateFormatter& rootDateFormatter,
                  const EPGItemLookup& itemWithUniqueID, const EventOrder& events,
                  const PlaybackIDHash& hash = playbackIDHash, const EPGItemsAhead& itemsAhead = {});

/// The same as a text. Nothing when a value is not UTF-8.
std::optional<std::string> dayFileContent(const LocalCalendar& calendar, const DateFormatter& rootDateFormatter,
                                          const EPGItemLookup& itemWithUniqueID, const std::vector<EPGEvent>& events,
                                          const PlaybackIDHash& hash = playbackIDHash);

}  // namespace epg
