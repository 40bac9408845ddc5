// Day files of random events and items, held against what went into them.

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>
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
#include "tests/support/RandomText.h"
#include "tests/support/TimeZone.h"

namespace epg::test {
namespace {

rc::Gen<std::string> text() {
  return rc::gen::map(rc::gen::container<std::vector<std::uint32_t>>(rc::gen::inRange<std::uint32_t>(0, 0x110000)),
                      [](const std::vector<std::uint32_t>& seeds) {
                        std::string made;
                        for (const std::uint32_t seed : seeds) made += characterFrom(seed);
                        return made;
                      });
}

rc::Gen<std::optional<double>> start() {
  return rc::gen::oneOf(rc::gen::just(std::optional<double>()),
                        rc::gen::map(rc::gen::inRange<std::int64_t>(-2000000000, 7000000000), [](std::int64_t seconds) {
                          return std::optional<double>(static_cast<double>(seconds));
                        }));
}

std::string startText(std::optional<double> seconds) {
  if (!seconds) return ".. :";
  const auto time = static_cast<time_t>(*seconds);
  struct tm local {};
  ::localtime_r(&time, &local);
  return std::to_string(local.tm_mday) + "." + std::to_string(local.tm_mon + 1) + "." +
         std::to_string(local.tm_year - 100) + " " + std::to_string(local.tm_hour) + ":" + std::to_string(local.tm_min);
}

RC_GTEST_PROP(DayFileProperties, AReaderGetsWhatWentIn, ()) {
  const TimeZone zone(*rc::gen::element<std::string>("UTC", "Europe/Berlin", "America/New_York", "Asia/Kolkata",
                                                     "Australia/Lord_Howe", "Pacific/Apia"));
  const std::string title = *text();
  const std::string description = *text();
  const std::string imageURL = *text();
  const auto tags = *rc::gen::container<std::vector<std::string>>(text());
  const std::optional<double> seconds = *start();

  ItemsForDayFile items(Entries{{ZRLEPGDSTitleKey, title},
                                {ZRLEPGDSDescriptionKey, description},
                                {ZRLEPGDSImageURLKey, imageURL},
                                {ZRLEPGDSTagsKey, PropertyList(PropertyList::Array(tags.begin(), tags.end()))}});
  const auto bytes = items.dayFile({seconds ? eventAt("E", *seconds) : eventWithoutTimes("E")});
  RC_ASSERT(bytes.has_value());
  RC_ASSERT(bytes->find('\'') == std::string::npos);
  const DayFile file = dayFileFrom(*bytes);
  RC_ASSERT(file.programs.size() == 1U);
  const DayFileProgram& program = file.programs[0];
  RC_ASSERT(program.title == asXMLCarries(title));
  RC_ASSERT(program.description == asXMLCarries(description));
  RC_ASSERT(program.imgUrl == asXMLCarries(imageURL));
  std::vector<std::string> carriedTags;
  for (const std::string& tag : tags) carriedTags.push_back(asXMLCarries(tag));
  RC_ASSERT(program.tags == carriedTags);
  RC_ASSERT(program.start() == startText(seconds));
}

RC_GTEST_PROP(DayFileProperties, EventsAreSortedByStartAndOtherwiseStayInOrder, ()) {
  const auto starts = *rc::gen::container<std::vector<std::optional<double>>>(rc::gen::oneOf(
      start(), rc::gen::map(rc::gen::inRange(0, 4),
                            [](int small) { return std::optional<double>(static_cast<double>(small)); })));
  std::vector<EPGEvent> events;
  std::vector<std::pair<std::pair<bool, double>, std::string>> expected;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    const std::string id = std::to_string(1000000 + i);
    events.push_back(starts[i] ? eventAt(id, *starts[i]) : eventWithoutTimes(id));
    expected.push_back({{!starts[i], starts[i].value_or(0)}, id});
  }
  std::sort(expected.begin(), expected.end());
  const EventOrder sorted = EventOrder::byStart(events);
  RC_ASSERT(sorted.size() == expected.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) RC_ASSERT(sorted[i].eventEPGUniqueID == expected[i].second);
}

RC_GTEST_PROP(DayFileProperties, EventsAreSortedAsByAStableSortOfTheWholeEvents, ()) {
  const double infinity = std::numeric_limits<double>::infinity();
  const auto starts = *rc::gen::container<std::vector<double>>(
      rc::gen::element(0.0, -0.0, 1.0, 2.0, 3.5, 1e9, std::nan(""), -std::nan(""), infinity, -infinity));
  const bool inOrder = *rc::gen::arbitrary<bool>();
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
  RC_ASSERT(sorted.size() == expected.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    RC_ASSERT(sorted[i].eventEPGUniqueID == expected[i].eventEPGUniqueID);
    RC_ASSERT(sorted[i].eventEPGPlaybackUniqueID == expected[i].eventEPGUniqueID);
    RC_ASSERT(sorted[i].eventEPGStartDateTime.has_value() == expected[i].eventEPGStartDateTime.has_value());
    RC_ASSERT(sorted[i].eventEPGEndDateTime.has_value() == expected[i].eventEPGEndDateTime.has_value());
  }
}

RC_GTEST_PROP(DayFileProperties, TheApostrophePassIsUndoneByPuttingApostrophesBack, ()) {
  const std::string given = *rc::gen::container<std::string>(rc::gen::element('\'', 'a', '&', '<', '\n'));
  const std::string escaped = stringByEscapingSpecialCharacters(given);
  const auto apostrophes = static_cast<std::size_t>(std::count(given.begin(), given.end(), '\''));
  RC_ASSERT(escaped.find('\'') == std::string::npos);
  RC_ASSERT(escaped.size() == given.size() + 4 * apostrophes);
  std::string back;
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    if (escaped.compare(i, 5, "&#39;") == 0) {
      back += '\'';
      i += 4;
    } else {
      back += escaped[i];
    }
  }
  RC_ASSERT(back == given);
}

}  // namespace
}  // namespace epg::test
