#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "model/EPGItem.h"
#include "model/EPGItemTexts.h"
#include "model/KeyConstants.h"
#include "platform/Instant.h"
#include "platform/LocalCalendar.h"
#include "plist/PropertyList.h"

// The form of a programme in the day file: its parts, their names and their order, and nothing of how they are written.
// A receiver takes them one after the other:
//
//   void start(std::string_view name);                     an element with elements in it begins
//   void number(std::string_view name, std::optional<std::int64_t> value);
//   void text(std::string_view name, std::optional<std::string_view> value);
//   void end(std::string_view name);
//
// An absent value makes an empty element.

namespace epg::dayfile {

using Components = std::optional<LocalCalendar::Components>;

inline Components components(const LocalCalendar& calendar, std::optional<Instant> date) {
  return date ? calendar.components(*date) : std::nullopt;
}

template <class Receiver>
void describeDate(Receiver& receiver, const Components& start) {
  constexpr int epoch = 2000;  // Of the format's years.
  const auto part = [&](int LocalCalendar::Components::*which, int less) {
    return start ? std::optional<std::int64_t>((*start).*which - less) : std::nullopt;
  };
  receiver.start("date");
  receiver.number("day", part(&LocalCalendar::Components::day, 0));
  receiver.number("month", part(&LocalCalendar::Components::month, 0));
  receiver.number("year", part(&LocalCalendar::Components::year, epoch));
  receiver.end("date");
}

template <class Receiver>
void describeTime(Receiver& receiver, const Components& start) {
  receiver.start("time");
  receiver.number("hour", start ? std::optional<std::int64_t>(start->hour) : std::nullopt);
  receiver.number("minute", start ? std::optional<std::int64_t>(start->minute) : std::nullopt);
  receiver.end("time");
}

template <class Receiver>
void describeTags(Receiver& receiver, const PropertyList::Elements* tags) {
  receiver.start("tags");
  if (tags) {
    for (const PropertyList& tag : *tags) {
      if (const auto name = tag.asString()) receiver.text("tag", name);
    }
  }
  receiver.end("tags");
}

/// What stands in "program".
template <class Receiver>
void describeProgram(Receiver& receiver, const Components& start, const PropertyListDictionary& item) {
  // Found in one walk: items have few entries besides these.
  std::array<std::optional<std::string_view>, epgItemTexts.size()> texts;
  const PropertyList::Elements* tags = nullptr;
  const std::string_view tagsKey = ZRLEPGDSTagsKey;
  for (const auto& [key, value] : item) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
      if (key == epgItemTexts[i].key) texts[i] = value.asString();
    }
    if (key == tagsKey) tags = value.asArray();
  }
  describeDate(receiver, start);
  describeTime(receiver, start);
  for (std::size_t i = 0; i < texts.size(); ++i) receiver.text(epgItemTexts[i].element, texts[i]);
  describeTags(receiver, tags);
}

}  // namespace epg::dayfile
