#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <string>

#include "plist/PropertyListFile.h"
#include "tests/plist/BinaryPropertyListBuilder.h"
#include "tests/plist/PropertyListPrinting.h"
#include "tests/xml/Encodings.h"

namespace epg::test {
namespace {

using Builder = BinaryPropertyListBuilder;

std::string fileOf(const std::string& object) {
  Builder builder;
  builder.add(object);
  return builder.file();
}

std::optional<PropertyList> valueOf(const std::string& object) { return parsePropertyList(fileOf(object)); }

/// Why a file cannot be read, without the place; an empty string when it can.
std::string problemOf(const std::string& bytes) {
  std::string problem;
  const auto list = parsePropertyList(bytes, &problem);
  if (list) return {};
  EXPECT_EQ(problem.compare(0, 5, "byte "), 0) << problem;
  const std::size_t colon = problem.find(": ");
  return colon == std::string::npos ? "(unreadable, without a reason)" : problem.substr(colon + 2);
}

std::string doubleBytes(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return Builder::bigEndian(bits, 8);
}

/// {"key": [true, 7, 0.5, "é", data, date]}, every kind of object once.
std::string smallFile() {
  Builder builder;
  builder.referenceWidth = 1;
  builder.offsetWidth = 1;
  builder.add(builder.dictionary({1}, {2}));
  builder.add(Builder::ascii("key"));
  builder.add(builder.array({3, 4, 5, 6, 7, 8}));
  builder.add(Builder::byte(0x09));
  builder.add("\x10\x07");
  builder.add("\x23" + doubleBytes(0.5));
  builder.add("\x61" + std::string("\x00\xE9", 2));
  builder.add(Builder::data("ab"));
  builder.add("\x33" + doubleBytes(1));
  return builder.file();
}

TEST(BinaryPropertyList, ReadsEveryKindOfObject) {
  EXPECT_EQ(parsePropertyList(smallFile()),
            dictionaryOf({{"key", arrayOf({PropertyList::fromBoolean(true), PropertyList::fromInteger(7),
                                           PropertyList::fromReal(0.5), "é", PropertyList::fromData("ab"),
                                           PropertyList::fromDate(Instant{1})})}}));
}

TEST(BinaryPropertyList, ReadsBooleans) {
  EXPECT_EQ(valueOf("\x08"), PropertyList::fromBoolean(false));
  EXPECT_EQ(valueOf("\x09"), PropertyList::fromBoolean(true));
}

// Integers

TEST(BinaryPropertyListInteger, OfOneTwoAndFourBytesHasNoSign) {
  EXPECT_EQ(valueOf("\x10\xFF"), PropertyList::fromInteger(255));
  EXPECT_EQ(valueOf("\x11\xFF\xFE"), PropertyList::fromInteger(65534));
  EXPECT_EQ(valueOf("\x12\xFF\xFF\xFF\xFF"), PropertyList::fromInteger(4294967295));
}

TEST(BinaryPropertyListInteger, OfEightBytesHasASign) {
  EXPECT_EQ(valueOf(Builder::integer(~std::uint64_t{0})), PropertyList::fromInteger(-1));
  EXPECT_EQ(valueOf(Builder::integer(std::uint64_t{1} << 63)),
            PropertyList::fromInteger(std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ(valueOf(Builder::integer(~std::uint64_t{0} >> 1)),
            PropertyList::fromInteger(std::numeric_limits<std::int64_t>::max()));
}

TEST(BinaryPropertyListInteger, OfSixteenBytesReachesToTheHighest) {
  EXPECT_EQ(valueOf("\x14" + Builder::bigEndian(~std::uint64_t{0}, 16)),
            PropertyList::fromUnsigned(std::numeric_limits<std::uint64_t>::max()));
  EXPECT_EQ(valueOf("\x14" + Builder::bigEndian(5, 16)), PropertyList::fromInteger(5));
  EXPECT_EQ(valueOf("\x14" + std::string(16, '\xFF')), PropertyList::fromInteger(-1));
}

TEST(BinaryPropertyListInteger, OfSixteenBytesBeyondTheEndsIsRefused) {
  EXPECT_EQ(problemOf(fileOf("\x14" + std::string(7, '\0') + "\x01" + std::string(8, '\0'))),
            "an integer beyond 64 bits");
  EXPECT_EQ(problemOf(fileOf("\x14" + std::string(8, '\xFF') + std::string(8, '\x7F'))), "an integer beyond 64 bits");
}

TEST(BinaryPropertyListInteger, OfAnyOtherWidthIsRefused) {
  for (unsigned exponent = 5; exponent < 16; ++exponent) {
    EXPECT_EQ(problemOf(fileOf(Builder::byte(0x10 | exponent) + std::string(70, '\0'))),
              "an integer of an impossible width");
  }
}

// Reals and dates

TEST(BinaryPropertyListReal, IsReadInBothWidths) {
  EXPECT_EQ(valueOf(std::string("\x22\x3F\xC0\x00\x00", 5)), PropertyList::fromReal(1.5));
  EXPECT_EQ(valueOf("\x23" + doubleBytes(-0.1)), PropertyList::fromReal(-0.1));
}

TEST(BinaryPropertyListReal, MayBeInfiniteOrNotANumber) {
  EXPECT_EQ(valueOf("\x23" + doubleBytes(-std::numeric_limits<double>::infinity())),
            PropertyList::fromReal(-std::numeric_limits<double>::infinity()));
  EXPECT_EQ(valueOf("\x23" + doubleBytes(std::nan(""))), PropertyList::fromReal(std::nan("")));
}

TEST(BinaryPropertyListReal, OfAnyOtherWidthIsRefused) {
  for (const unsigned exponent : {0U, 1U, 4U, 15U}) {
    EXPECT_EQ(problemOf(fileOf(Builder::byte(0x20 | exponent) + std::string(70, '\0'))),
              "a real of an impossible width");
  }
}

TEST(BinaryPropertyListDate, CountsFromTheReferenceDate) {
  EXPECT_EQ(valueOf("\x33" + doubleBytes(-1.5)), PropertyList::fromDate(Instant{-1.5}));
}

TEST(BinaryPropertyListDate, ThatIsNotANumberIsRefused) {
  EXPECT_EQ(problemOf(fileOf("\x33" + doubleBytes(std::nan("")))), "a date that is not a number");
}

// Text and data

TEST(BinaryPropertyListText, IsReadFromASCII) {
  EXPECT_EQ(valueOf(Builder::ascii("")), PropertyList(""));
  EXPECT_EQ(valueOf(Builder::ascii("fourteen bytes")), PropertyList("fourteen bytes"));
  EXPECT_EQ(valueOf(Builder::ascii("fifteen letters")), PropertyList("fifteen letters"));
  EXPECT_EQ(valueOf(Builder::ascii(std::string(70000, 'x'))), PropertyList(std::string(70000, 'x')));
}

TEST(BinaryPropertyListText, IsReadFromUTF16) {
  EXPECT_EQ(valueOf("\x64" + utf16("é節📺", ByteOrder::BigEndian)), PropertyList("é節📺"));
}

TEST(BinaryPropertyListText, IsReadFromUTF8) { EXPECT_EQ(valueOf("\x75é節"), PropertyList("é節")); }

TEST(BinaryPropertyListText, MayHoldAZeroByte) {
  EXPECT_EQ(valueOf(std::string("\x53"
                                "a\0b",
                                4)),
            PropertyList(std::string("a\0b", 3)));
}

TEST(BinaryPropertyListText, LengthMayBeOfAnyWidth) {
  const std::string text(20, 'x');
  EXPECT_EQ(valueOf("\x5F\x10\x14" + text), PropertyList(text));
  EXPECT_EQ(valueOf(std::string("\x5F\x11\x00\x14", 4) + text), PropertyList(text));
  EXPECT_EQ(valueOf(std::string("\x5F\x12\x00\x00\x00\x14", 6) + text), PropertyList(text));
  EXPECT_EQ(valueOf("\x5F\x13" + Builder::bigEndian(20, 8) + text), PropertyList(text));
}

TEST(BinaryPropertyListText, WithoutItsLengthIsRefused) {
  for (const char* object : {"\x5F", "\x5F\x09", "\x5F\x14", "\x5F\x53", "\x5F\x23"}) {
    EXPECT_EQ(problemOf(fileOf(object)), "an object without its length");
  }
}

TEST(BinaryPropertyListText, OutsideASCIIIsRefused) { EXPECT_EQ(problemOf(fileOf("\x51\x80")), "not ASCII"); }

TEST(BinaryPropertyListText, InvalidUTF8IsRefused) { EXPECT_EQ(problemOf(fileOf("\x71\xFF")), "not UTF-8"); }

TEST(BinaryPropertyListText, HalfOfASurrogatePairIsReadAsAReplacementCharacter) {
  EXPECT_EQ(valueOf(std::string("\x61\xD8\x00", 3)), PropertyList("\uFFFD"));
  EXPECT_EQ(valueOf(std::string("\x61\xDC\x00", 3)), PropertyList("\uFFFD"));
  EXPECT_EQ(valueOf(std::string("\x62\xD8\x00\x00\x61", 5)), PropertyList("\uFFFDa"));
  EXPECT_EQ(valueOf(std::string("\x63\xD8\x3D\xD8\x3D\xDE\x00", 7)), PropertyList("\uFFFD😀"));
  EXPECT_EQ(valueOf(std::string("\x63\xDE\x00\xD8\x3D\x00\x61", 7)), PropertyList("\uFFFD\uFFFDa"));
}

TEST(BinaryPropertyListData, IsReadAsItStands) {
  EXPECT_EQ(valueOf(Builder::data("")), PropertyList::fromData(""));
  EXPECT_EQ(valueOf(Builder::data(std::string("\0\xFF\x80", 3))), PropertyList::fromData(std::string("\0\xFF\x80", 3)));
}

TEST(BinaryPropertyListUID, BecomesADictionary) {
  EXPECT_EQ(valueOf("\x80\x2A"), dictionaryOf({{"CF$UID", PropertyList::fromInteger(42)}}));
  EXPECT_EQ(valueOf("\x83\xFF\xFF\xFF\xFF"), dictionaryOf({{"CF$UID", PropertyList::fromInteger(4294967295)}}));
  EXPECT_EQ(valueOf("\x8F" + Builder::bigEndian(7, 16)), dictionaryOf({{"CF$UID", PropertyList::fromInteger(7)}}));
}

TEST(BinaryPropertyListUID, BeyondSixtyFourBitsIsRefused) {
  EXPECT_EQ(problemOf(fileOf("\x88\x01" + std::string(8, '\0'))), "a UID beyond 64 bits");
}

// Containers

TEST(BinaryPropertyListContainer, MayBeEmpty) {
  EXPECT_EQ(valueOf("\xA0"), arrayOf({}));
  EXPECT_EQ(valueOf("\xD0"), dictionaryOf({}));
}

TEST(BinaryPropertyListContainer, MayHoldMoreThanFourteen) {
  Builder builder;
  builder.add(builder.array(Builder::References(300, 1)));
  builder.add(Builder::ascii("a"));
  EXPECT_EQ(parsePropertyList(builder.file()), arrayOf(PropertyList::Array(300, "a")));
}

TEST(BinaryPropertyListContainer, LastOfSeveralValuesUnderOneKeyCounts) {
  Builder builder;
  builder.add(builder.dictionary({1, 1}, {1, 2}));
  builder.add(Builder::ascii("a"));
  builder.add(Builder::ascii("b"));
  EXPECT_EQ(parsePropertyList(builder.file()), dictionaryOf({{"a", "b"}}));
}

TEST(BinaryPropertyListContainer, KeyThatIsNoStringIsRefused) {
  Builder builder;
  builder.add(builder.dictionary({1}, {1}));
  builder.add(Builder::data("a"));
  EXPECT_EQ(problemOf(builder.file()), "a key that is no string");
}

TEST(BinaryPropertyListContainer, ReferenceToNoObjectIsRefused) {
  Builder builder;
  builder.add(builder.array({1}));
  EXPECT_EQ(problemOf(builder.file()), "a reference to an object that does not exist");
}

TEST(BinaryPropertyListContainer, ThatHoldsItselfIsRefused) {
  Builder array;
  array.add(array.array({0}));
  EXPECT_EQ(problemOf(array.file()), "a container that holds itself");

  Builder dictionary;
  dictionary.add(dictionary.dictionary({1}, {0}));
  dictionary.add(Builder::ascii("a"));
  EXPECT_EQ(problemOf(dictionary.file()), "a container that holds itself");

  Builder key;
  key.add(key.dictionary({0}, {0}));
  EXPECT_EQ(problemOf(key.file()), "a container that holds itself");
}

TEST(BinaryPropertyListContainer, CycleOverSeveralIsRefused) {
  Builder builder;
  builder.add(builder.array({1}));
  builder.add(builder.array({2}));
  builder.add(builder.array({3, 1}));
  builder.add(Builder::ascii("a"));
  EXPECT_EQ(problemOf(builder.file()), "a container that holds itself");
}

TEST(BinaryPropertyListContainer, MayBeSharedByOthers) {
  Builder builder;
  builder.add(builder.array({1, 1}));
  builder.add(builder.array({2}));
  builder.add(Builder::ascii("a"));
  EXPECT_EQ(parsePropertyList(builder.file()), arrayOf({arrayOf({"a"}), arrayOf({"a"})}));
}

/// Arrays, one in another; in the innermost there is `innermost`, when it is given.
std::string nestedArrays(std::uint64_t depth, const std::string& innermost = {}) {
  Builder builder;
  for (std::uint64_t i = 1; i < depth; ++i) builder.add(builder.array({i}));
  if (innermost.empty()) {
    builder.add(builder.array({}));
  } else {
    builder.add(builder.array({depth}));
    builder.add(innermost);
  }
  return builder.file();
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

// Files that stand for more than they hold

TEST(BinaryPropertyListBomb, DoublingArraysAreRefused) {
  Builder builder;
  for (std::uint64_t i = 1; i < 60; ++i) builder.add(builder.array({i, i}));
  builder.add(Builder::ascii("ha"));
  EXPECT_EQ(problemOf(builder.file()), "the value is larger than any that can be meant");
}

TEST(BinaryPropertyListBomb, DoublingDictionariesAreRefused) {
  Builder builder;
  for (std::uint64_t i = 1; i < 60; ++i) builder.add(builder.dictionary({60, 61}, {i, i}));
  builder.add(Builder::ascii("ha"));
  builder.add(Builder::ascii("a"));
  builder.add(Builder::ascii("b"));
  EXPECT_EQ(problemOf(builder.file()), "the value is larger than any that can be meant");
}

TEST(BinaryPropertyListBomb, ManyDictionariesWithOneLongKeyAreRefused) {
  Builder builder;
  builder.referenceWidth = 4;
  Builder::References dictionaries;
  for (std::uint64_t i = 0; i < 20000; ++i) dictionaries.push_back(i + 2);
  builder.add(builder.array(dictionaries));
  builder.add(Builder::ascii(std::string(200000, 'k')));
  for (std::uint64_t i = 0; i < 20000; ++i) builder.add(builder.dictionary({1}, {1}));
  EXPECT_EQ(problemOf(builder.file()), "the value is larger than any that can be meant");
}

TEST(BinaryPropertyListBomb, ObjectsThatOverlapAreRefused) {
  // Ten thousand strings that all begin at one place.
  Builder builder;
  Builder::References all;
  for (std::uint64_t i = 0; i < 10000; ++i) all.push_back(i + 1);
  const std::string array = builder.array(all);
  const std::string text = Builder::ascii(std::string(100000, 'x'));
  std::string bytes = builder.header + array + text;
  const std::size_t tableOffset = bytes.size();
  bytes += Builder::bigEndian(builder.header.size(), 4);
  for (int i = 0; i < 10000; ++i) bytes += Builder::bigEndian(builder.header.size() + array.size(), 4);
  EXPECT_EQ(problemOf(bytes + builder.trailer(10001, tableOffset)), "objects that overlap");
}

TEST(BinaryPropertyListBomb, SharingThatWritersMakeIsRead) {
  // One long text under every one of a thousand entries.
  Builder builder;
  Builder::References entries;
  for (std::uint64_t i = 0; i < 1000; ++i) entries.push_back(i + 3);
  builder.add(builder.array(entries));
  builder.add(Builder::ascii("description"));
  builder.add(Builder::ascii(std::string(10000, 'x')));
  for (std::uint64_t i = 0; i < 1000; ++i) builder.add(builder.dictionary({1}, {2}));
  EXPECT_EQ(problemOf(builder.file()), "");
}

TEST(BinaryPropertyListBomb, TextOfSixtyFourMegabytesIsRead) {
  const std::string text(std::size_t{64} << 20, 'x');
  EXPECT_EQ(problemOf(fileOf(Builder::ascii(text))), "");
}

TEST(BinaryPropertyListBomb, LengthsOfTwoGigabytesInASmallFileAreRefused) {
  for (const unsigned kind : {0x4U, 0x5U, 0x6U, 0x7U, 0xAU, 0xDU}) {
    for (const std::uint64_t length : {std::uint64_t{1} << 31, (std::uint64_t{1} << 31) - 1, std::uint64_t{1} << 32,
                                       std::uint64_t{1} << 62, std::uint64_t{1} << 63, ~std::uint64_t{0}}) {
      EXPECT_EQ(problemOf(fileOf(Builder::counted(kind, length) + std::string(40, 'a'))), "an object is cut off");
    }
  }
}

TEST(BinaryPropertyListBomb, ContentOneByteLongerThanTheFileIsRefused) {
  EXPECT_EQ(problemOf(fileOf("\x53"
                             "ab")),
            "an object is cut off");
  EXPECT_EQ(problemOf(fileOf("\x43"
                             "ab")),
            "an object is cut off");
  EXPECT_EQ(problemOf(fileOf("\x62"
                             "abc")),
            "an object is cut off");
  EXPECT_EQ(problemOf(fileOf(std::string("\xA2\0\0\0", 4))), "an object is cut off");
  EXPECT_EQ(problemOf(fileOf(std::string("\xD1\0\0\0", 4))), "an object is cut off");
  EXPECT_EQ(problemOf(fileOf("\x13"
                             "1234567")),
            "an object is cut off");
  EXPECT_EQ(problemOf(fileOf("\x22"
                             "123")),
            "an object is cut off");
  EXPECT_EQ(problemOf(fileOf("\x33"
                             "1234567")),
            "an object is cut off");
  EXPECT_EQ(problemOf(fileOf("\x83"
                             "123")),
            "an object is cut off");
}

// The header, the table of objects and the trailer

TEST(BinaryPropertyListFrame, UnknownVersionIsRefused) {
  Builder builder;
  builder.add("\x09");
  builder.header = "bplist01";
  EXPECT_EQ(problemOf(builder.file()), "an unknown version of the binary property-list form");
}

TEST(BinaryPropertyListFrame, HeaderAloneIsRefused) { EXPECT_EQ(problemOf("bplist00"), "the file is cut off"); }

TEST(BinaryPropertyListFrame, WidthsOfZeroAndNineAreRefused) {
  for (const std::size_t width : {std::size_t{0}, std::size_t{9}, std::size_t{255}}) {
    Builder offsets;
    offsets.add("\x09");
    offsets.offsetWidth = width;
    EXPECT_EQ(problemOf(offsets.file()), "the numbers have an impossible width");
    Builder references;
    references.add("\x09");
    references.referenceWidth = width;
    EXPECT_EQ(problemOf(references.file()), "the numbers have an impossible width");
  }
}

TEST(BinaryPropertyListFrame, EveryWidthUpToEightIsRead) {
  for (std::size_t width = 1; width <= 8; ++width) {
    Builder builder;
    builder.offsetWidth = width;
    builder.referenceWidth = width;
    builder.add(builder.array({1}));
    builder.add(Builder::ascii("a"));
    EXPECT_EQ(parsePropertyList(builder.file()), arrayOf({"a"})) << width;
  }
}

TEST(BinaryPropertyListFrame, TableOutsideTheFileIsRefused) {
  const Builder builder;
  const std::string start = std::string("bplist00") + "\x09" + Builder::bigEndian(8, 4);
  ASSERT_EQ(problemOf(start + builder.trailer(1, 9)), "");
  for (const std::uint64_t offset :
       {std::uint64_t{0}, std::uint64_t{7}, std::uint64_t{8}, std::uint64_t{10}, std::uint64_t{13}, std::uint64_t{46},
        std::uint64_t{1} << 32, (std::uint64_t{1} << 32) + 9, ~std::uint64_t{0}}) {
    EXPECT_EQ(problemOf(start + builder.trailer(1, offset)), "the table of objects does not fit the file") << offset;
  }
}

TEST(BinaryPropertyListFrame, CountThatDoesNotFitTheTableIsRefused) {
  const Builder builder;
  const std::string start = std::string("bplist00") + "\x09" + Builder::bigEndian(8, 4);
  for (const std::uint64_t count :
       {std::uint64_t{0}, std::uint64_t{2}, (std::uint64_t{1} << 32) + 1, std::uint64_t{1} << 62, ~std::uint64_t{0}}) {
    EXPECT_EQ(problemOf(start + builder.trailer(count, 9)), "the table of objects does not fit the file") << count;
  }
}

TEST(BinaryPropertyListFrame, TopObjectOutsideTheTableIsRefused) {
  Builder builder;
  builder.add("\x09");
  builder.top = 1;
  EXPECT_EQ(problemOf(builder.file()), "the table of objects does not fit the file");
}

TEST(BinaryPropertyListFrame, TopObjectMayBeAnyOfTheTable) {
  Builder builder;
  builder.add("\x08");
  builder.add("\x09");
  builder.top = 1;
  EXPECT_EQ(parsePropertyList(builder.file()), PropertyList::fromBoolean(true));
}

TEST(BinaryPropertyListFrame, ObjectOutsideTheFileIsRefused) {
  const Builder builder;
  for (const std::uint64_t offset : {std::uint64_t{0}, std::uint64_t{7}, std::uint64_t{9}, std::uint64_t{12},
                                     std::uint64_t{1} << 31, ~std::uint64_t{0}}) {
    const std::string start = std::string("bplist00") + "\x09" + Builder::bigEndian(offset, 4);
    EXPECT_EQ(problemOf(start + builder.trailer(1, 9)), "an object lies outside the file") << offset;
  }
}

TEST(BinaryPropertyListFrame, TrailingGarbageIsRefused) {
  for (const std::size_t size : {1U, 31U, 32U, 1000U}) {
    EXPECT_NE(problemOf(smallFile() + std::string(size, '\0')), "") << size;
    EXPECT_NE(problemOf(smallFile() + std::string(size, 'x')), "") << size;
  }
}

TEST(BinaryPropertyListFrame, ObjectsOfNoKnownTypeAreRefused) {
  for (const unsigned marker : {0x00U, 0x01U, 0x0AU, 0x0FU, 0x30U, 0x32U, 0x34U, 0x90U, 0xB0U, 0xC0U, 0xE0U, 0xF0U}) {
    EXPECT_EQ(problemOf(fileOf(Builder::byte(marker) + std::string(20, '\0'))), "an object of no known type") << marker;
  }
}

TEST(BinaryPropertyListFrame, ProblemNamesThePlaceCountedFromOne) {
  std::string problem;
  EXPECT_FALSE(parsePropertyList(fileOf("\xF0"), &problem));
  EXPECT_EQ(problem, "byte 9: an object of no known type");
}

TEST(BinaryPropertyListFrame, FileCutOffAtAnyByteIsRefused) {
  const std::string file = smallFile();
  ASSERT_EQ(problemOf(file), "");
  for (std::size_t size = 6; size < file.size(); ++size) EXPECT_NE(problemOf(file.substr(0, size)), "") << size;
}

TEST(BinaryPropertyListFrame, AnyByteChangedToAnyOtherNeverCrashes) {
  const std::string file = smallFile();
  for (std::size_t i = 0; i < file.size(); ++i) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string changed = file;
      changed[i] = static_cast<char>(byte);
      std::string problem;
      const auto list = parsePropertyList(changed, &problem);
      ASSERT_NE(list.has_value(), !problem.empty()) << "byte " << byte << " at " << i;
      if (list) {
        ASSERT_TRUE(propertyListXML(*list)) << "byte " << byte << " at " << i;
      }
    }
  }
}

}  // namespace
}  // namespace epg::test
