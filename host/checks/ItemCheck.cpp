#include "host/checks/ItemCheck.h"

#include <map>
#include <set>

#include "host/terminal/LineText.h"
#include "model/EPGItem.h"
#include "model/KeyConstants.h"

namespace epg {

namespace {

bool lacksText(const PropertyListDictionary& item, const char* key) {
  const auto text = stringValue(item, key);
  return !text || strippedOfWhiteSpace(*text).empty();
}

/// The tags outside the catalogue, each once, quoted and separated by commas.
std::string strangeTags(const PropertyListDictionary& item, const std::set<std::string>& catalogue) {
  std::string text;
  std::set<std::string> seen;
  const PropertyList::Elements* const tags = tagsValue(item);
  if (!tags) return text;
  for (const PropertyList& element : *tags) {
    if (!element.asString()) continue;
    const std::string tag(*element.asString());
    if (catalogue.count(tag) > 0 || !seen.insert(tag).second) continue;
    text += (text.empty() ? "\"" : ", \"") + escapedForLine(tag) + "\"";
  }
  return text;
}

void addItemFindings(const EPGEvent& event, const PropertyListDictionary& item, const std::set<std::string>& catalogue,
                     std::vector<Finding>* findings) {
  const auto add = [&](const std::string& text) {
    findings->push_back({event.eventEPGStartDateTime, event.eventEPGUniqueID, text});
  };
  if (lacksText(item, ZRLEPGDSTitleKey)) add("no title");
  if (lacksText(item, ZRLEPGDSDescriptionKey)) add("no description");
  const std::string strange = strangeTags(item, catalogue);
  if (!strange.empty()) add("not in the tag catalogue: " + strange);
}

bool startsBefore(const EPGEvent& a, const EPGEvent& b) {
  if (!a.eventEPGStartDateTime || !b.eventEPGStartDateTime) return a.eventEPGStartDateTime.has_value();
  return *a.eventEPGStartDateTime < *b.eventEPGStartDateTime;
}

}  // namespace

std::vector<Finding> itemFindings(const Schedule& schedule, const EPGItemStore& items,
                                  const std::vector<std::string>& catalogue) {
  std::vector<Finding> findings;
  std::map<std::string, const EPGEvent*> firstEvents;
  for (const EPGEvent& event : schedule.events) {
    if (!event.eventEPGUniqueID) {
      findings.push_back({event.eventEPGStartDateTime, std::nullopt, "no EPG unique ID: left out of the export"});
    } else if (!items.item(*event.eventEPGUniqueID)) {
      findings.push_back({event.eventEPGStartDateTime, event.eventEPGUniqueID, "no item: left out of the export"});
    } else {
      const EPGEvent*& first = firstEvents[*event.eventEPGUniqueID];
      if (!first || startsBefore(event, *first)) first = &event;
    }
  }
  const std::set<std::string> tags(catalogue.begin(), catalogue.end());
  for (const auto& [uniqueID, event] : firstEvents) {
    addItemFindings(*event, *items.valuesOf(uniqueID), tags, &findings);
  }
  return findings;
}

}  // namespace epg
