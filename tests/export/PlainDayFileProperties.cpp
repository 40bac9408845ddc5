// Day files of random events and items, held against the plainest way of making them: byte for byte.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/DayFileOf.h"
#include "tests/support/HostileText.h"
#include "tests/support/PlainDayFile.h"
#include "tests/support/Property.h"
#include "tests/support/TimeZone.h"

namespace epg::test {
namespace {

rc::Gen<std::optional<Instant>> date() {
  const double infinity = std::numeric_limits<double>::infinity();
  const auto usual = rc::gen::map(below(4000000000U), [](std::size_t seconds) {
    return Instant::fromUnixTime(static_cast<double>(seconds) / 2 - 1e9);
  });
  const auto strange = rc::gen::map(
      rc::gen::element(std::nan(""), infinity, -infinity, 1e300, -1e300, -6.3e10, -62167219200.0, 253402300800.0, 0.0),
      [](double seconds) { return Instant::fromUnixTime(seconds); });
  return mostly(8, rc::gen::weightedOneOf<Instant>({{6, usual}, {1, strange}}));
}

rc::Gen<EPGEvent> event() {
  return rc::gen::apply(
      [](std::optional<std::string> id, std::optional<std::string> playbackID, std::optional<Instant> start,
         std::optional<Instant> end) {
        EPGEvent made;
        made.eventEPGUniqueID = std::move(id);
        made.eventEPGPlaybackUniqueID = std::move(playbackID);
        made.eventEPGStartDateTime = start;
        made.eventEPGEndDateTime = end;
        return made;
      },
      mostly(10, rc::gen::element<std::string>("a", "b", "c", "", "unknown")),
      mostly(6, rc::gen::element<std::string>("", "P-100", "'", "\xFF", "a playback ID that is rather long")), date(),
      date());
}

rc::Gen<PropertyList> noString() {
  return rc::gen::element(PropertyList::fromInteger(7), PropertyList::fromDate(Instant{0}),
                          PropertyList(PropertyList::Array{"inner"}), PropertyList(PropertyListDictionary()));
}

rc::Gen<PropertyList> textOrNot() {
  return rc::gen::weightedOneOf<PropertyList>(
      {{8, rc::gen::map(mostlyUTF8(60), [](std::string text) { return PropertyList(std::move(text)); })},
       {1, noString()}});
}

rc::Gen<PropertyList> tagList() {
  return rc::gen::weightedOneOf<PropertyList>(
      {{8, rc::gen::map(upTo(4, textOrNot()), [](PropertyList::Array tags) { return PropertyList(std::move(tags)); })},
       {1, noString()},
       {1, rc::gen::just(PropertyList("no list"))}});
}

rc::Gen<Entries> itemEntries() {
  using Value = std::optional<PropertyList>;
  return rc::gen::apply(
      [](Value title, Value description, Value imageURL, Value tags) {
        Entries entries;
        if (title) entries.emplace_back(ZRLEPGDSTitleKey, *title);
        if (description) entries.emplace_back(ZRLEPGDSDescriptionKey, *description);
        if (imageURL) entries.emplace_back(ZRLEPGDSImageURLKey, *imageURL);
        if (tags) entries.emplace_back(ZRLEPGDSTagsKey, *tags);
        entries.emplace_back("unknown", "carried along, but not into the day file\xFF");
        return entries;
      },
      mostly(6, textOrNot()), mostly(6, textOrNot()), mostly(6, textOrNot()), mostly(6, tagList()));
}

std::optional<std::string> plain(const ItemsForDayFile& items, const std::vector<EPGEvent>& events) {
  return plainDayFile(LocalCalendar(), DateFormatter("dd-MM-yyyy"), items.lookup(), events);
}

TEST(PlainDayFileProperties, EveryDayFileIsThatOfThePlainWay) {
  std::size_t refused = 0;
  std::size_t written = 0;
  expectForCases(1500, [&] {
    const TimeZone zone(*rc::gen::element<std::string>("UTC", "Europe/Berlin", "America/New_York", "Asia/Kolkata",
                                                       "Australia/Lord_Howe", "Pacific/Apia"));
    ItemsForDayFile items;
    for (const char* const id : {"a", "b", ""}) items.add(id, *itemEntries());
    const std::vector<EPGEvent> events = *upTo(6, event());
    const auto file = items.dayFile(events);
    RC_ASSERT(file == plain(items, events));
    ++(file ? written : refused);
  });
  // Neither answer may be given always.
  EXPECT_GT(refused, 10U);
  EXPECT_GT(written, 100U);
}

TEST(PlainDayFileProperties, ADayFileOfManyPiecesIsThatOfThePlainWay) {
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
