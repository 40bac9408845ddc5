#include "export/DayFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "model/KeyConstants.h"
#include "platform/FetchAhead.h"
#include "xml/XMLText.h"

namespace epg {

namespace {

/// Writes what `xmlEventWithDictionary` describes without making the elements: their texts would be copied several
/// times, and each element takes memory of its own. The order of the parts, the markup and the white space are those of
/// the format, and hold no apostrophe.
class DayFileWriter {
 public:
  DayFileWriter(ByteSink& file, const LocalCalendar& calendar) : file_(file), calendar_(calendar) {}

  bool rootStart(const std::string& dateFrom, const std::string& dateTo) {
    file_.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<programs dateFrom=\"");
    if (!escaped(dateFrom, XMLContext::Attribute)) return false;
    file_.append("\" dateTo=\"");
    if (!escaped(dateTo, XMLContext::Attribute)) return false;
    file_.append("\">");
    return true;
  }

  void programStart() {
    if (!hasPrograms_) file_.append("\n");
    hasPrograms_ = true;
    file_.append("    <program");
  }

  void programID(std::size_t id) {
    file_.append(" id=\"");
    decimal(id);
    file_.append("\"");
  }

  bool programContent(std::optional<Instant> start, const PropertyListDictionary& item) {
    file_.append(">\n");
    dateAndTime(start);
    const ShownValues shown = shownValues(item);
    if (!value("        <title>", shown.title, "</title>\n") ||
        !value("        <description>", shown.description, "</description>\n") ||
        !value("        <imgUrl>", shown.imageURL, "</imgUrl>\n") || !tags(shown.tags)) {
      return false;
    }
    file_.append("    </program>\n");
    return true;
  }

  void rootEnd() { file_.append("</programs>\n"); }

 private:
  bool escaped(std::string_view text, XMLContext context) {
    return appendXMLText(file_, text, context, Apostrophes::AsReferences);
  }

  void decimal(std::uint64_t magnitude) {
    constexpr std::size_t mostDigits = 20;
    char digits[mostDigits];
    std::size_t first = mostDigits;
    // Two at a time: a hash has twenty, and each division waits for the one before.
    while (magnitude >= 100) {
      const auto pair = static_cast<unsigned>(magnitude % 100);
      magnitude /= 100;
      digits[--first] = static_cast<char>('0' + pair % 10);
      digits[--first] = static_cast<char>('0' + pair / 10);
    }
    if (magnitude >= 10) {
      digits[--first] = static_cast<char>('0' + magnitude % 10);
      magnitude /= 10;
    }
    digits[--first] = static_cast<char>('0' + magnitude);
    file_.append(std::string_view(digits + first, mostDigits - first));
  }

  void signedDecimal(std::int64_t number) {
    if (number < 0) file_.append("-");
    decimal(static_cast<std::uint64_t>(number < 0 ? -number : number));
  }

  void dateAndTime(std::optional<Instant> start) {
    const auto components = start ? calendar_.components(*start) : std::nullopt;
    const auto part = [&](int LocalCalendar::Components::*which, int less = 0) {
      if (components) signedDecimal((*components).*which - less);
    };
    file_.append("        <date>\n            <day>");
    part(&LocalCalendar::Components::day);
    file_.append("</day>\n            <month>");
    part(&LocalCalendar::Components::month);
    file_.append("</month>\n            <year>");
    part(&LocalCalendar::Components::year, 2000);
    file_.append("</year>\n        </date>\n        <time>\n            <hour>");
    part(&LocalCalendar::Components::hour);
    file_.append("</hour>\n            <minute>");
    part(&LocalCalendar::Components::minute);
    file_.append("</minute>\n        </time>\n");
  }

  /// What a day file shows of an item, as `stringValue` and `tagsValue` find it.
  struct ShownValues {
    std::optional<std::string_view> title, description, imageURL;
    const PropertyList::Elements* tags = nullptr;
  };

  /// In one walk, which is shorter than looking each of them up: items have few entries besides these.
  ShownValues shownValues(const PropertyListDictionary& item) const {
    ShownValues shown;
    for (const auto& [key, value] : item) {
      const std::string_view name = key;
      if (name == titleKey_) shown.title = value.asString();
      if (name == descriptionKey_) shown.description = value.asString();
      if (name == imageURLKey_) shown.imageURL = value.asString();
      if (name == tagsKey_) shown.tags = value.asArray();
    }
    return shown;
  }

  bool value(std::string_view startTag, std::optional<std::string_view> text, std::string_view endTag) {
    file_.append(startTag);
    if (text && !escaped(*text, XMLContext::Text)) return false;
    file_.append(endTag);
    return true;
  }

