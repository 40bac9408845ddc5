#include "store/MemoryItem.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "model/KeyConstants.h"
#include "tests/support/Dictionary.h"
#include "tests/support/Items.h"

namespace epg::test {
namespace {

TEST(MemoryItemTest, StartsEmpty) {
  const MemoryItem item;
  EXPECT_TRUE(item.values().empty());
}

TEST(MemoryItemTest, ValuesThatWereReadNeverChange) {
  MemoryItem item(dictionaryOf({{ZRLEPGDSTitleKey, "before"}}));
  const PropertyListDictionary before = item.values();
  item.set(ZRLEPGDSTitleKey, "after");
  item.set("more", "x");
  EXPECT_EQ(dictionaryOf({{ZRLEPGDSTitleKey, "before"}}), before);
  EXPECT_EQ(dictionaryOf({{"more", "x"}, {ZRLEPGDSTitleKey, "after"}}), item.values());
}

TEST(MemoryItemTest, SetPutsOneValueInAndKeepsTheOthers) {
  MemoryItem item(dictionaryOf({{"a", "1"}, {"b", PropertyList::fromInteger(2)}}));
  item.set("a", PropertyList::fromBoolean(true));
  EXPECT_EQ(dictionaryOf({{"a", PropertyList::fromBoolean(true)}, {"b", PropertyList::fromInteger(2)}}), item.values());
}

TEST(MemoryItemTest, RemoveTakesOneKeyAway) {
  MemoryItem item(dictionaryOf({{"a", "1"}, {"b", "2"}}));
  item.remove("a");
  item.remove("not there");
  EXPECT_EQ(dictionaryOf({{"b", "2"}}), item.values());
}

TEST(MemoryItemTest, AnEmptyStringIsAValue) {
  const PropertyListDictionary values = dictionaryOf({{ZRLEPGDSTitleKey, ""}});
  ASSERT_TRUE(stringValue(values, ZRLEPGDSTitleKey));
  EXPECT_EQ("", *stringValue(values, ZRLEPGDSTitleKey));
  EXPECT_FALSE(stringValue(values, ZRLEPGDSDescriptionKey));
}

TEST(MemoryItemTest, AValueOfAnotherTypeReadsAsAbsent) {
  for (const PropertyList& other :
       {PropertyList::fromInteger(7), PropertyList::fromReal(0.5), PropertyList::fromBoolean(true),
        PropertyList::fromDate(Instant{0}), PropertyList::fromData("x"), PropertyList(dictionaryOf({}))}) {
    const PropertyListDictionary values = dictionaryOf({{ZRLEPGDSTitleKey, other}, {ZRLEPGDSTagsKey, other}});
    EXPECT_FALSE(stringValue(values, ZRLEPGDSTitleKey));
    EXPECT_FALSE(tagsValue(values));
  }
  EXPECT_FALSE(stringValue(dictionaryOf({{ZRLEPGDSTitleKey, PropertyList::Array{"A"}}}), ZRLEPGDSTitleKey));
  EXPECT_FALSE(tagsValue(dictionaryOf({{ZRLEPGDSTagsKey, "Live"}})));
}

TEST(MemoryItemTest, SeveralValuesArePutInAtOneMoment) {
  MemoryItem item(dictionaryOf({{"a", "0"}, {"b", "0"}}));
  std::thread writer([&] {
    for (int round = 1; round <= 2000; ++round) {
      const PropertyList number(std::to_string(round));
      item.setValues({{"a", number}, {"b", number}});
    }
  });
  std::string last = "0";
  while (last != "2000") {
    const PropertyListDictionary values = item.values();
    ASSERT_EQ(*stringValue(values, "a"), *stringValue(values, "b"));
    EXPECT_GE(std::stoi(std::string(*stringValue(values, "a"))), std::stoi(last));
    last = *stringValue(values, "a");
  }
  writer.join();
}

}  // namespace
}  // namespace epg::test
