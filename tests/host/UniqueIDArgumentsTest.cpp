#include "host/UniqueIDArguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "host/LineText.h"
#include "host/Refusal.h"

namespace epg::test {

namespace {

using testing::ElementsAre;
using testing::StartsWith;

const UniqueIDArgument standardInput;

std::vector<std::string> ids(const std::vector<UniqueIDArgument>& arguments, const std::string& input = {}) {
  std::istringstream stream(input);
  return uniqueIDs(arguments, stream);
}

std::string refusalOf(const std::string& input) {
  try {
    ids({standardInput}, input);
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "not refused";
}

}  // namespace

TEST(UniqueIDArguments, StandForThemselves) {
  EXPECT_THAT(ids({"b", "a\\n", "", "-"}), ElementsAre("b", "a\\n", "", "-"));
}

TEST(UniqueIDArguments, TakeInTheLinesOfStandardInputWhereTheDashStands) {
  EXPECT_THAT(ids({"first", standardInput, "last"}, "one\ntwo\n"), ElementsAre("first", "one", "two", "last"));
  EXPECT_THAT(ids({standardInput}, "one\ntwo"), ElementsAre("one", "two"));
}

TEST(UniqueIDArguments, AreReadAsListingsWriteThem) {
  const std::string id = "a\nb\t\\\x1B\xC2\x9B -é";
  EXPECT_THAT(ids({standardInput}, escapedForLine(id) + "\n-\n"), ElementsAre(id, "-"));
}

TEST(UniqueIDArguments, PassOverEmptyLinesAndCarriageReturnsAtTheirEnds) {
  EXPECT_THAT(ids({standardInput}, "one\r\n\n\r\ntwo \r\n"), ElementsAre("one", "two "));
}

TEST(UniqueIDArguments, NameTheLineThatCannotBeRead) {
  EXPECT_EQ(refusalOf("one\n\xFF\n"), "standard input: line 2: not UTF-8");
  EXPECT_THAT(refusalOf("one\ntwo\na\\q\n"), StartsWith("standard input: line 3: a backslash"));
}

TEST(UniqueIDArguments, RefuseStandardInputWithoutAnID) {
  EXPECT_EQ(refusalOf(""), "standard input: no EPG unique ID");
  EXPECT_EQ(refusalOf("\n\n"), "standard input: no EPG unique ID");
}

TEST(UniqueIDArguments, ReadStandardInputOnce) {
  EXPECT_THROW(ids({standardInput, standardInput}, "one\n"), WrongUsage);
}

}  // namespace epg::test
