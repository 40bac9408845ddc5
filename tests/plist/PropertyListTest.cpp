#include "plist/PropertyList.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>

#include "tests/plist/PropertyListPrinting.h"

namespace epg::test {
namespace {

class Thing : public ForeignValue {};

/// How many of the accessors answer for this value.
int answers(const PropertyList& list) {
  return (list.asString() ? 1 : 0) + (list.asInteger() ? 1 : 0) + (list.asReal() ? 1 : 0) + (list.asBoolean() ? 1 : 0) +
         (list.asDate() ? 1 : 0) + (list.asData() ? 1 : 0) + (list.asArray() ? 1 : 0) + (list.asDictionary() ? 1 : 0) +
         (list.asForeign() ? 1 : 0);
}

std::vector<PropertyList> oneOfEachType() {
  return {PropertyList("a"),
          PropertyList::fromInteger(1),
          PropertyList::fromReal(1),
          PropertyList::fromBoolean(true),
          PropertyList::fromDate(Instant{1}),
          PropertyList::fromData("a"),
          arrayOf({"a"}),
          dictionaryOf({{"a", "b"}}),
          PropertyList::fromForeign(std::make_shared<Thing>())};
}

TEST(PropertyListValue, IsAnEmptyStringWhenMadeFromNothing) {
  const PropertyList list;
  ASSERT_TRUE(list.asString());
  EXPECT_EQ(*list.asString(), "");
}

TEST(PropertyListValue, HasTheTypeItWasMadeWith) {
  using Type = PropertyList::Type;
  const Type types[] = {Type::String, Type::Integer, Type::Real,       Type::Boolean, Type::Date,
                        Type::Data,   Type::Array,   Type::Dictionary, Type::Foreign};
  const std::vector<PropertyList> values = oneOfEachType();
  for (std::size_t i = 0; i < values.size(); ++i) EXPECT_EQ(values[i].type(), types[i]) << i;
}

TEST(PropertyListValue, AnswersAsItsOwnTypeOnly) {
  for (const PropertyList& value : oneOfEachType()) EXPECT_EQ(answers(value), 1) << ::testing::PrintToString(value);
}

TEST(PropertyListValue, EqualsNoValueOfAnotherType) {
  const std::vector<PropertyList> values = oneOfEachType();
  for (std::size_t i = 0; i < values.size(); ++i) {
    for (std::size_t k = 0; k < values.size(); ++k) EXPECT_EQ(values[i] == values[k], i == k) << i << " and " << k;
  }
}

TEST(PropertyListValue, AnswersWhatItWasMadeFrom) {
  EXPECT_EQ(*PropertyList("Ünïcode").asString(), "Ünïcode");
  EXPECT_DOUBLE_EQ(*PropertyList::fromReal(-2.5).asReal(), -2.5);
  EXPECT_FALSE(*PropertyList::fromBoolean(false).asBoolean());
  EXPECT_DOUBLE_EQ(PropertyList::fromDate(Instant{-7.25}).asDate()->secondsSinceReferenceDate, -7.25);
  EXPECT_EQ(*PropertyList::fromData(std::string("\0\xFF", 2)).asData(), std::string("\0\xFF", 2));
  EXPECT_EQ(arrayOf({"a", "b"}).asArray()->size(), 2U);
}

TEST(PropertyListValue, StringMayHoldAZeroByte) {
  const std::string text("a\0b", 3);
  EXPECT_EQ(*PropertyList(text).asString(), text);
}

TEST(PropertyListInteger, HoldsTheLowestOfSixtyFourBits) {
  const auto list = PropertyList::fromInteger(std::numeric_limits<std::int64_t>::min());
  EXPECT_TRUE(list.asInteger()->negative);
  EXPECT_EQ(list.asInteger()->magnitude, std::uint64_t{1} << 63);
}

TEST(PropertyListInteger, HoldsTheHighestOfSixtyFourBitsWithoutSign) {
  const auto list = PropertyList::fromUnsigned(std::numeric_limits<std::uint64_t>::max());
  EXPECT_FALSE(list.asInteger()->negative);
  EXPECT_EQ(list.asInteger()->magnitude, std::numeric_limits<std::uint64_t>::max());
}

TEST(PropertyListInteger, ZeroIsNeverNegative) { EXPECT_FALSE(PropertyList::fromInteger(0).asInteger()->negative); }

TEST(PropertyListInteger, IsEqualHoweverItWasMade) {
  EXPECT_EQ(PropertyList::fromInteger(7), PropertyList::fromUnsigned(7));
}

TEST(PropertyListInteger, DiffersFromItsNegative) {
  EXPECT_NE(PropertyList::fromInteger(7), PropertyList::fromInteger(-7));
}

TEST(PropertyListReal, NotANumberEqualsNotANumber) {
  EXPECT_EQ(PropertyList::fromReal(std::nan("")), PropertyList::fromReal(-std::nan("1")));
}

TEST(PropertyListReal, NotANumberDiffersFromEveryNumber) {
  EXPECT_NE(PropertyList::fromReal(std::nan("")), PropertyList::fromReal(0));
  EXPECT_NE(PropertyList::fromReal(0), PropertyList::fromReal(std::nan("")));
}

TEST(PropertyListForeign, EqualsItselfOnly) {
  const auto thing = std::make_shared<Thing>();
  EXPECT_EQ(PropertyList::fromForeign(thing), PropertyList::fromForeign(thing));
  EXPECT_NE(PropertyList::fromForeign(thing), PropertyList::fromForeign(std::make_shared<Thing>()));
}

TEST(PropertyListArray, EqualsByContentAndOrder) {
  EXPECT_EQ(arrayOf({"a", "b"}), arrayOf({"a", "b"}));
  EXPECT_NE(arrayOf({"a", "b"}), arrayOf({"b", "a"}));
  EXPECT_NE(arrayOf({"a", "b"}), arrayOf({"a"}));
}

TEST(PropertyListArray, CopySharesTheElements) {
  const PropertyList original = arrayOf({"a"});
  const PropertyList copy = original;  // NOLINT(performance-unnecessary-copy-initialization): what is tested
  EXPECT_EQ(copy.asArray()->data(), original.asArray()->data());
}

TEST(PropertyListDictionaryValue, SharesTheDictionaryItWasMadeFrom) {
  PropertyListDictionary dictionary;
  dictionary.set("a", "1");
  PropertyListDictionary equal;
  equal.set("a", "1");
  EXPECT_TRUE(PropertyList(dictionary).asDictionary()->shares(dictionary));
  EXPECT_EQ(equal, dictionary);
  EXPECT_FALSE(equal.shares(dictionary));
}

TEST(PropertyListString, SharesTheTextItWasMadeFrom) {
  const SharedText text("Live");
  EXPECT_EQ(PropertyList(text).sharedText()->view().data(), text.view().data());
  EXPECT_FALSE(PropertyList::fromBoolean(true).sharedText());
}

// Stores hold millions of them.
TEST(PropertyListValue, TakesTwoWordsOf64Bits) { EXPECT_LE(sizeof(PropertyList), 16U); }

TEST(PropertyListDictionary, IsEmptyAtFirst) {
  const PropertyListDictionary dictionary;
  EXPECT_TRUE(dictionary.empty());
  EXPECT_EQ(dictionary.size(), 0U);
  EXPECT_FALSE(dictionary.find("a"));
}

TEST(PropertyListDictionary, SortsEntriesByTheBytesOfTheirKeys) {
  const PropertyListDictionary dictionary({{"b", "1"}, {"", "2"}, {"\xC3\xA4", "3"}, {"B", "4"}, {"ba", "5"}});
  std::vector<std::string> keys;
  for (const auto& entry : dictionary) keys.emplace_back(entry.first);
  EXPECT_EQ(keys, std::vector<std::string>({"", "B", "b", "ba", "\xC3\xA4"}));
}

TEST(PropertyListDictionary, KeepsTheLastOfSeveralEntriesWithOneKey) {
  const PropertyListDictionary dictionary({{"b", "1"}, {"a", "2"}, {"b", "3"}, {"a", "4"}, {"b", "5"}});
  EXPECT_EQ(dictionary.size(), 2U);
  EXPECT_EQ(*dictionary.find("a")->asString(), "4");
  EXPECT_EQ(*dictionary.find("b")->asString(), "5");
}

TEST(PropertyListDictionary, SetAddsAnEntryInItsPlace) {
  PropertyListDictionary dictionary({{"a", "1"}, {"c", "3"}});
  dictionary.set("b", "2");
  EXPECT_EQ(dictionary, PropertyListDictionary({{"a", "1"}, {"b", "2"}, {"c", "3"}}));
}

TEST(PropertyListDictionary, SetReplacesTheValueUnderAKey) {
  PropertyListDictionary dictionary({{"a", "1"}, {"b", "2"}});
  dictionary.set("a", PropertyList::fromInteger(3));
  EXPECT_EQ(dictionary.size(), 2U);
  EXPECT_EQ(*dictionary.find("a"), PropertyList::fromInteger(3));
}

TEST(PropertyListDictionary, RemoveTakesTheEntryAway) {
  PropertyListDictionary dictionary({{"a", "1"}, {"b", "2"}});
  dictionary.remove("a");
  EXPECT_FALSE(dictionary.find("a"));
  EXPECT_TRUE(dictionary.find("b"));
}

TEST(PropertyListDictionary, RemoveOfAnUnknownKeyChangesNothing) {
  PropertyListDictionary dictionary({{"b", "2"}, {"d", "4"}});
  for (const char* key : {"", "a", "c", "e"}) dictionary.remove(key);
  EXPECT_EQ(dictionary, PropertyListDictionary({{"b", "2"}, {"d", "4"}}));
}

TEST(PropertyListDictionary, TellsKeysApartThatDifferBehindAZeroByte) {
  PropertyListDictionary dictionary;
  dictionary.set(std::string("a\0b", 3), "1");
  EXPECT_FALSE(dictionary.find("a"));
  EXPECT_FALSE(dictionary.find(std::string("a\0c", 3)));
  EXPECT_TRUE(dictionary.find(std::string("a\0b", 3)));
}

TEST(PropertyListDictionary, ChangeOfACopyLeavesTheSharedOneAlone) {
  const PropertyList list = dictionaryOf({{"a", "1"}});
  PropertyListDictionary copy = *list.asDictionary();
  copy.set("a", "2");
  EXPECT_EQ(*list.asDictionary()->find("a")->asString(), "1");
}

TEST(InstantOrder, CountsFromTheReferenceDate) {
  EXPECT_DOUBLE_EQ(Instant::fromUnixTime(978307200).secondsSinceReferenceDate, 0);
  EXPECT_DOUBLE_EQ(Instant{0}.unixTime(), 978307200);
  EXPECT_TRUE(Instant{-1} < Instant{0});
  EXPECT_TRUE(Instant{1} != Instant{0});
  EXPECT_TRUE(Instant{1} == Instant{1});
}

}  // namespace
}  // namespace epg::test
