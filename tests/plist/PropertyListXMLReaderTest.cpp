#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "plist/PropertyListFile.h"
#include "tests/plist/PropertyListPrinting.h"
#include "tests/xml/Encodings.h"

namespace epg::test {
namespace {

const char* const declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

std::string plist(const std::string& value) { return "<plist version=\"1.0\">" + value + "</plist>"; }

/// What a file with this one value reads as.
std::optional<PropertyList> valueOfXML(const std::string& value) { return parsePropertyList(plist(value)); }

/// Why a file cannot be read; an empty string when it can.
std::string problemOfXML(const std::string& bytes) {
  std::string problem;
  const auto list = parsePropertyList(bytes, &problem);
  if (list) return {};
  EXPECT_FALSE(parsePropertyList(bytes)) << "must not need somewhere to put the problem";
  return problem.empty() ? "(unreadable, without a word)" : problem;
}

std::string nested(const std::string& open, const std::string& close, int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += open;
  for (int i = 0; i < depth; ++i) text += close;
  return plist(text);
}

PropertyList dateAt(double unixTime) { return PropertyList::fromDate(Instant::fromUnixTime(unixTime)); }

TEST(XMLPropertyList, ReadsAFileAsThePlatformWritesIt) {
  const std::string file =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n<dict>\n\t<key>a</key>\n\t<string>b</string>\n</dict>\n</plist>\n";
  EXPECT_EQ(parsePropertyList(file), dictionaryOf({{"a", "b"}}));
}

TEST(XMLPropertyList, ReadsEveryType) {
  EXPECT_EQ(valueOfXML("<string>a</string>"), PropertyList("a"));
  EXPECT_EQ(valueOfXML("<integer>1</integer>"), PropertyList::fromInteger(1));
  EXPECT_EQ(valueOfXML("<real>1.5</real>"), PropertyList::fromReal(1.5));
  EXPECT_EQ(valueOfXML("<true/>"), PropertyList::fromBoolean(true));
  EXPECT_EQ(valueOfXML("<false/>"), PropertyList::fromBoolean(false));
  EXPECT_EQ(valueOfXML("<date>2001-01-01T00:00:00Z</date>"), PropertyList::fromDate(Instant{0}));
  EXPECT_EQ(valueOfXML("<data>YQ==</data>"), PropertyList::fromData("a"));
  EXPECT_EQ(valueOfXML("<array><true/></array>"), arrayOf({PropertyList::fromBoolean(true)}));
  EXPECT_EQ(valueOfXML("<dict><key>a</key><true/></dict>"), dictionaryOf({{"a", PropertyList::fromBoolean(true)}}));
}

TEST(XMLPropertyList, ReadsCharactersThatAreReferredToByHalves) {
  EXPECT_EQ(valueOfXML("<string>a&#xD83D;&#xDE00;b</string>"), PropertyList("a😀b"));
  EXPECT_EQ(valueOfXML("<string>&#55357;&#56832;</string>"), PropertyList("😀"));
  EXPECT_EQ(valueOfXML("<string>&#xD83D;</string>"), PropertyList("\uFFFD"));
  EXPECT_EQ(valueOfXML("<string>&#xDE00;&#xD83D;x</string>"), PropertyList("\uFFFD\uFFFDx"));
  EXPECT_EQ(valueOfXML("<string>&#xD83D;&#xD83D;&#xDE00;</string>"), PropertyList("\uFFFD😀"));
  EXPECT_EQ(valueOfXML("<string>&#xD83D;&amp;&#xDE00;</string>"), PropertyList("\uFFFD&\uFFFD"));
}

TEST(XMLPropertyList, ReadsAValueWithoutPlistAroundIt) {
  EXPECT_EQ(parsePropertyList("<string>a</string>"), PropertyList("a"));
}

TEST(XMLPropertyList, ReadsEmptyContainers) {
  EXPECT_EQ(valueOfXML("<array/>"), arrayOf({}));
  EXPECT_EQ(valueOfXML("<array> \n </array>"), arrayOf({}));
  EXPECT_EQ(valueOfXML("<dict/>"), dictionaryOf({}));
  EXPECT_EQ(valueOfXML("<dict></dict>"), dictionaryOf({}));
}

TEST(XMLPropertyList, ReadsBooleansWrittenWithAnEndTag) {
  EXPECT_EQ(valueOfXML("<true></true>"), PropertyList::fromBoolean(true));
  EXPECT_EQ(valueOfXML("<false> </false>"), PropertyList::fromBoolean(false));
}

// Encodings

const char* const manyScripts = "<plist><string>Žluťoučký 節目 🎬 é</string></plist>";

TEST(XMLPropertyListEncoding, UTF8WithoutDeclaration) {
  EXPECT_EQ(parsePropertyList(manyScripts), PropertyList("Žluťoučký 節目 🎬 é"));
}

TEST(XMLPropertyListEncoding, UTF8WithByteOrderMark) {
  EXPECT_EQ(parsePropertyList(std::string("\xEF\xBB\xBF") + declaration + manyScripts),
            PropertyList("Žluťoučký 節目 🎬 é"));
}

TEST(XMLPropertyListEncoding, UTF16BothEndsWithByteOrderMark) {
  const std::string file = std::string("<?xml version=\"1.0\" encoding=\"UTF-16\"?>") + manyScripts;
  EXPECT_EQ(parsePropertyList("\xFE\xFF" + utf16(file, ByteOrder::BigEndian)), PropertyList("Žluťoučký 節目 🎬 é"));
  EXPECT_EQ(parsePropertyList("\xFF\xFE" + utf16(file, ByteOrder::LittleEndian)), PropertyList("Žluťoučký 節目 🎬 é"));
}

TEST(XMLPropertyListEncoding, UTF16BothEndsWithoutByteOrderMark) {
  EXPECT_EQ(parsePropertyList(utf16(manyScripts, ByteOrder::BigEndian)), PropertyList("Žluťoučký 節目 🎬 é"));
  EXPECT_EQ(parsePropertyList(utf16(manyScripts, ByteOrder::LittleEndian)), PropertyList("Žluťoučký 節目 🎬 é"));
}

TEST(XMLPropertyListEncoding, UTF16CutOffInTheLastCharacterIsRefused) {
  const std::string whole = "\xFE\xFF" + utf16(manyScripts, ByteOrder::BigEndian);
  EXPECT_EQ(problemOfXML(whole.substr(0, whole.size() - 1)),
            "byte " + std::to_string(whole.size() - 1) + ": not UTF-16 (the last character is cut off)");
}

TEST(XMLPropertyListEncoding, InvalidUTF8IsRefusedWithItsPlace) {
  EXPECT_EQ(problemOfXML("<plist>\n<string>a\xFF</string></plist>"), "line 2, column 10: not UTF-8");
}

TEST(XMLPropertyListEncoding, SurrogatesInUTF8AreRefused) {
  EXPECT_EQ(problemOfXML(plist("<string>\xED\xA0\x80</string>")), "line 1, column 30: not UTF-8");
}

TEST(XMLPropertyListEncoding, OverlongUTF8IsRefused) {
  EXPECT_EQ(problemOfXML(plist("<string>\xC0\xBC</string>")), "line 1, column 30: not UTF-8");
}

TEST(XMLPropertyListEncoding, ZeroByteIsRefusedWithItsPlace) {
  EXPECT_EQ(problemOfXML(std::string("<plist>\n<string>a\0b</string></plist>", 36)), "line 2, column 10: a zero byte");
}

// Strings

TEST(XMLPropertyListString, EmptyBothWays) {
  EXPECT_EQ(valueOfXML("<string></string>"), PropertyList(""));
  EXPECT_EQ(valueOfXML("<string/>"), PropertyList(""));
}

TEST(XMLPropertyListString, OfWhiteSpaceAloneIsKeptExactly) {
  EXPECT_EQ(valueOfXML("<string> \t\n  </string>"), PropertyList(" \t\n  "));
}

TEST(XMLPropertyListString, KeepsWhiteSpaceAtItsEnds) {
  EXPECT_EQ(valueOfXML("<string>  a\n</string>"), PropertyList("  a\n"));
}

TEST(XMLPropertyListString, LineEndsBecomeLineFeeds) {
  EXPECT_EQ(valueOfXML("<string>a\r\nb\rc\n</string>"), PropertyList("a\nb\nc\n"));
}

TEST(XMLPropertyListString, CarriageReturnSurvivesAsAReference) {
  EXPECT_EQ(valueOfXML("<string>a&#13;\nb&#xD;</string>"), PropertyList("a\r\nb\r"));
}

TEST(XMLPropertyListString, ResolvesTheFiveNamedReferences) {
  EXPECT_EQ(valueOfXML("<string>&amp;&lt;&gt;&quot;&apos;</string>"), PropertyList("&<>\"'"));
}

TEST(XMLPropertyListString, ResolvesCharacterReferences) {
  EXPECT_EQ(valueOfXML("<string>&#65;&#x41;&#xe9;&#xE9;&#128250;&#x1F4FA;</string>"), PropertyList("AAéé📺📺"));
}

TEST(XMLPropertyListString, ResolvesOnlyOnce) {
  EXPECT_EQ(valueOfXML("<string>&amp;lt;&#38;amp;</string>"), PropertyList("&lt;&amp;"));
}

TEST(XMLPropertyListString, KeepsCharacterDataSectionsAsTheyStand) {
  EXPECT_EQ(valueOfXML("<string>a<![CDATA[<b> &amp; ]] > ]]>c</string>"), PropertyList("a<b> &amp; ]] > c"));
}

TEST(XMLPropertyListString, JoinsWhatCommentsPart) {
  EXPECT_EQ(valueOfXML("<string>a<!-- -->b<!--&nix;--> <![CDATA[c]]><!-- <d/> --></string>"), PropertyList("ab c"));
}

TEST(XMLPropertyListString, MayHoldAClosingBracketSequenceAsText) {
  EXPECT_EQ(valueOfXML("<string>a]]&gt;b</string>"), PropertyList("a]]>b"));
}

TEST(XMLPropertyListString, MayBeLong) {
  const std::string text(std::size_t{1} << 22, 'a');
  EXPECT_TRUE(valueOfXML("<string>" + text + "</string>") == PropertyList(text));
}

TEST(XMLPropertyListString, UnknownReferenceIsRefusedWithItsName) {
  EXPECT_EQ(problemOfXML(plist("<string>a&nbsp;b</string>")),
            "line 1, column 30: the reference &nbsp; stands for no character");
}

TEST(XMLPropertyListString, LooseAmpersandIsRefused) {
  EXPECT_EQ(problemOfXML(plist("<string>Tom & Jerry</string>")),
            "line 1, column 30: the reference & stands for no character");
  EXPECT_EQ(problemOfXML(plist("<string>A&;B</string>")),
            "line 1, column 30: the reference &; stands for no character");
}

TEST(XMLPropertyListString, ReferencesToNoCharacterAreRefused) {
  for (const char* reference : {"&#0;", "&#x0;", "&#x110000;", "&#99999999999999999999;", "&#;", "&#x;", "&#X41;",
                                "&#-1;", "&# 65;", "&#6a;", "&AMP;"}) {
    EXPECT_EQ(problemOfXML(plist("<string>" + std::string(reference) + "</string>")),
              "line 1, column 30: the reference " + std::string(reference) + " stands for no character");
  }
}

TEST(XMLPropertyListString, ElementInsideIsRefused) {
  EXPECT_EQ(problemOfXML(plist("<string>a<b/></string>")), "line 1, column 22: an element inside <string>");
}

// Numbers

TEST(XMLPropertyListInteger, ReachesFromTheLowestToTheHighest) {
  EXPECT_EQ(valueOfXML("<integer>-9223372036854775808</integer>"),
            PropertyList::fromInteger(std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ(valueOfXML("<integer>18446744073709551615</integer>"),
            PropertyList::fromUnsigned(std::numeric_limits<std::uint64_t>::max()));
}

TEST(XMLPropertyListInteger, BeyondTheEndsIsRefused) {
  for (const char* text : {"-9223372036854775809", "18446744073709551616", "99999999999999999999999",
                           "-0x8000000000000001", "0x10000000000000000"}) {
    EXPECT_EQ(problemOfXML(plist("<integer>" + std::string(text) + "</integer>")),
              "line 1, column 22: the content is no integer")
        << text;
  }
}

TEST(XMLPropertyListInteger, MayBeHexadecimal) {
  EXPECT_EQ(valueOfXML("<integer>0x1F</integer>"), PropertyList::fromInteger(31));
  EXPECT_EQ(valueOfXML("<integer>-0XfF</integer>"), PropertyList::fromInteger(-255));
  EXPECT_EQ(valueOfXML("<integer>0xFFFFFFFFFFFFFFFF</integer>"),
            PropertyList::fromUnsigned(std::numeric_limits<std::uint64_t>::max()));
}

TEST(XMLPropertyListInteger, MayHaveSignZerosAndWhiteSpace) {
  EXPECT_EQ(valueOfXML("<integer>\n +0042 </integer>"), PropertyList::fromInteger(42));
  EXPECT_EQ(valueOfXML("<integer>-0</integer>"), PropertyList::fromInteger(0));
  EXPECT_EQ(valueOfXML("<integer>000000000000000000000000000000007</integer>"), PropertyList::fromInteger(7));
}

TEST(XMLPropertyListInteger, AnythingElseIsRefused) {
  for (const char* text :
       {"", " ", "-", "+", "+-1", "--1", "1.0", "1e3", "1 2", "0x", "-0x", "0xG", "x1", "1a", "１"}) {
    EXPECT_EQ(problemOfXML(plist("<integer>" + std::string(text) + "</integer>")),
              "line 1, column 22: the content is no integer")
        << text;
  }
}

TEST(XMLPropertyListReal, ReadsEveryUsualForm) {
  EXPECT_EQ(valueOfXML("<real>0</real>"), PropertyList::fromReal(0));
  EXPECT_EQ(valueOfXML("<real>-1.25e-3</real>"), PropertyList::fromReal(-0.00125));
  EXPECT_EQ(valueOfXML("<real>+2.5E+10</real>"), PropertyList::fromReal(2.5e10));
  EXPECT_EQ(valueOfXML("<real> .5 </real>"), PropertyList::fromReal(0.5));
  EXPECT_EQ(valueOfXML("<real>5.</real>"), PropertyList::fromReal(5));
}

TEST(XMLPropertyListReal, ReadsTheNearestNumberExactly) {
  EXPECT_EQ(valueOfXML("<real>0.1</real>"), PropertyList::fromReal(0.1));
  EXPECT_EQ(valueOfXML("<real>1.7976931348623157e308</real>"),
            PropertyList::fromReal(std::numeric_limits<double>::max()));
  EXPECT_EQ(valueOfXML("<real>2.2250738585072014e-308</real>"),
            PropertyList::fromReal(std::numeric_limits<double>::min()));
  EXPECT_EQ(valueOfXML("<real>4.9406564584124654e-324</real>"),
            PropertyList::fromReal(std::numeric_limits<double>::denorm_min()));
}

TEST(XMLPropertyListReal, ReadsInfinitiesAndNotANumber) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const char* text : {"inf", "+inf", "INF", "Infinity", "+infinity"}) {
    EXPECT_EQ(valueOfXML("<real>" + std::string(text) + "</real>"), PropertyList::fromReal(infinity)) << text;
  }
  for (const char* text : {"-inf", "-Infinity"}) {
    EXPECT_EQ(valueOfXML("<real>" + std::string(text) + "</real>"), PropertyList::fromReal(-infinity)) << text;
  }
  for (const char* text : {"nan", "NaN"}) {
    EXPECT_EQ(valueOfXML("<real>" + std::string(text) + "</real>"), PropertyList::fromReal(std::nan(""))) << text;
  }
}

TEST(XMLPropertyListReal, TooLargeBecomesInfinity) {
  EXPECT_EQ(valueOfXML("<real>1e400</real>"), PropertyList::fromReal(std::numeric_limits<double>::infinity()));
  EXPECT_EQ(valueOfXML("<real>-1e400</real>"), PropertyList::fromReal(-std::numeric_limits<double>::infinity()));
}

TEST(XMLPropertyListReal, TooSmallBecomesZero) {
  EXPECT_EQ(valueOfXML("<real>1e-400</real>"), PropertyList::fromReal(0));
  EXPECT_EQ(valueOfXML("<real>-1e-400</real>"), PropertyList::fromReal(0));
}

TEST(XMLPropertyListReal, AnythingElseIsRefused) {
  for (const char* text : {"", ".", "-", "e5", "1e", "1e+", "1.5.3", "1-2", "--1", "1,5", "0x1p3", "1 2", "infinit",
                           "nan(1)", "1e5e", "1e1.5", "+nan"}) {
    EXPECT_EQ(problemOfXML(plist("<real>" + std::string(text) + "</real>")),
              "line 1, column 22: the content is no real")
        << text;
  }
}

// Dates

TEST(XMLPropertyListDate, IsInUTC) {
  EXPECT_EQ(valueOfXML("<date>1970-01-01T00:00:00Z</date>"), dateAt(0));
  EXPECT_EQ(valueOfXML("<date> 2012-03-04T18:05:09Z\n</date>"), dateAt(1330884309));
}

TEST(XMLPropertyListDate, ReachesOverAllYearsOfFourDigits) {
  EXPECT_EQ(valueOfXML("<date>0000-01-01T00:00:00Z</date>"), dateAt(-62167219200.0));
  EXPECT_EQ(valueOfXML("<date>9999-12-31T23:59:59Z</date>"), dateAt(253402300799.0));
}

TEST(XMLPropertyListDate, LeapDayIsOneInLeapYearsOnly) {
  EXPECT_EQ(valueOfXML("<date>2000-02-29T00:00:00Z</date>"), dateAt(951782400));
  EXPECT_EQ(problemOfXML(plist("<date>1900-02-29T00:00:00Z</date>")), "line 1, column 22: the content is no date");
  EXPECT_EQ(problemOfXML(plist("<date>2011-02-29T00:00:00Z</date>")), "line 1, column 22: the content is no date");
}

TEST(XMLPropertyListDate, AnythingElseIsRefused) {
  for (const char* text :
       {"", "2012-03-04", "2012-03-04T18:00:00", "2012-03-04 18:00:00Z", "2012-03-04T18:00:00+0100",
        "2012-13-04T18:00:00Z", "2012-00-04T18:00:00Z", "2012-03-32T18:00:00Z", "2012-03-00T18:00:00Z",
        "2012-03-04T24:00:00Z", "2012-03-04T18:60:00Z", "2012-03-04T18:00:60Z", "-012-03-04T18:00:00Z",
        "2012-03-04T18:00:00z", "2012-03-04T18:00:00ZZ", "2012-3-4T18:00:00Z", "12012-03-04T18:00:00Z",
        "2O12-03-04T18:00:00Z"}) {
    EXPECT_EQ(problemOfXML(plist("<date>" + std::string(text) + "</date>")),
              "line 1, column 22: the content is no date")
        << text;
  }
}

// Data

TEST(XMLPropertyListData, ReadsEveryLengthOfTheLastGroup) {
  EXPECT_EQ(valueOfXML("<data></data>"), PropertyList::fromData(""));
  EXPECT_EQ(valueOfXML("<data>Zg==</data>"), PropertyList::fromData("f"));
  EXPECT_EQ(valueOfXML("<data>Zm8=</data>"), PropertyList::fromData("fo"));
  EXPECT_EQ(valueOfXML("<data>Zm9v</data>"), PropertyList::fromData("foo"));
  EXPECT_EQ(valueOfXML("<data>Zm9vYg==</data>"), PropertyList::fromData("foob"));
}

TEST(XMLPropertyListData, ReadsEveryDigit) {
  EXPECT_EQ(valueOfXML("<data>AAECAwQF+/8=</data>"), PropertyList::fromData(std::string("\0\1\2\3\4\5\xFB\xFF", 8)));
}

TEST(XMLPropertyListData, MayBeBrokenByWhiteSpaceAnywhere) {
  EXPECT_EQ(valueOfXML("<data>\n\tZ m\r\n9\tv Y g =\n = \n</data>"), PropertyList::fromData("foob"));
}

TEST(XMLPropertyListData, MayGoWithoutPadding) {
  EXPECT_EQ(valueOfXML("<data>Zg</data>"), PropertyList::fromData("f"));
  EXPECT_EQ(valueOfXML("<data>Zm8</data>"), PropertyList::fromData("fo"));
}

TEST(XMLPropertyListData, AnythingElseIsRefused) {
  for (const char* text :
       {"Z", "Zm9vY", "Zg=", "=", "==", "Zm9v=", "Zm9v==", "Zg==Zg==", "Zm=8", "Zg===", "Zm9-", "Zm9_", "é"}) {
    EXPECT_EQ(problemOfXML(plist("<data>" + std::string(text) + "</data>")),
              "line 1, column 22: the content is no data")
        << text;
  }
}

// Containers

TEST(XMLPropertyListContainer, KeepsTheOrderOfAnArray) {
  EXPECT_EQ(valueOfXML("<array><string>b</string><string>a</string><string>b</string></array>"),
            arrayOf({"b", "a", "b"}));
}

TEST(XMLPropertyListContainer, LastOfSeveralValuesUnderOneKeyCounts) {
  EXPECT_EQ(valueOfXML("<dict><key>a</key><string>1</string><key>b</key><true/><key>a</key><string>2</string></dict>"),
            dictionaryOf({{"a", "2"}, {"b", PropertyList::fromBoolean(true)}}));
}

TEST(XMLPropertyListContainer, KeysAreKeptExactly) {
  EXPECT_EQ(valueOfXML("<dict><key> a\n</key><string>1</string><key/><string>2</string><key>&lt;<![CDATA[&]]></key>"
                       "<string>3</string></dict>"),
            dictionaryOf({{" a\n", "1"}, {"", "2"}, {"<&", "3"}}));
}

TEST(XMLPropertyListContainer, CommentsAndInstructionsMayStandAnywhere) {
  EXPECT_EQ(
      parsePropertyList("<!-- a --><?b c?><plist><!-- d --><array><!-- e --><true/><?f?></array></plist><!-- g -->\n"),
      arrayOf({PropertyList::fromBoolean(true)}));
}

TEST(XMLPropertyListContainer, KeyThatIsNoStringIsRefused) {
  EXPECT_EQ(problemOfXML(plist("<dict>\n  <integer>1</integer><true/></dict>")),
            "line 2, column 3: a value without a key");
  EXPECT_EQ(problemOfXML(plist("<dict><key><string>a</string></key><true/></dict>")),
            "line 1, column 28: an element inside <key>");
}

TEST(XMLPropertyListContainer, KeyWithoutValueIsRefused) {
  EXPECT_EQ(problemOfXML(plist("<dict><key>a</key><key>b</key><true/></dict>")),
            "line 1, column 40: a key without a value");
  EXPECT_EQ(problemOfXML(plist("<dict><key>a</key></dict>")), "line 1, column 22: a key without a value");
}

TEST(XMLPropertyListContainer, SecondValueUnderAKeyIsRefused) {
  EXPECT_EQ(problemOfXML(plist("<dict><key>a</key><true/><false/></dict>")),
            "line 1, column 47: a value without a key");
}

TEST(XMLPropertyListContainer, KeyOutsideADictionaryIsRefused) {
  EXPECT_EQ(problemOfXML(plist("<array><key>a</key></array>")), "line 1, column 29: <key> is no property-list value");
}

TEST(XMLPropertyListContainer, TextBetweenValuesIsRefused) {
  const std::string problem = "line 1, column 22: text between the values of a container";
  EXPECT_EQ(problemOfXML(plist("<array><true/>a<true/></array>")), problem);
  EXPECT_EQ(problemOfXML(plist("<dict>a<key>b</key><true/></dict>")), problem);
  EXPECT_EQ(problemOfXML(plist("<array>&#97;</array>")), problem);
  EXPECT_EQ(problemOfXML(plist("<array><![CDATA[]]></array>")), problem);
}

TEST(XMLPropertyListContainer, TextInBooleansIsRefused) {
  EXPECT_EQ(problemOfXML(plist("<true>1</true>")), "line 1, column 22: text inside <true>");
}

TEST(XMLPropertyListContainer, NestingOf512IsRead) {
  EXPECT_EQ(parsePropertyList(nested("<array>", "</array>", 512)), arraysNested(512));
  EXPECT_EQ(problemOfXML(nested("<dict><key/>", "</dict>", 512)).find("nested too deep"), std::string::npos);
}

TEST(XMLPropertyListContainer, ScalarInTheDeepestContainerIsRead) {
  std::string file = nested("<array>", "</array>", 512);
  file.replace(file.find("</array>"), 0, "<true/>");
  EXPECT_EQ(problemOfXML(file), "");
}

TEST(XMLPropertyListContainer, NestingOf513IsRefused) {
  EXPECT_EQ(problemOfXML(nested("<array>", "</array>", 513)),
            "line 1, column " + std::to_string(22 + 7 * 512) + ": nested too deep");
  EXPECT_NE(problemOfXML(nested("<dict><key/>", "</dict>", 513)).find("nested too deep"), std::string::npos);
}

// What is no property list

TEST(XMLPropertyListRefusal, EmptyFile) { EXPECT_EQ(problemOfXML(""), "line 1, column 1: no XML element in the file"); }

TEST(XMLPropertyListRefusal, FileOfWhiteSpace) {
  EXPECT_EQ(problemOfXML(" \n\n"), "line 1, column 1: no XML element in the file");
}

TEST(XMLPropertyListRefusal, FileOfZeroBytes) {
  EXPECT_EQ(problemOfXML(std::string(4096, '\0')), "line 1, column 1: a zero byte");
}

TEST(XMLPropertyListRefusal, OldTextualForm) { EXPECT_NE(problemOfXML("{ a = b; }"), ""); }

TEST(XMLPropertyListRefusal, TwoValuesInPlist) {
  EXPECT_EQ(problemOfXML(plist("<true/>\n<false/>")), "line 2, column 1: a second value in <plist>");
}

TEST(XMLPropertyListRefusal, NoValueInPlist) {
  EXPECT_EQ(problemOfXML(plist("")), "line 1, column 1: no value in <plist>");
}

TEST(XMLPropertyListRefusal, TextInPlist) {
  EXPECT_EQ(problemOfXML(plist("<true/>a")), "line 1, column 1: text between the values of a container");
}

TEST(XMLPropertyListRefusal, TrailingGarbage) {
  const std::string problem = "line 2, column 1: not well-formed XML (something besides the one root element)";
  const std::string file = plist("<true/>") + "\n";
  EXPECT_EQ(problemOfXML(file + "<plist/>"), problem);
  EXPECT_EQ(problemOfXML(file + "<![CDATA[]]>"),
            "line 2, column 1: not well-formed XML (something besides the one root element)");
  EXPECT_NE(problemOfXML(file + "garbage"), "");
  EXPECT_NE(problemOfXML(file + "&amp;"), "");
  EXPECT_NE(problemOfXML(file + "<"), "");
  EXPECT_NE(problemOfXML(file + "</plist>"), "");
}

TEST(XMLPropertyListRefusal, TextBeforeTheRoot) { EXPECT_NE(problemOfXML("a" + plist("<true/>")), ""); }

TEST(XMLPropertyListRefusal, UnknownElement) {
  EXPECT_EQ(problemOfXML(plist("<array>\n\t<text>a</text></array>")),
            "line 2, column 2: <text> is no property-list value");
  EXPECT_EQ(problemOfXML(plist("<dictionary><key>a</key><true/></dictionary>")),
            "line 1, column 22: <dictionary> is no property-list value");
}

TEST(XMLPropertyListRefusal, ElementNamesAreCaseSensitive) {
  EXPECT_EQ(problemOfXML(plist("<String>a</String>")), "line 1, column 22: <String> is no property-list value");
}

TEST(XMLPropertyListRefusal, ElementsThatDoNotMatch) {
  EXPECT_NE(problemOfXML("<plist>\n<array><true/></dict></plist>").find("line 2, column "), std::string::npos);
}

TEST(XMLPropertyListRefusal, EntityOfTheDocumentsOwn) {
  EXPECT_EQ(problemOfXML("<!DOCTYPE plist [<!ENTITY a \"b\">]>" + plist("<string>&a;</string>")),
            "line 1, column 64: the reference &a; stands for no character");
}

TEST(XMLPropertyListRefusal, EntityBomb) {
  std::string bomb = "<!DOCTYPE plist [<!ENTITY a0 \"ha\">\n";
  for (int i = 1; i < 60; ++i) {
    const std::string previous = "&a" + std::to_string(i - 1) + ";";
    bomb += "<!ENTITY a" + std::to_string(i) + " \"" + previous + previous + "\">\n";
  }
  EXPECT_EQ(problemOfXML(bomb + "]>\n" + plist("<string>&a59;</string>")),
            "line 62, column 30: the reference &a59; stands for no character");
}

TEST(XMLPropertyListRefusal, ExternalEntity) {
  EXPECT_EQ(problemOfXML("<!DOCTYPE plist [<!ENTITY a SYSTEM \"secret.txt\">]>\n" + plist("<string>&a;</string>")),
            "line 2, column 30: the reference &a; stands for no character");
}

TEST(XMLPropertyListRefusal, NestingBombOfAMillion) {
  EXPECT_NE(problemOfXML(nested("<array>", "</array>", 1000000)).find("nested too deep"), std::string::npos);
  EXPECT_NE(problemOfXML(nested("<string>", "</string>", 1000000)).find("an element inside <string>"),
            std::string::npos);
  EXPECT_NE(problemOfXML(std::string(1000000, '<')), "");
}

TEST(XMLPropertyListRefusal, FileCutOffAtAnyByte) {
  const std::string file =
      std::string(declaration) + "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"x\">\n" +
      plist(
          "<dict><!-- é --><key>節&amp;</key><array><string>a<![CDATA[<]]></string><integer>1</integer>"
          "<real>1.5</real><true/><date>2001-01-01T00:00:00Z</date><data>YQ==</data></array></dict>");
  ASSERT_EQ(problemOfXML(file), "");
  for (std::size_t size = 0; size < file.size(); ++size) {
    EXPECT_NE(problemOfXML(file.substr(0, size)), "") << "cut off behind " << file.substr(0, size);
  }
}

TEST(XMLPropertyListRefusal, UTF16FileCutOffAtAnyByte) {
  const std::string file = "\xFF\xFE" + utf16(plist("<array><string>🎬</string></array>"), ByteOrder::LittleEndian);
  ASSERT_EQ(problemOfXML(file), "");
  for (std::size_t size = 0; size < file.size(); ++size) EXPECT_NE(problemOfXML(file.substr(0, size)), "") << size;
}

TEST(XMLPropertyListRefusal, AnyByteChangedToAnyOtherNeverCrashes) {
  const std::string file = plist("<dict><key>a</key><data>YQ==</data><key>b</key><string>&lt;é</string></dict>");
  for (std::size_t i = 0; i < file.size(); ++i) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string changed = file;
      changed[i] = static_cast<char>(byte);
      std::string problem;
      const auto list = parsePropertyList(changed, &problem);
      ASSERT_NE(list.has_value(), !problem.empty()) << "byte " << byte << " at " << i;
    }
  }
}

TEST(XMLPropertyListPlace, CountsCharactersNotBytes) {
  EXPECT_EQ(problemOfXML("<plist><array>\n<string>日本 é</string><nix/></array></plist>"),
            "line 2, column 22: <nix> is no property-list value");
}

TEST(XMLPropertyListPlace, IsCountedInTheDecodedText) {
  const std::string file = "<plist><array>\n<string>日本 🎬</string><nix/></array></plist>";
  EXPECT_EQ(problemOfXML("\xFE\xFF" + utf16(file, ByteOrder::BigEndian)),
            "line 2, column 22: <nix> is no property-list value");
}

TEST(XMLPropertyListPlace, DoesNotCountAByteOrderMark) {
  EXPECT_EQ(problemOfXML("\xEF\xBB\xBF<nix/>"), "line 1, column 1: <nix> is no property-list value");
}

}  // namespace
}  // namespace epg::test
