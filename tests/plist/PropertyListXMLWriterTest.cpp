#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "plist/PropertyListFile.h"
#include "tests/plist/PropertyListPrinting.h"

namespace epg::test {
namespace {

class HostObject : public ForeignValue {};

const char* const head =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

/// The lines of the value itself.
std::string written(const PropertyList& list) {
  const std::string file = propertyListXML(list).value_or("(nothing)");
  const std::string start = head;
  const std::string end = "</plist>\n";
  if (file.compare(0, start.size(), start) != 0 || file.size() < start.size() + end.size() ||
      file.compare(file.size() - end.size(), end.size(), end) != 0) {
    return "(not in a frame) " + file;
  }
  return file.substr(start.size(), file.size() - start.size() - end.size());
}

std::optional<PropertyList> readBack(const PropertyList& list) {
  const auto file = propertyListXML(list);
  return file ? parsePropertyList(*file) : std::nullopt;
}

std::string writtenReal(double value) { return written(PropertyList::fromReal(value)); }

std::string writtenDate(double unixTime) { return written(PropertyList::fromDate(Instant::fromUnixTime(unixTime))); }

TEST(XMLPropertyListWriter, WritesAWholeFileAsThePlatformDoes) {
  const auto list = dictionaryOf({{"title", "Tea & Scones"},
                                  {"tags", arrayOf({"Arts", "Live"})},
                                  {"empty", dictionaryOf({})},
                                  {"none", arrayOf({})},
                                  {"on", PropertyList::fromBoolean(true)},
                                  {"off", PropertyList::fromBoolean(false)},
                                  {"count", PropertyList::fromInteger(-3)},
                                  {"rate", PropertyList::fromReal(0.5)},
                                  {"when", PropertyList::fromDate(Instant{0})},
                                  {"raw", PropertyList::fromData("foob")}});
  EXPECT_EQ(written(list),
            "<dict>\n"
            "\t<key>count</key>\n\t<integer>-3</integer>\n"
            "\t<key>empty</key>\n\t<dict/>\n"
            "\t<key>none</key>\n\t<array/>\n"
            "\t<key>off</key>\n\t<false/>\n"
            "\t<key>on</key>\n\t<true/>\n"
            "\t<key>rate</key>\n\t<real>0.5</real>\n"
            "\t<key>raw</key>\n\t<data>\n\tZm9vYg==\n\t</data>\n"
            "\t<key>tags</key>\n\t<array>\n\t\t<string>Arts</string>\n\t\t<string>Live</string>\n\t</array>\n"
            "\t<key>title</key>\n\t<string>Tea &amp; Scones</string>\n"
            "\t<key>when</key>\n\t<date>2001-01-01T00:00:00Z</date>\n"
            "</dict>\n");
}

TEST(XMLPropertyListWriter, SortsKeysByTheirBytes) {
  EXPECT_EQ(
      written(dictionaryOf({{"b", ""}, {"é", ""}, {"B", ""}, {"", ""}, {"ba", ""}})),
      "<dict>\n\t<key></key>\n\t<string></string>\n\t<key>B</key>\n\t<string></string>\n\t<key>b</key>\n"
      "\t<string></string>\n\t<key>ba</key>\n\t<string></string>\n\t<key>é</key>\n\t<string></string>\n</dict>\n");
}

TEST(XMLPropertyListWriter, GivesTheSameBytesHoweverTheDictionaryWasBuilt) {
  PropertyListDictionary one;
  PropertyListDictionary other;
  for (const char* key : {"c", "a", "b"}) one.set(key, key);
  for (const char* key : {"a", "x", "b", "c"}) other.set(key, key);
  other.remove("x");
  EXPECT_EQ(propertyListXML(PropertyList(one)), propertyListXML(PropertyList(other)));
}

TEST(XMLPropertyListWriter, GivesTheSameBytesAfterReadingThemBack) {
  const auto list = dictionaryOf({{"a\r\n<&>", arrayOf({PropertyList::fromReal(0.1), "\t"})},
                                  {"b", PropertyList::fromData(std::string(200, '\xAB'))}});
  const auto file = propertyListXML(list);
  ASSERT_TRUE(file);
  const auto back = parsePropertyList(*file);
  ASSERT_TRUE(back);
  EXPECT_EQ(propertyListXML(*back), file);
}

TEST(XMLPropertyListWriter, EscapesMarkupInTextsAndKeys) {
  EXPECT_EQ(written("<a> & \"b\" 'c' ]]>"), "<string>&lt;a&gt; &amp; \"b\" 'c' ]]&gt;</string>\n");
  EXPECT_EQ(written(dictionaryOf({{"<&>", "a"}})),
            "<dict>\n\t<key>&lt;&amp;&gt;</key>\n\t<string>a</string>\n</dict>\n");
}

TEST(XMLPropertyListWriter, CarriageReturnIsAReferenceAndReadsBack) {
  EXPECT_EQ(written("a\r\nb\rc"), "<string>a&#13;\nb&#13;c</string>\n");
  EXPECT_EQ(readBack("a\r\nb\rc"), PropertyList("a\r\nb\rc"));
}

TEST(XMLPropertyListWriter, TabAndLineFeedStandAsTheyAre) {
  EXPECT_EQ(written("\ta\n"), "<string>\ta\n</string>\n");
  EXPECT_EQ(readBack("\ta\n"), PropertyList("\ta\n"));
}

TEST(XMLPropertyListWriter, WhiteSpaceAloneReadsBack) {
  for (const char* text : {" ", "\n", "\t\t", " \r "}) EXPECT_EQ(readBack(text), PropertyList(text));
}

TEST(XMLPropertyListWriter, CharactersThatXMLDoesNotHaveBecomeTheReplacementCharacter) {
  EXPECT_EQ(written(PropertyList(std::string("a\0b\x01\x1F\x0B", 6))),
            "<string>a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD</string>\n");
  EXPECT_EQ(written("\xEF\xBF\xBE\xEF\xBF\xBF"), "<string>\xEF\xBF\xBD\xEF\xBF\xBD</string>\n");
}

TEST(XMLPropertyListWriter, CharactersOfEveryPlaneReadBack) {
  const char* const text = "\x7F\xC2\x80\xC2\x85\xEF\xBF\xBD\xEE\x80\x80𐍈📺\xF0\x9F\xBF\xBE\xF4\x8F\xBF\xBF";
  EXPECT_EQ(readBack(text), PropertyList(text));
}

TEST(XMLPropertyListWriter, KeysThatBecomeTheSameKeepAllTheirValues) {
  const auto list =
      dictionaryOf({{"a\x01", "1"}, {"a\x02", "2"}, {"a\xEF\xBF\xBD", "3"}, {"a\xEF\xBF\xBF", "4"}, {"b", "5"}});
  const auto back = readBack(list);
  ASSERT_TRUE(back && back->asDictionary());
  std::vector<std::string> values;
  for (const auto& entry : *back->asDictionary()) values.emplace_back(*entry.second.asString());
  std::sort(values.begin(), values.end());
  EXPECT_EQ(values, std::vector<std::string>({"1", "2", "3", "4", "5"}));
}

TEST(XMLPropertyListWriter, KeyThatXMLHasKeepsItsValueWhateverOthersBecome) {
  const auto back = readBack(dictionaryOf({{"a\x01", "1"}, {"a\xEF\xBF\xBD", "3"}}));
  ASSERT_TRUE(back && back->asDictionary());
  EXPECT_EQ(*back->asDictionary()->find("a\xEF\xBF\xBD"), PropertyList("3"));
}

TEST(XMLPropertyListWriter, KeysAreReplacedOnlyOnce) {
  const auto list = dictionaryOf({{"a\x01", "1"}, {"a\x02", "2"}, {"a\xEF\xBF\xBD", "3"}});
  const auto file = propertyListXML(list);
  const auto back = readBack(list);
  ASSERT_TRUE(back);
  EXPECT_EQ(propertyListXML(*back), file);
}

TEST(XMLPropertyListWriter, WhatIsNotUTF8IsReplaced) {
  const std::string one = "\xEF\xBF\xBD";
  for (const char* text : {"\xFF", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
    EXPECT_EQ(readBack(text), PropertyList(one)) << text;
    EXPECT_EQ(readBack(dictionaryOf({{text, "a"}})), dictionaryOf({{one, "a"}})) << text;
    EXPECT_EQ(readBack(arrayOf({"a", text})), arrayOf({"a", one})) << text;
  }
}

TEST(XMLPropertyListWriter, EntriesWhoseKeysAreReplacedAreAllKept) {
  const std::string one = "\xEF\xBF\xBD";
  const auto back = readBack(dictionaryOf({{"\xFE", "1"}, {"\xFF", "2"}, {one, "3"}, {"\x01", "4"}}));
  ASSERT_TRUE(back);
  EXPECT_EQ(back->asDictionary()->size(), 4U);
  EXPECT_EQ(*back->asDictionary()->find(one), PropertyList("3"));
}

TEST(XMLPropertyListWriter, ForeignValueGivesNothing) {
  const PropertyList foreign = PropertyList::fromForeign(std::make_shared<HostObject>());
  EXPECT_FALSE(propertyListXML(foreign));
  EXPECT_FALSE(propertyListXML(arrayOf({foreign})));
  EXPECT_FALSE(propertyListXML(dictionaryOf({{"a", arrayOf({dictionaryOf({{"b", foreign}})})}})));
}

TEST(XMLPropertyListWriter, NestingOf512IsWrittenAndReadsBack) {
  EXPECT_EQ(readBack(arraysNested(512)), arraysNested(512));
}

TEST(XMLPropertyListWriter, NestingOf513GivesNothing) {
  EXPECT_FALSE(propertyListXML(arraysNested(513)));
  EXPECT_FALSE(propertyListXML(dictionaryOf({{"a", arraysNested(512)}})));
  EXPECT_TRUE(propertyListXML(dictionaryOf({{"a", arraysNested(511)}})));
}

TEST(XMLPropertyListWriter, IntegersReachFromTheLowestToTheHighest) {
  EXPECT_EQ(written(PropertyList::fromInteger(std::numeric_limits<std::int64_t>::min())),
            "<integer>-9223372036854775808</integer>\n");
  EXPECT_EQ(written(PropertyList::fromUnsigned(std::numeric_limits<std::uint64_t>::max())),
            "<integer>18446744073709551615</integer>\n");
  EXPECT_EQ(written(PropertyList::fromInteger(0)), "<integer>0</integer>\n");
}

TEST(XMLPropertyListWriter, RealsAreAsShortAsReadsBack) {
  EXPECT_EQ(writtenReal(0.1), "<real>0.1</real>\n");
  EXPECT_EQ(writtenReal(1), "<real>1</real>\n");
  EXPECT_EQ(writtenReal(-25), "<real>-25</real>\n");
  EXPECT_EQ(writtenReal(1e22), "<real>1e+22</real>\n");
  EXPECT_EQ(writtenReal(0.1 + 0.2), "<real>0.30000000000000004</real>\n");
}

TEST(XMLPropertyListWriter, RealsReadBackToTheLastBit) {
  using Limits = std::numeric_limits<double>;
  for (const double value : {Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min(), Limits::epsilon(),
                             1.0 / 3, 2.0 / 3 * 1e300, 5e-310, 123456789012345678.0}) {
    const auto back = readBack(PropertyList::fromReal(value));
    ASSERT_TRUE(back && back->asReal()) << value;
    EXPECT_TRUE(*back->asReal() == value) << value;
  }
}

TEST(XMLPropertyListWriter, NegativeZeroKeepsItsSign) {
  const auto back = readBack(PropertyList::fromReal(-0.0));
  ASSERT_TRUE(back && back->asReal());
  EXPECT_TRUE(std::signbit(*back->asReal()));
}

TEST(XMLPropertyListWriter, InfinitiesAndNotANumberReadBack) {
  EXPECT_EQ(writtenReal(std::numeric_limits<double>::infinity()), "<real>+infinity</real>\n");
  EXPECT_EQ(writtenReal(-std::numeric_limits<double>::infinity()), "<real>-infinity</real>\n");
  EXPECT_EQ(writtenReal(std::nan("")), "<real>nan</real>\n");
  for (const double value :
       {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(), std::nan("")}) {
    EXPECT_EQ(readBack(PropertyList::fromReal(value)), PropertyList::fromReal(value));
  }
}

TEST(XMLPropertyListWriter, DatesAreWrittenToTheWholeSecondBefore) {
  EXPECT_EQ(writtenDate(1330884309), "<date>2012-03-04T18:05:09Z</date>\n");
  EXPECT_EQ(writtenDate(1330884309.999), "<date>2012-03-04T18:05:09Z</date>\n");
  EXPECT_EQ(writtenDate(-0.5), "<date>1969-12-31T23:59:59Z</date>\n");
}

TEST(XMLPropertyListWriter, DatesAreKeptWithinTheYearsOfFourDigits) {
  const std::string first = "<date>0000-01-01T00:00:00Z</date>\n";
  const std::string last = "<date>9999-12-31T23:59:59Z</date>\n";
  EXPECT_EQ(writtenDate(-62167219200.0), first);
  EXPECT_EQ(writtenDate(-62167219201.0), first);
  EXPECT_EQ(writtenDate(253402300799.5), last);
  EXPECT_EQ(writtenDate(253402300800.0), last);
  EXPECT_EQ(writtenDate(1e300), last);
  EXPECT_EQ(writtenDate(-1e300), first);
  EXPECT_EQ(writtenDate(std::numeric_limits<double>::infinity()), last);
  EXPECT_EQ(writtenDate(-std::numeric_limits<double>::infinity()), first);
}

TEST(XMLPropertyListWriter, ThePlatformsDistantPastSurvives) {
  const double distantPast = -62135769600.0;  // In the year 0, as the platform counts and writes it.
  EXPECT_EQ(writtenDate(distantPast), "<date>0000-12-30T00:00:00Z</date>\n");
  const PropertyList date = PropertyList::fromDate(Instant::fromUnixTime(distantPast));
  EXPECT_EQ(readBack(date), date);
}

TEST(XMLPropertyListWriter, DateThatIsNotANumberGivesNothing) {
  EXPECT_FALSE(propertyListXML(PropertyList::fromDate(Instant{std::nan("")})));
}

TEST(XMLPropertyListWriter, DataIsBrokenIntoLinesOf68Digits) {
  const std::string line(68, 'A');
  EXPECT_EQ(written(PropertyList::fromData(std::string(51, '\0'))), "<data>\n" + line + "\n</data>\n");
  EXPECT_EQ(written(PropertyList::fromData(std::string(52, '\0'))), "<data>\n" + line + "\nAA==\n</data>\n");
  EXPECT_EQ(written(PropertyList::fromData("")), "<data>\n</data>\n");
}

TEST(XMLPropertyListWriter, DataOfEveryLengthReadsBack) {
  std::string bytes;
  for (int i = 0; i < 300; ++i) {
    EXPECT_EQ(readBack(PropertyList::fromData(bytes)), PropertyList::fromData(bytes)) << i;
    bytes += static_cast<char>(i * 37 & 0xFF);
  }
}

}  // namespace
}  // namespace epg::test
