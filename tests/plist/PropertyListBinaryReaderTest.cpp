#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "plist/PropertyListFile.h"
#include "tests/plist/BinaryPropertyLists.h"
#include "tests/plist/PropertyListPrinting.h"
#include "tests/xml/Encodings.h"

namespace epg::test {
namespace {

struct ReadableObject {
  const char* behaviour;
  std::string object;
  PropertyList expected;
};

/// Each as the one object of a file.
void expectRead(const std::vector<ReadableObject>& rows) {
  for (const ReadableObject& row : rows)
    EXPECT_EQ(parsePropertyList(fileOf(row.object)), row.expected) << row.behaviour;
}

PropertyList integerOf(std::int64_t value) { return PropertyList::fromInteger(value); }
PropertyList realOf(double value) { return PropertyList::fromReal(value); }
PropertyList uidOf(std::int64_t value) { return dictionaryOf({{"CF$UID", integerOf(value)}}); }

TEST(BinaryPropertyList, ReadsEveryKindOfObject) {
  EXPECT_EQ(parsePropertyList(smallFile()),
            dictionaryOf({{"key", arrayOf({PropertyList::fromBoolean(true), PropertyList::fromInteger(7),
                                           PropertyList::fromReal(0.5), "é", PropertyList::fromData("ab"),
                                           PropertyList::fromDate(Instant{1})})}}));
}

TEST(BinaryPropertyList, ReadsObjectsOfEveryWidth) {
  using Integers = std::numeric_limits<std::int64_t>;
  const double infinity = std::numeric_limits<double>::infinity();
  expectRead({{"false", "\x08", PropertyList::fromBoolean(false)},
              {"true", "\x09", PropertyList::fromBoolean(true)},
              {"integer of one byte, without a sign", "\x10\xFF", integerOf(255)},
              {"integer of two bytes, without a sign", "\x11\xFF\xFE", integerOf(65534)},
              {"integer of four bytes, without a sign", "\x12\xFF\xFF\xFF\xFF", integerOf(4294967295)},
              {"integer of eight bytes, with a sign", Builder::integer(~std::uint64_t{0}), integerOf(-1)},
              {"lowest integer of eight bytes", Builder::integer(std::uint64_t{1} << 63), integerOf(Integers::min())},
              {"highest integer of eight bytes", Builder::integer(~std::uint64_t{0} >> 1), integerOf(Integers::max())},
              {"integer of sixteen bytes, the highest", "\x14" + Builder::bigEndian(~std::uint64_t{0}, 16),
               PropertyList::fromUnsigned(std::numeric_limits<std::uint64_t>::max())},
              {"integer of sixteen bytes", "\x14" + Builder::bigEndian(5, 16), integerOf(5)},
              {"integer of sixteen bytes, with a sign", "\x14" + std::string(16, '\xFF'), integerOf(-1)},
              {"real of four bytes", bytes("\x22\x3F\xC0\x00\x00"), realOf(1.5)},
              {"real of eight bytes", "\x23" + doubleBytes(-0.1), realOf(-0.1)},
              {"infinite real", "\x23" + doubleBytes(-infinity), realOf(-infinity)},
              {"real that is not a number", "\x23" + doubleBytes(std::nan("")), realOf(std::nan(""))},
              {"date, from the reference date on", "\x33" + doubleBytes(-1.5), PropertyList::fromDate(Instant{-1.5})},
              {"empty data", Builder::data(""), PropertyList::fromData("")},
              {"data", Builder::data(bytes("\0\xFF\x80")), PropertyList::fromData(bytes("\0\xFF\x80"))},
              {"UID of one byte", "\x80\x2A", uidOf(42)},
              {"UID of four bytes", "\x83\xFF\xFF\xFF\xFF", uidOf(4294967295)},
              {"UID of sixteen bytes", "\x8F" + Builder::bigEndian(7, 16), uidOf(7)},
              {"empty array", "\xA0", arrayOf({})},
              {"empty dictionary", "\xD0", dictionaryOf({})}});
}

TEST(BinaryPropertyList, RefusesObjectsOfAnyOtherWidth) {
  for (unsigned exponent = 5; exponent < 16; ++exponent) {
    expectRefused("an integer of an impossible width", {Builder::byte(0x10 | exponent) + std::string(70, '\0')});
  }
  for (const unsigned exponent : {0U, 1U, 4U, 15U}) {
    expectRefused("a real of an impossible width", {Builder::byte(0x20 | exponent) + std::string(70, '\0')});
  }
  expectRefused("an integer beyond 64 bits", {"\x14" + std::string(7, '\0') + "\x01" + std::string(8, '\0'),
                                              "\x14" + std::string(8, '\xFF') + std::string(8, '\x7F')});
  expectRefused("a date that is not a number", {"\x33" + doubleBytes(std::nan(""))});
  expectRefused("a UID beyond 64 bits", {"\x88\x01" + std::string(8, '\0')});
}

TEST(BinaryPropertyListText, IsReadFromEveryForm) {
  const std::string twenty(20, 'x');
  expectRead({{"empty", Builder::ascii(""), ""},
              {"of fourteen bytes", Builder::ascii("fourteen bytes"), "fourteen bytes"},
              {"of fifteen", Builder::ascii("fifteen letters"), "fifteen letters"},
              {"of many", Builder::ascii(std::string(70000, 'x')), std::string(70000, 'x')},
              {"UTF-16", "\x64" + utf16("é節📺", ByteOrder::BigEndian), "é節📺"},
              {"UTF-8", "\x75é節", "é節"},
              {"with a zero byte", "\x53" + bytes("a\0b"), bytes("a\0b")},
              {"length of one byte", "\x5F\x10\x14" + twenty, twenty},
              {"length of two bytes", bytes("\x5F\x11\x00\x14") + twenty, twenty},
              {"length of four bytes", bytes("\x5F\x12\x00\x00\x00\x14") + twenty, twenty},
              {"length of eight bytes", "\x5F\x13" + Builder::bigEndian(20, 8) + twenty, twenty},
              {"first half of a surrogate pair", bytes("\x61\xD8\x00"), "\uFFFD"},
              {"second half of a surrogate pair", bytes("\x61\xDC\x00"), "\uFFFD"},
              {"first half before a letter", bytes("\x62\xD8\x00\x00\x61"), "\uFFFDa"},
              {"first half before a pair", bytes("\x63\xD8\x3D\xD8\x3D\xDE\x00"), "\uFFFD😀"},
              {"halves the wrong way round", bytes("\x63\xDE\x00\xD8\x3D\x00\x61"), "\uFFFD\uFFFDa"}});
}

TEST(BinaryPropertyListText, WithoutItsLengthOrInAnotherEncodingIsRefused) {
  expectRefused("an object without its length", {"\x5F", "\x5F\x09", "\x5F\x14", "\x5F\x53", "\x5F\x23"});
  expectRefused("not ASCII", {"\x51\x80"});
  expectRefused("not UTF-8", {"\x71\xFF"});
}

TEST(BinaryPropertyListContainer, IsReadFromItsReferences) {
  const struct {
    const char* behaviour;
    std::vector<std::string> objects;
    PropertyList expected;
  } rows[] = {{"more than fourteen elements",
               {array(Builder::References(300, 1)), Builder::ascii("a")},
               arrayOf(PropertyList::Array(300, "a"))},
              {"the last of several values under one key counts",
               {dictionary({1, 1}, {1, 2}), Builder::ascii("a"), Builder::ascii("b")},
               dictionaryOf({{"a", "b"}})},
              {"a container that others share",
               {array({1, 1}), array({2}), Builder::ascii("a")},
               arrayOf({arrayOf({"a"}), arrayOf({"a"})})}};
  for (const auto& row : rows) EXPECT_EQ(parsePropertyList(fileOfObjects(row.objects)), row.expected) << row.behaviour;
}

TEST(BinaryPropertyListContainer, WithReferencesThatLeadNowhereIsRefused) {
  const char* const itself = "a container that holds itself";
  const std::string a = Builder::ascii("a");
  const struct {
    const char* behaviour;
    std::vector<std::string> objects;
    const char* problem;
  } rows[] = {{"a key that is no string", {dictionary({1}, {1}), Builder::data("a")}, "a key that is no string"},
              {"no such object", {array({1})}, "a reference to an object that does not exist"},
              {"an array in itself", {array({0})}, itself},
              {"a dictionary in itself", {dictionary({1}, {0}), a}, itself},
              {"a dictionary as its own key", {dictionary({0}, {0})}, itself},
              {"a cycle over several", {array({1}), array({2}), array({3, 1}), a}, itself}};
  for (const auto& row : rows) EXPECT_EQ(problemOf(fileOfObjects(row.objects)), row.problem) << row.behaviour;
}

/// Arrays, one in another; in the innermost there is `innermost`, when it is given.
std::string nestedArrays(std::uint64_t depth, const std::string& innermost = {}) {
  std::vector<std::string> objects;
  for (std::uint64_t i = 1; i < depth; ++i) objects.push_back(array({i}));
  objects.push_back(innermost.empty() ? array({}) : array({depth}));
  if (!innermost.empty()) objects.push_back(innermost);
  return fileOfObjects(objects);
}

TEST(BinaryPropertyListContainer, NestingOf512IsRead) {
  EXPECT_EQ(parsePropertyList(nestedArrays(512)), arraysNested(512));
  EXPECT_EQ(problemOf(nestedArrays(512, Builder::ascii("a"))), "");
}

TEST(BinaryPropertyListContainer, NestingOf513IsRefused) { EXPECT_EQ(problemOf(nestedArrays(513)), "nested too deep"); }

TEST(BinaryPropertyListContainer, UIDCountsAsTheDictionaryThatItBecomes) {
  EXPECT_EQ(problemOf(nestedArrays(511, "\x80\x01")), "");
  EXPECT_EQ(problemOf(nestedArrays(512, "\x80\x01")), "nested too deep");
}

TEST(BinaryPropertyListContainer, NestingOfAMillionIsRefused) {
  Builder builder;
  builder.referenceWidth = 4;
  for (std::uint64_t i = 1; i < 1000000; ++i) builder.add(builder.array({i}));
  builder.add(builder.array({}));
  EXPECT_EQ(problemOf(builder.file()), "nested too deep");
}

TEST(BinaryPropertyListContainer, SharedContainerCountsWhereItStandsDeepest) {
  // Object 1 is read at depth 2 first; through the chain of the others it stands too deep.
  Builder builder;
  builder.add(builder.array({1, 2}));
  builder.add(builder.array({}));
  for (std::uint64_t i = 3; i < 513; ++i) builder.add(builder.array({i}));
  builder.add(builder.array({1}));
  EXPECT_EQ(problemOf(builder.file()), "nested too deep");
}

}  // namespace
}  // namespace epg::test
