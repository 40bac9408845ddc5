// Secondary threads of a Mac have stacks of 512 KiB. What is nested as deep as values may be is read, written, compared
// and freed on such a thread.

#include <gtest/gtest.h>
#include <pthread.h>

#include <cstddef>
#include <functional>
#include <string>

#include "plist/PropertyListFile.h"
#include "tests/plist/PropertyListPrinting.h"

namespace epg::test {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t stackSize = std::size_t{8} << 20;  // The sanitizer puts space around everything.
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr std::size_t stackSize = std::size_t{8} << 20;
#else
constexpr std::size_t stackSize = std::size_t{512} << 10;
#endif
#else
constexpr std::size_t stackSize = std::size_t{512} << 10;
#endif

void* run(void* work) {
  (*static_cast<std::function<void()>*>(work))();
  return nullptr;
}

void onSmallStack(std::function<void()> work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, stackSize), 0);
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

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
