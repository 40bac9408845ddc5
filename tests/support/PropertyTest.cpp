// What random tests rest on: cases are counted, drawn again alike, and made simpler until nothing more can be left out.

#include "tests/support/Property.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Drawing.h"
#include "tests/support/SimplerChoices.h"

namespace epg::test {
namespace {

using Numbers = std::vector<std::uint64_t>;

/// What the test would have been failed with; empty where the property holds.
std::string failureOf(const std::function<void()>& property) {
  ::testing::TestPartResultArray results;
  {
    const ::testing::ScopedFakeTestPartResultReporter reporter(
        ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
    expectForCases(usualCases, property);
  }
  return results.size() == 0 ? std::string() : results.GetTestPartResult(0).message();
}

/// The value that the simplest case is told with.
std::string simplest(const std::function<void()>& property) {
  const std::string failure = failureOf(property);
  const std::string headline = "\nvalue:\n";
  const std::size_t at = failure.find(headline);
  if (at == std::string::npos) return "(nothing told: " + failure + ")";
  const std::size_t start = at + headline.size();
  return failure.substr(start, failure.find('\n', start) - start);
}

TEST(PropertyThatHolds, IsTriedInAsManyCasesAsAskedForFromTheEmptyOneOn) {
  if (std::getenv("RC_PARAMS")) GTEST_SKIP() << "NOT TESTED: RC_PARAMS says how many cases";  // NOLINT
  std::vector<std::size_t> sizes;
  expectForCases(37, [&] { sizes.push_back(sizeOfCase()); });
  ASSERT_EQ(sizes.size(), 37U);
  EXPECT_EQ(sizes.front(), 0U);
  EXPECT_TRUE(std::is_sorted(sizes.begin(), sizes.end()));
  EXPECT_GT(sizes.back(), 90U);
  EXPECT_LE(sizes.back(), 100U);
}

TEST(PropertyThatHolds, GetsAnotherCaseEachTime) {
  std::set<std::uint64_t> drawn;
  expectForCases(50, [&] { drawn.insert(numberOfAnyLength() + below(1U << 30)); });
  EXPECT_GT(drawn.size(), 40U);
}

TEST(PropertyThatBreaks, FailsTheTestWithWhatWasToHoldAndWhere) {
  const std::string failure = failureOf([] { HOLDS(below(10) < 2); });
  EXPECT_NE(failure.find("below(10) < 2"), std::string::npos) << failure;
  EXPECT_NE(failure.find("PropertyTest.cpp:"), std::string::npos) << failure;
  EXPECT_NE(failure.find("drawn numbers:\n2 \n"), std::string::npos) << failure;
}

TEST(PropertyThatBreaks, FailsTheTestByAnExceptionToo) {
  const std::string failure = failureOf([] { throw std::runtime_error("of the property's own"); });
  EXPECT_NE(failure.find("An exception was thrown: of the property's own"), std::string::npos) << failure;
  EXPECT_NE(failureOf([] { throw 1; }).find("Something was thrown that is no exception."), std::string::npos);
}

TEST(PropertyThatBreaks, IsToldWithTheLowestNumberThatBreaksIt) {
  EXPECT_EQ(simplest([] {
              const std::size_t number = below(100000);
              tell("value", number);
              HOLDS(number < 4711);
            }),
            "4711");
}

TEST(PropertyThatBreaks, IsToldWithTheFirstOfWhatCouldBeDrawn) {
  EXPECT_EQ(simplest([] {
              const std::string text = oneTextOf({"a", "b", "c"}) + oneTextOf({"x", "y", "z"});
              tell("value", text);
              HOLDS(text[0] == 'a');
            }),
            "\"bx\"");
}

TEST(PropertyThatBreaks, IsToldWithoutTheTimesThatItDoesNotNeed) {
  EXPECT_EQ(simplest([] {
              const auto numbers = upTo(sizeOfCase(), [] { return between(-5, 50); });
              tell("value", numbers);
              HOLDS(std::none_of(numbers.begin(), numbers.end(), [](auto number) { return number >= 20; }));
            }),
            "{ 20 }");
}

TEST(PropertyThatBreaks, IsToldWithoutTheTimesInsideOfOthersThatItDoesNotNeed) {
  EXPECT_EQ(simplest([] {
              const auto lists = upTo(6, [] { return upTo(6, [] { return below(10); }); });
              tell("value", lists);
              for (const auto& list : lists) HOLDS(std::count(list.begin(), list.end(), 9U) == 0);
            }),
            "{ { 9 } }");
}

TEST(DrawnValues, AreNoneOutsideOfAProperty) {
  EXPECT_THROW(below(1), std::logic_error);
  EXPECT_THROW(sizeOfCase(), std::logic_error);
}

TEST(DrawnValues, StayWithinTheirEnds) {
  expectForCases(usualCases, [] {
    HOLDS(below(1) == 0);
    const std::int64_t number = between(-3, 3);
    HOLDS(number >= -3 && number <= 3);
    std::size_t times = 0;
    for (Times drawn(2, 4); drawn.next();) ++times;
    HOLDS(times >= 2 && times <= 4);
    HOLDS(anyBytes(7).size() <= 7);
  });
}

TEST(Drawing, OfGivenNumbersGivesThoseThenZeros) {
  Drawing drawing(Numbers{7, 7}, 0);
  EXPECT_EQ(drawing.number(10), 7U);
  EXPECT_EQ(drawing.number(5), 4U) << "the last that can be drawn";
  EXPECT_EQ(drawing.number(0), 0U);
  EXPECT_EQ(drawing.choices.numbers, (Numbers{7, 4, 0}));
}

/// All that are tried in turn.
std::vector<Numbers> allSimpler(const Choices& choices, std::size_t place) {
  std::vector<Numbers> all;
  SimplerChoices simpler(choices, place);
  while (auto numbers = simpler.next()) all.push_back(std::move(*numbers));
  return all;
}

TEST(SimplerChoices, LeaveOutEachRepetitionThenLowerEachNumber) {
  const Choices choices{{2, 5, 3}, {{0, 1, 2}, {0, 2, 3}}};
  EXPECT_EQ(allSimpler(choices, 0),
            (std::vector<Numbers>{
                {1, 5}, {1, 3}, {0, 5, 3}, {1, 5, 3}, {2, 0, 3}, {2, 3, 3}, {2, 4, 3}, {2, 5, 0}, {2, 5, 2}}));
}

TEST(SimplerChoices, GoOnBehindThePlaceOfTheLastChange) {
  const Choices choices{{1, 1}, {}};
  EXPECT_EQ(allSimpler(choices, 0), (std::vector<Numbers>{{0, 1}, {1, 0}}));
  EXPECT_EQ(allSimpler(choices, 64), (std::vector<Numbers>{{1, 0}, {0, 1}}));
}

TEST(SimplerChoices, AreNoneOfNothing) { EXPECT_TRUE(allSimpler(Choices{{0, 0}, {}}, 0).empty()); }

TEST(SimplerChoices, AreFewerNumbersOrLowerOnes) {
  EXPECT_TRUE(areSimpler({9, 9}, {0, 0, 0}));
  EXPECT_FALSE(areSimpler({0, 0, 0}, {9, 9}));
  EXPECT_TRUE(areSimpler({1, 9}, {2, 0}));
  EXPECT_FALSE(areSimpler({1, 2}, {1, 2}));
}

}  // namespace
}  // namespace epg::test
