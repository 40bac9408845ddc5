#include "export/DayFile.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "model/EPGItem.h"
#include "model/KeyConstants.h"
#include "platform/XMLText.h"

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
    if (!value("        <title>", item, ZRLEPGDSTitleKey, "</title>\n") ||
        !value("        <description>", item, ZRLEPGDSDescriptionKey, "</description>\n") ||
        !value("        <imgUrl>", item, ZRLEPGDSImageURLKey, "</imgUrl>\n") || !tags(item)) {
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
    do {
      digits[--first] = static_cast<char>('0' + magnitude % 10);
      magnitude /= 10;
    } while (magnitude != 0);
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

  bool value(std::string_view startTag, const PropertyListDictionary& item, const char* key, std::string_view endTag) {
    file_.append(startTag);
    const auto text = stringValue(item, key);
    if (text && !escaped(*text, XMLContext::Text)) return false;
    file_.append(endTag);
    return true;
  }

  bool tags(const PropertyListDictionary& item) {
    bool hasTags = false;
    file_.append("        <tags>");
    if (const auto list = tagsValue(item)) {
      for (const PropertyList& tag : *list) {
        const auto name = tag.asString();
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

  ByteSink& file_;
  const LocalCalendar& calendar_;
  bool hasPrograms_ = false;
};

}  // namespace

bool writeDayFile(ByteSink& file, const LocalCalendar& calendar, const DateFormatter& rootDateFormatter,
                  const EPGItemLookup& itemWithUniqueID, const std::vector<EPGEvent>& events,
                  const PlaybackIDHash& hash) {
  const auto rootDate = [&](std::optional<Instant> date) {
    return date ? rootDateFormatter.stringFromDate(*date) : std::string();
  };
  DayFileWriter writer(file, calendar);
  if (!writer.rootStart(events.empty() ? std::string() : rootDate(events.front().eventEPGStartDateTime),
                        events.empty() ? std::string() : rootDate(events.back().eventEPGEndDateTime))) {
    return false;
  }
  for (const EPGEvent& event : events) {
    if (file.failed()) break;
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
  if (!writeDayFile(sink, calendar, rootDateFormatter, itemWithUniqueID, events, hash)) return std::nullopt;
  sink.flush();
  return content;
}

}  // namespace epg
