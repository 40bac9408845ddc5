// Day files of random events and items, held against the plainest way of making them: byte for byte.

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/DayFileOf.h"
#include "tests/support/HostileText.h"
#include "tests/support/NaiveDayFile.h"
#include "tests/support/Property.h"
#include "tests/support/TimeZone.h"

namespace epg::test {
namespace {

Instant anyInstant() {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  if (!onceIn(7)) return Instant::fromUnixTime(static_cast<double>(below(4000000000U)) / 2 - 1e9);
  return Instant::fromUnixTime(
      oneOf({std::nan(""), infinity, -infinity, 1e300, -1e300, -6.3e10, -62167219200.0, 253402300800.0, 0.0}));
}

EPGEvent event() {
  EPGEvent made;
  made.eventEPGUniqueID = mostly(10, [] { return oneTextOf({"a", "b", "c", "", "unknown"}); });
  made.eventEPGPlaybackUniqueID = mostly(6, [] {
    return oneTextOf({"", "P-100", "'", "\xFF", "a playback ID that is rather long"});
  });
  made.eventEPGStartDateTime = mostly(8, anyInstant);
  made.eventEPGEndDateTime = mostly(8, anyInstant);
  return made;
}

PropertyList noString() {
  static const std::vector<PropertyList> values = {PropertyList::fromInteger(7), PropertyList::fromDate(Instant{0}),
                                                   PropertyList(PropertyList::Array{"inner"}),
                                                   PropertyList(PropertyListDictionary())};
  return oneOf(values);
}

PropertyList textOrNot() {
  if (onceIn(9)) return noString();
  return PropertyList(mostlyUTF8(60));
}

PropertyList tagList() {
  const std::size_t kind = below(10);
  if (kind == 8) return noString();
  if (kind == 9) return PropertyList("no list");
  return PropertyList(upTo(4, textOrNot));
}

Entries itemEntries() {
  Entries entries;
  for (const char* const key : {ZRLEPGDSTitleKey, ZRLEPGDSDescriptionKey, ZRLEPGDSImageURLKey}) {
    if (auto text = mostly(6, textOrNot)) entries.emplace_back(key, *std::move(text));
  }
  if (auto tags = mostly(6, tagList)) entries.emplace_back(ZRLEPGDSTagsKey, *std::move(tags));
  entries.emplace_back("unknown", "carried along, but not into the day file\xFF");
  return entries;
}

std::optional<std::string> plain(const ItemsForDayFile& items, const std::vector<EPGEvent>& events) {
  return naiveDayFile(LocalCalendar(), DateFormatter("dd-MM-yyyy"), items.store(), events);
}

TEST(NaiveDayFileProperties, EveryDayFileIsThatOfTheNaiveWay) {
  std::size_t refused = 0;
  std::size_t written = 0;
  expectForCases(1500, [&] {
    const TimeZone zone(
        oneTextOf({"UTC", "Europe/Berlin", "America/New_York", "Asia/Kolkata", "Australia/Lord_Howe", "Pacific/Apia"}));
    ItemsForDayFile items;
    for (const char* const id : {"a", "b", ""}) items.add(id, itemEntries());
    const std::vector<EPGEvent> events = upTo(6, event);
    const auto file = items.dayFile(events);
    tell("day file", file);
    HOLDS(file == plain(items, events));
    ++(file ? written : refused);
  });
  // Neither answer may be given always.
  EXPECT_GT(refused, 10U);
  EXPECT_GT(written, 100U);
}

TEST(NaiveDayFileProperties, ADayFileOfManyPiecesIsThatOfTheNaiveWay) {
  const TimeZone zone("Europe/Berlin");
  // Texts of every length around what a piece holds, so that pieces end everywhere.
  ItemsForDayFile items;
  std::vector<EPGEvent> events;
  for (std::size_t i = 0; i < 200; ++i) {
    const std::string id = std::to_string(i);
    const std::string text = std::string(ByteSink::pieceSize - 150 + i, 'x') + "'&\xC3\xA9";
    items.add(id, Entries{{ZRLEPGDSTitleKey, i % 6 == 0 ? text : id}, {ZRLEPGDSDescriptionKey, std::string(i, '\'')}});
    EPGEvent made;
    made.eventEPGUniqueID = id;
    made.eventEPGPlaybackUniqueID = id;
    made.eventEPGStartDateTime = Instant{static_cast<double>(i) * 1e6};
    events.push_back(made);
  }
  const auto file = items.dayFile(events);
  ASSERT_TRUE(file);
  EXPECT_TRUE(file == plain(items, events));
}

}  // namespace
}  // namespace epg::test
