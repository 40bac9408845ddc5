// Property lists in the binary form as whole files: what they may stand for, and what is none.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "plist/PropertyListFile.h"
#include "tests/plist/BinaryPropertyLists.h"
#include "tests/plist/PropertyListPrinting.h"

namespace epg::test {
namespace {

// Files that stand for more than they hold

TEST(BinaryPropertyListBomb, DoublingContainersAreRefused) {
  std::vector<std::string> arrays;
  std::vector<std::string> dictionaries;
  for (std::uint64_t i = 1; i < 60; ++i) {
    arrays.push_back(array({i, i}));
    dictionaries.push_back(dictionary({60, 61}, {i, i}));
  }
  arrays.push_back(Builder::ascii("ha"));
  for (const char* text : {"ha", "a", "b"}) dictionaries.push_back(Builder::ascii(text));
  EXPECT_EQ(problemOf(fileOfObjects(arrays)), "the value is larger than any that can be meant");
  EXPECT_EQ(problemOf(fileOfObjects(dictionaries)), "the value is larger than any that can be meant");
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
  expectRefused("an object is cut off", {"\x53"
                                         "ab",
                                         "\x43"
                                         "ab",
                                         "\x62"
                                         "abc",
                                         bytes("\xA2\0\0\0"), bytes("\xD1\0\0\0"),
                                         "\x13"
                                         "1234567",
                                         "\x22"
                                         "123",
                                         "\x33"
                                         "1234567",
                                         "\x83"
                                         "123"});
}

// The header, the table of objects and the trailer

/// A file that holds true, with a frame that no good one has.
template <typename Change>
std::string framed(const Change& change) {
  Builder builder;
  builder.add("\x09");
  change(builder);
  return builder.file();
}

TEST(BinaryPropertyListFrame, ThatNoFileCanHaveIsRefused) {
  EXPECT_EQ(problemOf("bplist00"), "the file is cut off") << "a header alone";
  EXPECT_EQ(problemOf(framed([](Builder& builder) { builder.header = "bplist01"; })),
            "an unknown version of the binary property-list form");
  EXPECT_EQ(problemOf(framed([](Builder& builder) { builder.top = 1; })), "the table of objects does not fit the file");
  for (const std::size_t width : {std::size_t{0}, std::size_t{9}, std::size_t{255}}) {
    EXPECT_EQ(problemOf(framed([=](Builder& builder) { builder.offsetWidth = width; })),
              "the numbers have an impossible width");
    EXPECT_EQ(problemOf(framed([=](Builder& builder) { builder.referenceWidth = width; })),
              "the numbers have an impossible width");
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
