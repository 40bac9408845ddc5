// Day files of random events and items, held against what went into them.

#include <gtest/gtest.h>
#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "export/ApostrophePass.h"
#include "export/EventOrder.h"
#include "tests/support/DayFileOf.h"
#include "tests/support/DayFileReader.h"
#include "tests/support/Events.h"
#include "tests/support/Property.h"
#include "tests/support/RandomText.h"
#include "tests/support/TimeZone.h"

namespace epg::test {
namespace {

std::string text() {
  std::string made;
  for (Times characters(0, sizeOfCase()); characters.next();) {
    made += characterFrom(static_cast<std::uint32_t>(below(0x110000)));
  }
  return made;
}

std::optional<double> start() {
  if (onceIn(2)) return std::nullopt;
  return static_cast<double>(between(-2000000000, 6999999999));
}

std::string startText(std::optional<double> seconds) {
  if (!seconds) return ".. :";
  const auto time = static_cast<time_t>(*seconds);
  struct tm local {};
  ::localtime_r(&time, &local);
  return std::to_string(local.tm_mday) + "." + std::to_string(local.tm_mon + 1) + "." +
         std::to_string(local.tm_year - 100) + " " + std::to_string(local.tm_hour) + ":" + std::to_string(local.tm_min);
}

TEST(DayFileProperties, AReaderGetsWhatWentIn) {
  expectForCases(usualCases, [] {
    const TimeZone zone(
        oneTextOf({"UTC", "Europe/Berlin", "America/New_York", "Asia/Kolkata", "Australia/Lord_Howe", "Pacific/Apia"}));
    const std::string title = text();
    const std::string description = text();
    const std::string imageURL = text();
    const std::vector<std::string> tags = upTo(sizeOfCase(), text);
    const std::optional<double> seconds = start();
    tell("title", title);
    tell("description", description);
    tell("image URL", imageURL);
    tell("tags", tags);
    tell("start", seconds);

    ItemsForDayFile items(Entries{{ZRLEPGDSTitleKey, title},
                                  {ZRLEPGDSDescriptionKey, description},
                                  {ZRLEPGDSImageURLKey, imageURL},
                                  {ZRLEPGDSTagsKey, PropertyList(PropertyList::Array(tags.begin(), tags.end()))}});
    const auto bytes = items.dayFile({seconds ? eventAt("E", *seconds) : eventWithoutTimes("E")});
    HOLDS(bytes.has_value());
    HOLDS(bytes->find('\'') == std::string::npos);
    const DayFile file = dayFileFrom(*bytes);
    HOLDS(file.programs.size() == 1U);
    const DayFileProgram& program = file.programs[0];
    HOLDS(program.title == asXMLCarries(title));
    HOLDS(program.description == asXMLCarries(description));
    HOLDS(program.imgUrl == asXMLCarries(imageURL));
    std::vector<std::string> carriedTags;
    for (const std::string& tag : tags) carriedTags.push_back(asXMLCarries(tag));
    HOLDS(program.tags == carriedTags);
    HOLDS(program.start() == startText(seconds));
  });
}

TEST(DayFileProperties, EventsAreSortedByStartAndOtherwiseStayInOrder) {
  expectForCases(usualCases, [] {
    const auto startOrSmallNumber = [] { return onceIn(2) ? start() : static_cast<double>(below(4)); };
    const std::vector<std::optional<double>> starts = upTo(sizeOfCase(), startOrSmallNumber);
    tell("starts", starts);
    std::vector<EPGEvent> events;
    std::vector<std::pair<std::pair<bool, double>, std::string>> expected;
    for (std::size_t i = 0; i < starts.size(); ++i) {
      const std::string id = std::to_string(1000000 + i);
      events.push_back(starts[i] ? eventAt(id, *starts[i]) : eventWithoutTimes(id));
      expected.push_back({{!starts[i], starts[i].value_or(0)}, id});
    }
    std::sort(expected.begin(), expected.end());
    const EventOrder sorted = EventOrder::byStart(events);
    HOLDS(sorted.size() == expected.size());
    for (std::size_t i = 0; i < sorted.size(); ++i) HOLDS(sorted[i].eventEPGUniqueID == expected[i].second);
  });
}

TEST(DayFileProperties, EventsAreSortedAsByAStableSortOfTheWholeEvents) {
  expectForCases(usualCases, [] {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::vector<double> starts = upTo(sizeOfCase(), [] {
      return oneOf({0.0, -0.0, 1.0, 2.0, 3.5, 1e9, std::nan(""), -std::nan(""), infinity, -infinity});
    });
    const bool inOrder = onceIn(2);
    tell("starts", starts);
    std::vector<EPGEvent> events;
    for (const double start : starts) {
      events.push_back(start == 3.5 ? eventWithoutTimes("") : eventFromTo("", start, start + 1));
      events.back().eventEPGUniqueID = "an ID that takes memory of its own, number " + std::to_string(events.size());
      events.back().eventEPGPlaybackUniqueID = events.back().eventEPGUniqueID;
    }
    const auto comesBefore = [](const EPGEvent& a, const EPGEvent& b) {
      const auto has = [](const EPGEvent& event) {
        return event.eventEPGStartDateTime && !std::isnan(event.eventEPGStartDateTime->secondsSinceReferenceDate);
      };
      return has(a) && has(b) ? *a.eventEPGStartDateTime < *b.eventEPGStartDateTime : has(a) && !has(b);
    };
    std::vector<EPGEvent> expected = events;
    std::stable_sort(expected.begin(), expected.end(), comesBefore);
    const std::vector<EPGEvent> given = inOrder ? expected : events;
    const EventOrder sorted = EventOrder::byStart(given);
    HOLDS(sorted.size() == expected.size());
    for (std::size_t i = 0; i < sorted.size(); ++i) {
      HOLDS(sorted[i].eventEPGUniqueID == expected[i].eventEPGUniqueID);
      HOLDS(sorted[i].eventEPGPlaybackUniqueID == expected[i].eventEPGUniqueID);
      HOLDS(sorted[i].eventEPGStartDateTime.has_value() == expected[i].eventEPGStartDateTime.has_value());
      HOLDS(sorted[i].eventEPGEndDateTime.has_value() == expected[i].eventEPGEndDateTime.has_value());
    }
  });
}

TEST(DayFileProperties, TheApostrophePassIsUndoneByPuttingApostrophesBack) {
  expectForCases(usualCases, [] {
    std::string given;
    for (Times characters(0, sizeOfCase()); characters.next();) given += oneOf({'\'', 'a', '&', '<', '\n'});
    tell("given", given);
    const std::string escaped = stringByEscapingSpecialCharacters(given);
    const auto apostrophes = static_cast<std::size_t>(std::count(given.begin(), given.end(), '\''));
    HOLDS(escaped.find('\'') == std::string::npos);
    HOLDS(escaped.size() == given.size() + 4 * apostrophes);
    std::string back;
    for (std::size_t i = 0; i < escaped.size(); ++i) {
      if (escaped.compare(i, 5, "&#39;") == 0) {
        back += '\'';
        i += 4;
      } else {
        back += escaped[i];
      }
    }
    HOLDS(back == given);
  });
}

}  // namespace
}  // namespace epg::test
