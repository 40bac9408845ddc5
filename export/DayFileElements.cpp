#include "export/DayFileElements.h"

#include <cstdint>
#include <type_traits>
#include <utility>

#include "model/EPGItem.h"
#include "model/KeyConstants.h"

namespace epg {

namespace {

XMLElement elementWithText(const char* name, std::string text) {
  XMLElement element;
  element.name = name;
  element.text = std::move(text);
  return element;
}

/// Without an item value the element stays empty.
XMLElement elementWithValue(const char* name, const PropertyListDictionary& item, const char* key) {
  return elementWithText(name, std::string(stringValue(item, key).value_or(std::string_view())));
}

}  // namespace

XMLElement dateXMLElementWithDate(const LocalCalendar& calendar, std::optional<Instant> date) {
  const auto components = date ? calendar.components(*date) : std::nullopt;
  XMLElement element = elementWithText("date", {});
  element.addChild(elementWithText("day", components ? std::to_string(components->day) : std::string()));
  element.addChild(elementWithText("month", components ? std::to_string(components->month) : std::string()));
  element.addChild(elementWithText("year", components ? std::to_string(components->year - 2000) : std::string()));
  return element;
}

XMLElement timeXMLElementWithDate(const LocalCalendar& calendar, std::optional<Instant> date) {
  const auto components = date ? calendar.components(*date) : std::nullopt;
  XMLElement element = elementWithText("time", {});
  element.addChild(elementWithText("hour", components ? std::to_string(components->hour) : std::string()));
  element.addChild(elementWithText("minute", components ? std::to_string(components->minute) : std::string()));
  return element;
}

XMLElement tagsXMLElementWithTags(const PropertyList::Elements* tags) {
  XMLElement element = elementWithText("tags", {});
  if (!tags) return element;
  for (const PropertyList& tag : *tags) {
    if (const auto name = tag.asString()) element.addChild(elementWithText("tag", std::string(*name)));
  }
  return element;
}

std::size_t playbackIDHash(const std::string& playbackUniqueID) {
  constexpr bool wide = sizeof(std::size_t) == 8;
  using Word = std::conditional_t<wide, std::uint64_t, std::uint32_t>;
  constexpr auto offsetBasis = static_cast<Word>(wide ? 14695981039346656037u : 2166136261u);
  constexpr auto prime = static_cast<Word>(wide ? 1099511628211u : 16777619u);
  Word hash = offsetBasis;
  for (const char c : playbackUniqueID) {
    hash ^= static_cast<unsigned char>(c);
    hash *= prime;
  }
  return hash;
}

std::optional<XMLElement> xmlEventWithDictionary(const LocalCalendar& calendar, const EPGItemLookup& itemWithUniqueID,
                                                 const EPGEvent& event, const PlaybackIDHash& hash) {
  const auto item = event.eventEPGUniqueID ? itemWithUniqueID(*event.eventEPGUniqueID) : std::nullopt;
  if (!item) return std::nullopt;
  XMLElement program = elementWithText("program", {});
  const std::optional<std::string>& playbackID = event.eventEPGPlaybackUniqueID;
  if (playbackID && !playbackID->empty()) {
    program.attributes.emplace_back("id", std::to_string(hash(*playbackID)));
  }
  program.addChild(dateXMLElementWithDate(calendar, event.eventEPGStartDateTime));
  program.addChild(timeXMLElementWithDate(calendar, event.eventEPGStartDateTime));
  program.addChild(elementWithValue("title", *item, ZRLEPGDSTitleKey));
  program.addChild(elementWithValue("description", *item, ZRLEPGDSDescriptionKey));
  program.addChild(elementWithValue("imgUrl", *item, ZRLEPGDSImageURLKey));
  program.addChild(tagsXMLElementWithTags(tagsValue(*item)));
  return program;
}

}  // namespace epg
