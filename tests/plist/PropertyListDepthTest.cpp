// What is nested as deep as values may be is read, written, compared and freed on a thread with a small stack.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "plist/PropertyListFile.h"
#include "tests/plist/PropertyListPrinting.h"
#include "tests/support/SmallStack.h"

namespace epg::test {
namespace {

std::string repeated(const std::string& text) {
  std::string made;
  for (int i = 0; i < PropertyList::maximumDepth; ++i) made += text;
  return made;
}

void expectReadWrittenAndFreed(const std::string& bytes) {
  onSmallStack([&] {
    std::string problem;
    const auto list = parsePropertyList(bytes, &problem);
    ASSERT_TRUE(list) << problem;
    const auto written = propertyListXML(*list);
    ASSERT_TRUE(written);
    const auto back = parsePropertyList(*written);
    ASSERT_TRUE(back);
    EXPECT_TRUE(*back == *list);
  });
}

TEST(PropertyListDepth, OfTheXMLForm) {
  expectReadWrittenAndFreed("<plist>" + repeated("<array>") + repeated("</array>") + "</plist>");
  expectReadWrittenAndFreed("<plist>" + repeated("<dict><key>a</key>") + "<true/>" + repeated("</dict>") + "</plist>");
}

TEST(PropertyListDepth, OfTheXMLFormAsItIsWritten) {
  for (const bool areDictionaries : {false, true}) {
    PropertyList list;
    for (int i = 0; i < PropertyList::maximumDepth; ++i)
      list = areDictionaries ? dictionaryOf({{"a", list}}) : arrayOf({list});
    expectReadWrittenAndFreed(propertyListXML(list).value_or(""));
  }
}

TEST(PropertyListDepth, OfTheOldStyle) {
  expectReadWrittenAndFreed(repeated("(") + repeated(")"));
  expectReadWrittenAndFreed(repeated("{a=") + "b" + repeated("}"));
}

TEST(PropertyListDepth, OfTheBinaryForm) {
  for (const bool areDictionaries : {false, true}) {
    // Objects 0 to 511 hold the next one, 512 is the innermost value and, in dictionaries, the key as well.
    const auto number = [](int value) {
      return std::string{static_cast<char>(value >> 8), static_cast<char>(value & 0xFF)};
    };
    std::string bytes = "bplist00";
    std::string table;
    const auto begin = [&] { table += number(static_cast<int>(bytes.size())); };
    const int innermost = PropertyList::maximumDepth;
    for (int i = 0; i < innermost; ++i) {
      begin();
      bytes += areDictionaries ? "\xD1" + number(innermost) + number(i + 1) : "\xA1" + number(i + 1);
    }
    begin();
    bytes += "Qa";
    const std::string tableOffset = number(static_cast<int>(bytes.size()));
    bytes += table + std::string(6, '\0') + "\x02\x02" + std::string(6, '\0') + number(innermost + 1) +
             std::string(8, '\0') + std::string(6, '\0') + tableOffset;
    expectReadWrittenAndFreed(bytes);
  }
}

}  // namespace
}  // namespace epg::test
