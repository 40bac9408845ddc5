#include "host/commands/UniqueIDArguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "host/terminal/LineText.h"
#include "tests/host/RefusalOf.h"

namespace epg::test {

namespace {

using testing::ElementsAre;
using testing::StartsWith;

const UniqueIDArgument standardInput;

std::vector<std::string> ids(const std::vector<UniqueIDArgument>& arguments, const std::string& input = {}) {
  std::istringstream stream(input);
  return uniqueIDs(arguments, stream);
}

std::string inputRefusal(const std::string& input) {
  return refusalOf([&] { ids({standardInput}, input); });
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
  EXPECT_EQ(inputRefusal("one\n\xFF\n"), "standard input: line 2: not UTF-8");
  EXPECT_THAT(inputRefusal("one\ntwo\na\\q\n"), StartsWith("standard input: line 3: a backslash"));
}

TEST(UniqueIDArguments, AreNoWholeLinesOfAListing) {
  EXPECT_EQ(inputRefusal("one\ntwo\tTwo\n"), "standard input: line 2: holds a tab; only the ID belongs here (cut -f1)");
  EXPECT_EQ(inputRefusal("one\t\n"), "standard input: line 1: holds a tab; only the ID belongs here (cut -f1)");
}

TEST(UniqueIDArguments, HoldNoControlCharactersThatListingsWouldHaveEscaped) {
  for (const char* line : {"a\x1B[2J", "\x01", "a\rb", "\x7F", "a\xC2\x9B", "a\xE2\x80\xA8", "\xE2\x80\xAE"}) {
    EXPECT_THAT(inputRefusal("one\n" + std::string(line) + "\n"),
                StartsWith("standard input: line 2: holds a control character"))
        << line;
  }
  EXPECT_THAT(inputRefusal(std::string("a\0b\n", 4)), StartsWith("standard input: line 1: holds a control character"));
}

TEST(UniqueIDArguments, DoNotBeginWithTheByteOrderMarkOfStandardInput) {
  const std::string mark = "\xEF\xBB\xBF";
  EXPECT_THAT(ids({standardInput}, mark + "one\ntwo\n"), ElementsAre("one", "two"));
  EXPECT_THAT(ids({standardInput}, mark + "\r\none\n"), ElementsAre("one"));
  EXPECT_THAT(ids({standardInput}, mark + mark + "one\n" + mark + "two\n"), ElementsAre(mark + "one", mark + "two"));
  EXPECT_EQ(inputRefusal(mark), "standard input: no EPG unique ID");
  EXPECT_THAT(ids({mark + "one"}), ElementsAre(mark + "one"));
}

TEST(UniqueIDArguments, RefuseStandardInputWithoutAnID) {
  EXPECT_EQ(inputRefusal(""), "standard input: no EPG unique ID");
  EXPECT_EQ(inputRefusal("\n\n"), "standard input: no EPG unique ID");
}

TEST(UniqueIDArguments, ReadStandardInputOnce) {
  EXPECT_THROW(ids({standardInput, standardInput}, "one\n"), WrongUsage);
}

}  // namespace epg::test
