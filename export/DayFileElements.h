#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "export/XMLElement.h"
#include "model/EPGEvent.h"
#include "model/EPGItemStore.h"
#include "platform/LocalCalendar.h"
#include "plist/PropertyList.h"

namespace epg {

// The day file's elements, as docs/formats.md shows them. All read only their arguments.

/// "date" with "day", "month" and "year" (less 2000); the three are empty without a date.
XMLElement dateXMLElementWithDate(const LocalCalendar& calendar, std::optional<Instant> date);
/// "time" with "hour" and "minute"; both are empty without a date.
XMLElement timeXMLElementWithDate(const LocalCalendar& calendar, std::optional<Instant> date);
/// "tags" with one "tag" for each string of the list, in its order; empty without a list.
XMLElement tagsXMLElementWithTags(const PropertyList::Elements* tags);
/// The number behind "id": FNV-1a (Fowler, Noll, Vo; offset basis and prime as published for the width) over the
/// bytes of the playback ID, in the machine's word width.
std::size_t playbackIDHash(const std::string& playbackUniqueID);

/// What is behind "id" instead, where the platform has a hash of its own that other systems count on.
using PlaybackIDHash = std::function<std::size_t(const std::string& playbackUniqueID)>;

/// The "id" of a program; nothing when the event has no playback ID.
std::optional<std::size_t> programID(const EPGEvent& event, const PlaybackIDHash& hash);

/// "program", or nothing when the event has no EPG item.
std::optional<XMLElement> xmlEventWithDictionary(const LocalCalendar& calendar, const EPGItemStore& items,
                                                 const EPGEvent& event, const PlaybackIDHash& hash = playbackIDHash);

}  // namespace epg
