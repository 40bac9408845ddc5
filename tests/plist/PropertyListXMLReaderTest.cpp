#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "plist/PropertyListFile.h"
#include "tests/plist/PropertyListPrinting.h"
#include "tests/plist/XMLPropertyLists.h"

namespace epg::test {
namespace {

struct Readable {
  const char* behaviour;
  std::string content;
  PropertyList expected;
};

/// Each as the one value of a file, in this element where one is given.
void expectRead(const std::string& element, const std::vector<Readable>& rows) {
  for (const Readable& row : rows) {
    const std::string value = element.empty() ? row.content : "<" + element + ">" + row.content + "</" + element + ">";
    EXPECT_EQ(parsePropertyList(plist(value)), row.expected) << row.behaviour;
  }
}

struct Unreadable {
  const char* behaviour;
  std::string value;  ///< As the one value of a file.
  std::string problem;
};

void expectRefused(const std::vector<Unreadable>& rows) {
  for (const Unreadable& row : rows) EXPECT_EQ(problemOfXML(plist(row.value)), row.problem) << row.behaviour;
}

void expectContentRefused(const std::string& element, const std::string& content) {
  EXPECT_EQ(problemOfXML(plist("<" + element + ">" + content + "</" + element + ">")),
            "line 1, column 22: the content is no " + element)
      << content;
}

PropertyList boolean(bool value) { return PropertyList::fromBoolean(value); }
PropertyList integer(std::int64_t value) { return PropertyList::fromInteger(value); }
PropertyList real(double value) { return PropertyList::fromReal(value); }

using Reals = std::numeric_limits<double>;
using Unsigneds = std::numeric_limits<std::uint64_t>;

TEST(XMLPropertyList, ReadsAFileAsThePlatformWritesIt) {
  const std::string file =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n<dict>\n\t<key>a</key>\n\t<string>b</string>\n</dict>\n</plist>\n";
  EXPECT_EQ(parsePropertyList(file), dictionaryOf({{"a", "b"}}));
}

TEST(XMLPropertyList, ReadsEveryType) {
  expectRead("", {{"string", "<string>a</string>", "a"},
                  {"empty string", "<string/>", ""},
                  {"integer", "<integer>1</integer>", integer(1)},
                  {"real", "<real>1.5</real>", real(1.5)},
                  {"true", "<true/>", boolean(true)},
                  {"false", "<false/>", boolean(false)},
                  {"a boolean with an end tag", "<true></true>", boolean(true)},
                  {"a boolean with white space in it", "<false> </false>", boolean(false)},
                  {"date", "<date>2001-01-01T00:00:00Z</date>", PropertyList::fromDate(Instant{0})},
                  {"data", "<data>YQ==</data>", data("a")},
                  {"array", "<array><true/></array>", arrayOf({boolean(true)})},
                  {"dictionary", "<dict><key>a</key><true/></dict>", dictionaryOf({{"a", boolean(true)}})},
                  {"empty array", "<array/>", arrayOf({})},
                  {"array of white space", "<array> \n </array>", arrayOf({})},
                  {"empty dictionary", "<dict/>", dictionaryOf({})},
                  {"empty dictionary with an end tag", "<dict></dict>", dictionaryOf({})}});
}

TEST(XMLPropertyList, ReadsAValueWithoutPlistAroundIt) {
  EXPECT_EQ(parsePropertyList("<string>a</string>"), PropertyList("a"));
}

TEST(XMLPropertyList, ReadsCharactersThatAreReferredToByHalves) {
  expectRead("string", {{"both", "a&#xD83D;&#xDE00;b", "a😀b"},
                        {"both, decimal", "&#55357;&#56832;", "😀"},
                        {"one", "&#xD83D;", "\uFFFD"},
                        {"the wrong way round", "&#xDE00;&#xD83D;x", "\uFFFD\uFFFDx"},
                        {"one too many", "&#xD83D;&#xD83D;&#xDE00;", "\uFFFD😀"},
                        {"parted", "&#xD83D;&amp;&#xDE00;", "\uFFFD&\uFFFD"}});
}

// Strings

TEST(XMLPropertyListString, IsReadAsItStandsWithItsReferencesResolved) {
  expectRead("string", {{"empty", "", ""},
                        {"white space alone is kept exactly", " \t\n  ", " \t\n  "},
                        {"white space at the ends is kept", "  a\n", "  a\n"},
                        {"line ends become line feeds", "a\r\nb\rc\n", "a\nb\nc\n"},
                        {"a carriage return survives as a reference", "a&#13;\nb&#xD;", "a\r\nb\r"},
                        {"the five named references", "&amp;&lt;&gt;&quot;&apos;", "&<>\"'"},
                        {"characters by number", "&#65;&#x41;&#xe9;&#xE9;&#128250;&#x1F4FA;", "AAéé📺📺"},
                        {"resolved only once", "&amp;lt;&#38;amp;", "&lt;&amp;"},
                        {"CDATA stays as it stands", "a<![CDATA[<b> &amp; ]] > ]]>c", "a<b> &amp; ]] > c"},
                        {"what comments part is joined", "a<!-- -->b<!--&nix;--> <![CDATA[c]]><!-- <d/> -->", "ab c"},
                        {"the end of CDATA as text", "a]]&gt;b", "a]]>b"}});
}

TEST(XMLPropertyListString, MayBeLong) {
  const std::string text(std::size_t{1} << 22, 'a');
  EXPECT_TRUE(parsePropertyList(plist("<string>" + text + "</string>")) == PropertyList(text));
}

TEST(XMLPropertyListString, ReferencesToNoCharacterAreRefused) {
  for (const std::string reference : {"&#0;", "&#x0;", "&#x110000;", "&#99999999999999999999;", "&#;", "&#x;", "&#X41;",
                                      "&#-1;", "&# 65;", "&#6a;", "&AMP;", "&nbsp;", "&;"}) {
    EXPECT_EQ(problemOfXML(plist("<string>A" + reference + "B</string>")),
              "line 1, column 30: the reference " + reference + " stands for no character");
  }
  EXPECT_EQ(problemOfXML(plist("<string>Tom & Jerry</string>")),
            "line 1, column 30: the reference & stands for no character");
}

TEST(XMLPropertyListString, ElementInsideIsRefused) {
  expectRefused({{"element", "<string>a<b/></string>", "line 1, column 22: an element inside <string>"}});
}

// Numbers

TEST(XMLPropertyListInteger, IsReadInEveryUsualForm) {
  expectRead("integer", {{"lowest", "-9223372036854775808", integer(std::numeric_limits<std::int64_t>::min())},
                         {"highest", "18446744073709551615", PropertyList::fromUnsigned(Unsigneds::max())},
                         {"hexadecimal", "0x1F", integer(31)},
                         {"hexadecimal, below zero", "-0XfF", integer(-255)},
                         {"hexadecimal, highest", "0xFFFFFFFFFFFFFFFF", PropertyList::fromUnsigned(Unsigneds::max())},
                         {"sign, zeros and white space", "\n +0042 ", integer(42)},
                         {"zero below zero", "-0", integer(0)},
                         {"many zeros", "000000000000000000000000000000007", integer(7)}});
}

TEST(XMLPropertyListInteger, BeyondTheEndsIsRefused) {
  for (const char* text : {"-9223372036854775809", "18446744073709551616", "99999999999999999999999",
                           "-0x8000000000000001", "0x10000000000000000"}) {
    expectContentRefused("integer", text);
  }
}

TEST(XMLPropertyListInteger, AnythingElseIsRefused) {
  for (const char* text :
       {"", " ", "-", "+", "+-1", "--1", "1.0", "1e3", "1 2", "0x", "-0x", "0xG", "x1", "1a", "１"}) {
    expectContentRefused("integer", text);
  }
}

TEST(XMLPropertyListReal, IsTheNearestNumberOfEveryUsualForm) {
  expectRead("real", {{"zero", "0", real(0)},
                      {"exponent below zero", "-1.25e-3", real(-0.00125)},
                      {"signs", "+2.5E+10", real(2.5e10)},
                      {"no digit before the point", " .5 ", real(0.5)},
                      {"no digit behind the point", "5.", real(5)},
                      {"no number of two's powers", "0.1", real(0.1)},
                      {"highest", "1.7976931348623157e308", real(Reals::max())},
                      {"lowest", "2.2250738585072014e-308", real(Reals::min())},
                      {"lowest of fewer digits", "4.9406564584124654e-324", real(Reals::denorm_min())},
                      {"too large", "1e400", real(Reals::infinity())},
                      {"too large, below zero", "-1e400", real(-Reals::infinity())},
                      {"too small", "1e-400", real(0)},
                      {"too small, below zero", "-1e-400", real(0)}});
}

TEST(XMLPropertyListReal, MayBeInfiniteOrNotANumber) {
  for (const std::string sign : {"", "+", "-"}) {
    for (const char* const text : {"inf", "INF", "Infinity", "infinity"}) {
      expectRead("real", {{text, sign + text, real(sign == "-" ? -Reals::infinity() : Reals::infinity())}});
    }
  }
  for (const char* const text : {"nan", "NaN"}) {
    expectRead("real", {{text, text, real(std::nan(""))}});
  }
}

TEST(XMLPropertyListReal, AnythingElseIsRefused) {
  for (const char* text : {"", ".", "-", "e5", "1e", "1e+", "1.5.3", "1-2", "--1", "1,5", "0x1p3", "1 2", "infinit",
                           "nan(1)", "1e5e", "1e1.5", "+nan"}) {
    expectContentRefused("real", text);
  }
}

TEST(XMLPropertyListDate, IsInUTCAndOfAnyYearOfFourDigits) {
  expectRead("date", {{"reference of Unix", "1970-01-01T00:00:00Z", dateAt(0)},
                      {"white space around it", " 2012-03-04T18:05:09Z\n", dateAt(1330884309)},
                      {"first year", "0000-01-01T00:00:00Z", dateAt(-62167219200.0)},
                      {"last year", "9999-12-31T23:59:59Z", dateAt(253402300799.0)},
                      {"leap day", "2000-02-29T00:00:00Z", dateAt(951782400)}});
}

TEST(XMLPropertyListDate, AnythingElseIsRefused) {
  for (const char* text : {"",
                           "2012-03-04",
                           "2012-03-04T18:00:00",
                           "2012-03-04 18:00:00Z",
                           "2012-03-04T18:00:00+0100",
                           "2012-13-04T18:00:00Z",
                           "2012-00-04T18:00:00Z",
                           "2012-03-32T18:00:00Z",
                           "2012-03-00T18:00:00Z",
                           "2012-03-04T24:00:00Z",
                           "2012-03-04T18:60:00Z",
                           "2012-03-04T18:00:60Z",
                           "-012-03-04T18:00:00Z",
                           "2012-03-04T18:00:00z",
                           "2012-03-04T18:00:00ZZ",
                           "2012-3-4T18:00:00Z",
                           "12012-03-04T18:00:00Z",
                           "2O12-03-04T18:00:00Z",
                           "1900-02-29T00:00:00Z",
                           "2011-02-29T00:00:00Z"}) {
    expectContentRefused("date", text);
  }
}

TEST(XMLPropertyListData, IsReadFromItsDigits) {
  expectRead("data", {{"nothing", "", data("")},
                      {"one byte in the last group", "Zg==", data("f")},
                      {"two bytes in the last group", "Zm8=", data("fo")},
                      {"three bytes in the last group", "Zm9v", data("foo")},
                      {"two groups", "Zm9vYg==", data("foob")},
                      {"every kind of digit", "AAECAwQF+/8=", data(std::string("\0\1\2\3\4\5\xFB\xFF", 8))},
                      {"white space anywhere", "\n\tZ m\r\n9\tv Y g =\n = \n", data("foob")},
                      {"one byte without padding", "Zg", data("f")},
                      {"two bytes without padding", "Zm8", data("fo")}});
}

TEST(XMLPropertyListData, AnythingElseIsRefused) {
  for (const char* text :
       {"Z", "Zm9vY", "Zg=", "=", "==", "Zm9v=", "Zm9v==", "Zg==Zg==", "Zm=8", "Zg===", "Zm9-", "Zm9_", "é"}) {
    expectContentRefused("data", text);
  }
}

// Containers

TEST(XMLPropertyListContainer, IsReadInItsOrder) {
  expectRead("", {{"order of an array", "<array><string>b</string><string>a</string><string>b</string></array>",
                   arrayOf({"b", "a", "b"})},
                  {"the last of several values under one key counts",
                   "<dict><key>a</key><string>1</string><key>b</key><true/><key>a</key><string>2</string></dict>",
                   dictionaryOf({{"a", "2"}, {"b", boolean(true)}})},
                  {"keys are kept exactly",
                   "<dict><key> a\n</key><string>1</string><key/><string>2</string><key>&lt;<![CDATA[&]]></key>"
                   "<string>3</string></dict>",
                   dictionaryOf({{" a\n", "1"}, {"", "2"}, {"<&", "3"}})}});
}

TEST(XMLPropertyListContainer, CommentsAndInstructionsMayStandAnywhere) {
  EXPECT_EQ(
      parsePropertyList("<!-- a --><?b c?><plist><!-- d --><array><!-- e --><true/><?f?></array></plist><!-- g -->\n"),
      arrayOf({boolean(true)}));
}

TEST(XMLPropertyListContainer, WithWhatDoesNotBelongThereIsRefused) {
  const std::string text = "line 1, column 22: text between the values of a container";
  expectRefused(
      {{"a key that is no string", "<dict>\n  <integer>1</integer><true/></dict>",
        "line 2, column 3: a value without a key"},
       {"an element in a key", "<dict><key><string>a</string></key><true/></dict>",
        "line 1, column 28: an element inside <key>"},
       {"a key without value before another", "<dict><key>a</key><key>b</key><true/></dict>",
        "line 1, column 40: a key without a value"},
       {"a key without value at the end", "<dict><key>a</key></dict>", "line 1, column 22: a key without a value"},
       {"a second value under a key", "<dict><key>a</key><true/><false/></dict>",
        "line 1, column 47: a value without a key"},
       {"a key outside a dictionary", "<array><key>a</key></array>",
        "line 1, column 29: <key> is no property-list value"},
       {"text between the elements of an array", "<array><true/>a<true/></array>", text},
       {"text before a key", "<dict>a<key>b</key><true/></dict>", text},
       {"text by number", "<array>&#97;</array>", text},
       {"an empty CDATA section", "<array><![CDATA[]]></array>", text},
       {"text in a boolean", "<true>1</true>", "line 1, column 22: text inside <true>"}});
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

}  // namespace
}  // namespace epg::test
