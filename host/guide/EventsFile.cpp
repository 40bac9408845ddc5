#include "host/guide/EventsFile.h"

#include <cstring>
#include <memory>
#include <utility>

#include "host/guide/EPGUniqueID.h"
#include "host/guide/PropertyListInput.h"
#include "host/guide/XMLTVGuide.h"
#include "host/terminal/Refusal.h"
#include "model/KeyConstants.h"
#include "platform/LocalCalendar.h"
#include "xml/XMLReader.h"

namespace epg {

namespace {

/// One dictionary of the property list, with messages that name it.
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

Schedule scheduleInPropertyList(const std::string& bytes, const std::string& path) {
  const PropertyList list = propertyListInFile(bytes, path);
  const PropertyList::Elements* const elements = list.asArray();
  if (!elements) throw Refusal(path + ": a property list, but not an array of events");
  const LocalCalendar calendar;
  Schedule schedule;
  for (const PropertyList& element : *elements) {
    const std::string place = path + ": event " + std::to_string(schedule.events.size() + 1);
    const PropertyListDictionary* const values = element.asDictionary();
    if (!values) throw Refusal(place + ": not a dictionary");
    const EventReader reader(*values, place);
    ScheduledEvent scheduled;
    scheduled.event.eventEPGUniqueID = reader.text(ZRLEPGUniqueIDKey);
    scheduled.event.eventEPGPlaybackUniqueID = reader.text(ZRLEPGEventUniqueIDKey);
    scheduled.event.eventEPGStartDateTime = reader.date(calendar, ZRLEPGStartDateTimeKey);
    scheduled.event.eventEPGEndDateTime = reader.date(calendar, ZRLEPGEndDateTimeKey);
    schedule.events.push_back(std::move(scheduled));
  }
  return schedule;
}

Schedule scheduleOfGuide(XMLTVGuide guide) {
  Schedule schedule;
  schedule.channelNames = std::move(guide.channelNames);
  schedule.warnings = std::move(guide.warnings);
  for (XMLTVProgramme& programme : guide.programmes) {
    ScheduledEvent scheduled;
    scheduled.event.eventEPGUniqueID = epgUniqueID(programme);
    scheduled.event.eventEPGPlaybackUniqueID = playbackUniqueID(programme);
    scheduled.event.eventEPGStartDateTime = programme.start;
    scheduled.event.eventEPGEndDateTime = programme.stop;
    scheduled.channel = std::move(programme.channel);
    scheduled.clumpIndex = std::move(programme.clumpIndex);
    schedule.events.push_back(std::move(scheduled));
  }
  return schedule;
}

bool isBinaryPropertyList(const std::string& bytes) { return bytes.compare(0, 6, "bplist") == 0; }

/// The guide in the bytes; nothing when they are a property list in its XML form.
std::optional<XMLTVGuide> guideUnlessPropertyList(const std::string& bytes, const std::string& path) {
  std::string problem;
  const std::unique_ptr<XMLReader> document = XMLReader::parse(bytes, &problem);
  if (!document) throw Refusal(path + ": neither a property list nor an XMLTV guide: " + problem);
  if (std::strcmp(document->root().name(), "plist") == 0) return std::nullopt;
  return guideInDocument(*document, path);
}

}  // namespace

Schedule readSchedule(Environment& environment, const std::string& path) {
  const std::string bytes = readGuideBytes(environment, path);
  if (isBinaryPropertyList(bytes)) return scheduleInPropertyList(bytes, path);
  std::optional<XMLTVGuide> guide = guideUnlessPropertyList(bytes, path);
  return guide ? scheduleOfGuide(std::move(*guide)) : scheduleInPropertyList(bytes, path);
}

}  // namespace epg
