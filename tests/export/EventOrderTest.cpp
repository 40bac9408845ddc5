#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "export/EventOrder.h"
#include "tests/support/Events.h"

namespace epg::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> idsInOrder(const std::vector<EPGEvent>& events) {
  std::vector<std::string> ids;
  const EventOrder order = EventOrder::byStart(events);
  for (std::size_t i = 0; i < order.size(); ++i) ids.push_back(order[i].eventEPGUniqueID.value_or("-"));
  return ids;
}

TEST(EventOrderTest, TheEarliestStartComesFirst) {
  EXPECT_THAT(idsInOrder({eventAt("c", 3), eventAt("a", -1), eventAt("b", 2.5)}), ElementsAre("a", "b", "c"));
}

TEST(EventOrderTest, EqualStartsKeepTheOrderGiven) {
  EXPECT_THAT(idsInOrder({eventAt("x", 5), eventAt("b", 1), eventAt("a", 1), eventAt("c", 1), eventAt("y", 0)}),
              ElementsAre("y", "b", "a", "c", "x"));
}

TEST(EventOrderTest, EqualStartsKeepTheOrderGivenInLongListsToo) {
  std::vector<EPGEvent> events;
  std::vector<std::string> expected;
  for (int i = 0; i < 3000; ++i) events.push_back(eventAt(std::to_string(i), i % 3));
  for (int start = 0; start < 3; ++start) {
    for (int i = start; i < 3000; i += 3) expected.push_back(std::to_string(i));
  }
  EXPECT_EQ(expected, idsInOrder(events));
}

TEST(EventOrderTest, EventsWithoutAStartComeLastInTheOrderGiven) {
  EXPECT_THAT(idsInOrder({eventWithoutTimes("n2"), eventAt("b", 2), eventWithoutTimes("n1"), eventAt("a", 1)}),
              ElementsAre("a", "b", "n2", "n1"));
}

TEST(EventOrderTest, AStartThatIsNoNumberCountsAsNone) {
  EXPECT_THAT(idsInOrder({eventAt("nan", std::nan("")), eventWithoutTimes("none"), eventAt("b", 2), eventAt("a", 1),
                          eventAt("nan too", -std::nan(""))}),
              ElementsAre("a", "b", "nan", "none", "nan too"));
}

TEST(EventOrderTest, InfiniteStartsStandAtTheEndsOfTheOrder) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_THAT(idsInOrder({eventWithoutTimes("none"), eventAt("future", infinity), eventAt("now", 0),
                          eventAt("past", -infinity)}),
              ElementsAre("past", "now", "future", "none"));
}

TEST(EventOrderTest, TheEndPlaysNoPart) {
  EXPECT_THAT(idsInOrder({eventFromTo("a", 10, 11), eventFromTo("b", 5, 100)}), ElementsAre("b", "a"));
}

TEST(EventOrderTest, FractionsOfASecondCount) {
  EXPECT_THAT(idsInOrder({eventAt("b", 1.5), eventAt("a", 1.25)}), ElementsAre("a", "b"));
}

TEST(EventOrderTest, EveryEventIsKept) {
  std::mt19937 random(7);
  std::vector<EPGEvent> events;
  for (int i = 0; i < 5000; ++i) {
    events.push_back(i % 10 == 0 ? eventWithoutTimes(std::to_string(i))
                                 : eventAt(std::to_string(i), static_cast<double>(random() % 1000)));
  }
  std::vector<std::string> given;
  for (const EPGEvent& event : events) given.push_back(*event.eventEPGUniqueID);
  std::vector<std::string> sorted = idsInOrder(events);
  std::sort(given.begin(), given.end());
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(given, sorted);
}

TEST(EventOrderTest, NoEventsGiveNone) { EXPECT_TRUE(idsInOrder({}).empty()); }

}  // namespace
}  // namespace epg::test
