#include "export/ExportDriver.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "model/EPGItem.h"
#include "model/KeyConstants.h"
#include "platform/Environment.h"
#include "platform/LocalCalendar.h"
#include "platform/Paths.h"
#include "platform/PropertyListFile.h"

namespace epg {

const char* const exportConfigurationExtension = "epgconf";

namespace {

const char* const nameOfferedWithoutConfigurations = "Default EPG Settings";

PropertyListDictionary defaultConfiguration(Environment& environment) {
  PropertyListDictionary configuration;
  configuration.set(ZRLEPGDSConfigSourceID, "0");
  configuration.set(ZRLEPGDSConfigExportPath, appendPathComponent(environment.homeFolder(), "Desktop"));
  return configuration;
}

/// A start that is not a number has no place in the order, which is that of events without one.
bool hasStart(const EPGEvent& event) {
  return event.eventEPGStartDateTime && !std::isnan(event.eventEPGStartDateTime->secondsSinceReferenceDate);
}

bool comesBefore(const EPGEvent& a, const EPGEvent& b) {
  if (!hasStart(a) || !hasStart(b)) return hasStart(a) && !hasStart(b);
  return *a.eventEPGStartDateTime < *b.eventEPGStartDateTime;
}

/// An event to come in the sorted list: where it stands in the given one, and its start if it has one.
struct Place {
  std::size_t position;
  Instant start;
};

/// The sorted list. Only starts and positions are moved about on the way, which are a small part of an event.
std::vector<Place> placesByStart(const std::vector<EPGEvent>& events) {
  std::vector<Place> places;
  places.reserve(events.size());
  for (std::size_t i = 0; i < events.size(); ++i) {
    if (hasStart(events[i])) places.push_back(Place{i, *events[i].eventEPGStartDateTime});
  }
  std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
    return a.start != b.start ? a.start < b.start : a.position < b.position;
  });
  for (std::size_t i = 0; i < events.size(); ++i) {
    if (!hasStart(events[i])) places.push_back(Place{i, Instant()});
  }
  return places;
}

/// Moves each event once, without room for a second list of them. `places` is used up.
void putInOrder(std::vector<EPGEvent>& events, std::vector<Place> places) {
  for (std::size_t i = 0; i < events.size(); ++i) {
    if (places[i].position == i) continue;
    // The event here makes room, the one that is to come leaves room where it stood, and so on until the first one's
    // place is reached.
    EPGEvent first = std::move(events[i]);
    std::size_t room = i;
    while (places[room].position != i) {
      const std::size_t next = places[room].position;
      events[room] = std::move(events[next]);
      places[room].position = room;
      room = next;
    }
    events[room] = std::move(first);
    places[room].position = room;
  }
}

}  // namespace

std::vector<std::string> exportConfigurationNames(Environment& environment, const std::string& dataFolderPath) {
  std::vector<std::string> entries;
  if (environment.listFolder(dataFolderPath, &entries) != 0) entries.clear();
  std::vector<std::string> names;
  for (const std::string& entry : entries) {
    if (pathExtension(entry) == exportConfigurationExtension) names.push_back(deletePathExtension(entry));
  }
  if (names.empty()) names.emplace_back(nameOfferedWithoutConfigurations);
  return names;
}

PropertyListDictionary exportConfiguration(Environment& environment, const std::string& dataFolderPath,
                                           const std::string& configurationFilename) {
  const std::string path =
      appendPathExtension(appendPathComponent(dataFolderPath, configurationFilename), exportConfigurationExtension);
  const auto configuration = readPropertyListDictionary(environment, path);
  return configuration ? *configuration : defaultConfiguration(environment);
}

std::optional<std::string> exportFolder(Environment& environment, const PropertyListDictionary& configuration) {
  const auto path = stringValue(configuration, ZRLEPGDSConfigExportPath);
  if (!path) return std::nullopt;
  return expandTilde(environment, std::string(*path));
}

std::vector<EPGEvent> eventsSortedByStart(std::vector<EPGEvent> events) {
  // As hosts mostly have them.
  if (std::is_sorted(events.begin(), events.end(), comesBefore)) return events;
  putInOrder(events, placesByStart(events));
  return events;
}

bool isSameCalendarDay(std::optional<Instant> first, std::optional<Instant> second) {
  if (!first || !second) return !first && !second;
  const LocalCalendar calendar;
  const auto a = calendar.components(*first);
  const auto b = calendar.components(*second);
  return a && b && a->year == b->year && a->month == b->month && a->day == b->day;
}

}  // namespace epg
