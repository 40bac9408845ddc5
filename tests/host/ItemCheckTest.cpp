#include "host/checks/ItemCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/DayFileOf.h"

namespace epg::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

EPGEvent playing(std::optional<std::string> id, std::optional<double> start) {
  EPGEvent event;
  event.eventEPGUniqueID = std::move(id);
  if (start) event.eventEPGStartDateTime = Instant{*start};
  return event;
}

Schedule scheduleOf(std::vector<EPGEvent> events) {
  Schedule schedule;
  schedule.details.resize(events.size());
  schedule.events = std::move(events);
  return schedule;
}

/// "ID at seconds: text" for each finding.
std::vector<std::string> findings(const Schedule& schedule, const ItemsForDayFile& items) {
  std::vector<std::string> texts;
  for (const Finding& finding : itemFindings(schedule, items.store(), {"Live", "News"})) {
    const std::string time =
        finding.time ? std::to_string(static_cast<int>(finding.time->secondsSinceReferenceDate)) : "-";
    texts.push_back(finding.uniqueID.value_or("-") + " at " + time + ": " + finding.text);
  }
  return texts;
}

PropertyList tags(const std::vector<std::string>& names) {
  return PropertyList(PropertyList::Array(names.begin(), names.end()));
}

}  // namespace

TEST(ItemCheck, FindsNothingWrongWithACompleteItem) {
  const ItemsForDayFile items({{"title", "T"}, {"description", "D"}, {"tags", tags({"News", "Live", "Live"})}});
  EXPECT_THAT(findings(scheduleOf({playing("E", 0)}), items), IsEmpty());
}

TEST(ItemCheck, FindsEventsWithoutItem) {
  EXPECT_THAT(findings(scheduleOf({playing("X", 5), playing(std::nullopt, 6), playing("X", std::nullopt)}), {}),
              ElementsAre("X at 5: no item: left out of the export", "- at 6: no EPG unique ID: left out of the export",
                          "X at -: no item: left out of the export"));
}

TEST(ItemCheck, FindsMissingTexts) {
  for (const char* empty : {"", " \n"}) {
    const ItemsForDayFile items({{"title", empty}, {"description", empty}});
    EXPECT_THAT(findings(scheduleOf({playing("E", 1)}), items),
                ElementsAre("E at 1: no title", "E at 1: no description"));
  }
  EXPECT_THAT(findings(scheduleOf({playing("E", 1)}), ItemsForDayFile(std::vector<PropertyListDictionary::Entry>())),
              ElementsAre("E at 1: no title", "E at 1: no description"));
}

TEST(ItemCheck, TakesATextOfTheWrongTypeForNone) {
  const ItemsForDayFile items({{"title", PropertyList::fromInteger(1)}, {"description", "D"}});
  EXPECT_THAT(findings(scheduleOf({playing("E", 1)}), items), ElementsAre("E at 1: no title"));
}

TEST(ItemCheck, FindsTagsOutsideTheCatalogueEachOnce) {
  const ItemsForDayFile items({{"title", "T"}, {"description", "D"}, {"tags", tags({"news", "News", "a\nb", "news"})}});
  EXPECT_THAT(findings(scheduleOf({playing("E", 1)}), items),
              ElementsAre("E at 1: not in the tag catalogue: \"news\", \"a\\nb\""));
}

TEST(ItemCheck, NamesAnItemOnceAtItsFirstEvent) {
  const ItemsForDayFile items = ItemsForDayFile().add("E", {{"title", "T"}});
  EXPECT_THAT(
      findings(scheduleOf({playing("E", std::nullopt), playing("E", 7), playing("E", 3), playing("E", 9)}), items),
      ElementsAre("E at 3: no description"));
}

}  // namespace epg::test
