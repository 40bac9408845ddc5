#include "host/guide/EventsFile.h"

#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "host/guide/EPGUniqueID.h"
#include "host/guide/InputFile.h"
#include "host/guide/PropertyListInput.h"
#include "host/guide/XMLTVGuide.h"
#include "host/terminal/LineText.h"
#include "host/terminal/Refusal.h"
#include "model/KeyConstants.h"
#include "platform/LocalCalendar.h"
#include "plist/PropertyListFile.h"
#include "plist/PropertyListForms.h"
#include "xml/XMLReader.h"

namespace epg {

namespace {

/// Reads the values of one event in a property list. `place` stands before its messages.
class EventReader {
 public:
  EventReader(const PropertyListDictionary& values, std::string place) : values_(values), place_(std::move(place)) {}

  std::optional<std::string> text(const char* key) const {
    const PropertyList* const value = values_.find(key);
    if (!value) return std::nullopt;
    const auto text = value->asString();
    if (!text) throw Refusal(place_ + ": \"" + key + "\" is not a string");
    return std::string(*text);
  }

  std::optional<Instant> date(const LocalCalendar& calendar, const char* key) const {
    const PropertyList* const value = values_.find(key);
    if (!value) return std::nullopt;
    const Instant* const date = value->asDate();
    if (!date) throw Refusal(place_ + ": \"" + key + "\" is not a date");
    if (!calendar.components(*date)) throw Refusal(place_ + ": \"" + key + "\" is a date that no calendar has");
    return *date;
  }

 private:
  const PropertyListDictionary& values_;
  const std::string place_;
};

void addEvent(Schedule* schedule, EPGEvent event, EventDetails details) {
  schedule->events.push_back(std::move(event));
  schedule->details.push_back(std::move(details));
}

Schedule scheduleInPropertyList(const PropertyList& list, const std::string& path) {
  const PropertyList::Elements* const elements = list.asArray();
  if (!elements) throw Refusal(path + ": a property list, but not an array of events");
  const LocalCalendar calendar;
  Schedule schedule;
  for (const PropertyList& element : *elements) {
    const std::string place = path + ": event " + std::to_string(schedule.events.size() + 1);
    const PropertyListDictionary* const values = element.asDictionary();
    if (!values) throw Refusal(place + ": not a dictionary");
    const EventReader reader(*values, place);
    EPGEvent event;
    event.eventEPGUniqueID = reader.text(ZRLEPGUniqueIDKey);
    event.eventEPGPlaybackUniqueID = reader.text(ZRLEPGEventUniqueIDKey);
    event.eventEPGStartDateTime = reader.date(calendar, ZRLEPGStartDateTimeKey);
    event.eventEPGEndDateTime = reader.date(calendar, ZRLEPGEndDateTimeKey);
    addEvent(&schedule, std::move(event), {});
  }
  return schedule;
}

/// Makes an event of each programme as soon as it is read, so that the guide is not in memory twice.
Schedule scheduleInGuide(const XMLReader& document, const std::string& path) {
  Schedule schedule;
  GuideSummary summary = readGuide(document, path, [&schedule](XMLTVProgramme&& programme) {
    EPGEvent event;
    event.eventEPGUniqueID = epgUniqueID(programme);
    event.eventEPGPlaybackUniqueID = playbackUniqueID(programme);
    event.eventEPGStartDateTime = programme.start;
    event.eventEPGEndDateTime = programme.stop;
    addEvent(&schedule, std::move(event),
             {std::move(programme.channel), std::move(programme.clumpIndex), std::move(programme.title)});
  });
  schedule.channelNames = std::move(summary.channelNames);
  schedule.warnings = std::move(summary.warnings);
  return schedule;
}

bool startsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

/// Whether the first tag is that of a property list. Looks at the text without parsing it, and may miss one in UTF-16
/// or with an unusual prologue.
bool isPlainlyPropertyList(std::string_view text) {
  static constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  static constexpr std::string_view rootTag = "<plist";
  static constexpr struct {
    std::string_view start;
    std::string_view end;
  } prologue[] = {{"<?", "?>"}, {"<!--", "-->"}, {"<!DOCTYPE", ">"}};
  if (startsWith(text, byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  for (bool isInPrologue = true; isInPrologue;) {
    text = strippedOfWhiteSpace(text);
    isInPrologue = false;
    for (const auto& part : prologue) {
      const std::size_t end = startsWith(text, part.start) ? text.find(part.end, part.start.size()) : text.npos;
      if (end == text.npos) continue;
      text.remove_prefix(end + part.end.size());
      isInPrologue = true;
      break;
    }
  }
  return startsWith(text, rootTag) && text.find_first_of(" \t\n\r/>") == rootTag.size();
}

}  // namespace

Schedule readSchedule(Environment& environment, const std::string& path) {
  const std::string bytes = readDecompressedFile(environment, path);
  if (isBinaryPropertyList(bytes)) return scheduleInPropertyList(propertyListInFile(bytes, path), path);
  if (isPlainlyPropertyList(bytes)) {
    if (const std::optional<PropertyList> list = parsePropertyList(bytes)) return scheduleInPropertyList(*list, path);
  }
  // A guide, a property list that was not recognised, or a file to be refused.
  std::string problem;
  const std::unique_ptr<XMLReader> document = XMLReader::parse(bytes, &problem);
  if (!document) throw Refusal(path + ": neither a property list nor an XMLTV guide: " + problem);
  if (std::strcmp(document->root().name(), "plist") != 0) return scheduleInGuide(*document, path);
  return scheduleInPropertyList(propertyListInFile(bytes, path), path);
}

}  // namespace epg