  bool tags(const PropertyList::Elements* list) {
    bool hasTags = false;
    file_.append("        <tags>");
    if (list) {
      for (const PropertyList& tag : *list) {
        const std::optional<std::string_view> name = tag.asString();
        if (!name) continue;
        if (!hasTags) file_.append("\n");
        hasTags = true;
        file_.append("            <tag>");
        if (!escaped(*name, XMLContext::Text)) return false;
        file_.append("</tag>\n");
      }
    }
    if (hasTags) file_.append("        ");
    file_.append("</tags>\n");
    return true;
  }

  const std::string_view titleKey_ = ZRLEPGDSTitleKey;
  const std::string_view descriptionKey_ = ZRLEPGDSDescriptionKey;
  const std::string_view imageURLKey_ = ZRLEPGDSImageURLKey;
  const std::string_view tagsKey_ = ZRLEPGDSTagsKey;
  ByteSink& file_;
  const LocalCalendar& calendar_;
  bool hasPrograms_ = false;
};

/// Events, their IDs and their items lie all over memory: the time to fetch them one after the other would be more than
/// that to write them. So a few are fetched at once, in steps of which each finds what the one before has fetched.
class EventsAhead {
 public:
  EventsAhead(const EventOrder& events, const EPGItemsAhead& itemsAhead) : events_(events), itemsAhead_(itemsAhead) {
    if (!itemsAhead_) return;
    fetchEvents(0);
    fetchEvents(few);
    fetchIDs(0);
    fetchItems(0);
    fetchEvents(2 * few);
    fetchIDs(few);
  }

  /// The next one to be written.
  void reach(std::size_t index) {
    if (!itemsAhead_ || index % few != 0) return;
    fetchEvents(index + 3 * few);
    fetchIDs(index + 2 * few);
    fetchItems(index + few);
  }

 private:
  /// Enough that the waiting for one is the waiting for all of them, and not so many that those fetched first are
  /// gone again when their turn comes.
  static constexpr std::size_t few = 16;
  static constexpr std::size_t usualID = 36;  ///< Bytes, of a UUID.

  std::size_t end(std::size_t index) const { return std::min(index + few, events_.size()); }

  void fetchEvents(std::size_t index) const {
    for (std::size_t i = index; i < end(index); ++i) fetchAhead(&events_[i], sizeof(EPGEvent));
  }

  void fetchIDs(std::size_t index) const {
    for (std::size_t i = index; i < end(index); ++i) {
      const EPGEvent& event = events_[i];
      if (event.eventEPGUniqueID) fetchAhead(event.eventEPGUniqueID->data(), usualID);
      if (event.eventEPGPlaybackUniqueID) fetchAhead(event.eventEPGPlaybackUniqueID->data(), usualID);
    }
  }

  void fetchItems(std::size_t index) {
    uniqueIDs_.clear();
    for (std::size_t i = index; i < end(index); ++i) {
      if (events_[i].eventEPGUniqueID) uniqueIDs_.push_back(&*events_[i].eventEPGUniqueID);
    }
    itemsAhead_(uniqueIDs_);
  }

  const EventOrder& events_;
  const EPGItemsAhead& itemsAhead_;
  std::vector<const std::string*> uniqueIDs_;
};

}  // namespace

bool writeDayFile(ByteSink& file, const LocalCalendar& calendar, const DateFormatter& rootDateFormatter,
                  const EPGItemLookup& itemWithUniqueID, const EventOrder& events, const PlaybackIDHash& hash,
                  const EPGItemsAhead& itemsAhead) {
  const auto rootDate = [&](std::optional<Instant> date) {
    return date ? rootDateFormatter.stringFromDate(*date) : std::string();
  };
  DayFileWriter writer(file, calendar);
  if (!writer.rootStart(events.empty() ? std::string() : rootDate(events[0].eventEPGStartDateTime),
                        events.empty() ? std::string() : rootDate(events[events.size() - 1].eventEPGEndDateTime))) {
    return false;
  }
  EventsAhead ahead(events, itemsAhead);
  for (std::size_t i = 0; i < events.size() && !file.failed(); ++i) {
    ahead.reach(i);
    const EPGEvent& event = events[i];
    if (!event.eventEPGUniqueID) continue;
    const auto item = itemWithUniqueID(*event.eventEPGUniqueID);
    if (!item) continue;
    const std::optional<std::string>& playbackID = event.eventEPGPlaybackUniqueID;
    writer.programStart();
    if (playbackID && !playbackID->empty()) writer.programID(hash(*playbackID));
    if (!writer.programContent(event.eventEPGStartDateTime, *item)) return false;
  }
  writer.rootEnd();
  return true;
}

std::optional<std::string> dayFileContent(const LocalCalendar& calendar, const DateFormatter& rootDateFormatter,
                                          const EPGItemLookup& itemWithUniqueID, const std::vector<EPGEvent>& events,
                                          const PlaybackIDHash& hash) {
  std::string content;
  StringSink sink(content);
  if (!writeDayFile(sink, calendar, rootDateFormatter, itemWithUniqueID, EventOrder(events), hash)) return std::nullopt;
  sink.flush();
  return content;
}

}  // namespace epg
