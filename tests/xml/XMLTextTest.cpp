#include "xml/XMLText.h"

#include <gtest/gtest.h>

#include <string>

namespace epg::test {
namespace {

std::string escaped(const std::string& text, XMLContext context) {
  std::string document = "before ";
  StringSink sink(document);
  if (!appendXMLText(sink, text, context)) return "(refused)";
  sink.flush();
  return document.compare(0, 7, "before ") == 0 ? document.substr(7) : "(the document before is lost)";
}

std::string inText(const std::string& text) { return escaped(text, XMLContext::Text); }
std::string inAttribute(const std::string& text) { return escaped(text, XMLContext::Attribute); }

TEST(XMLTextEscaping, EscapesWhatItsContextGivesAMeaning) {
  const struct {
    const char* behaviour;
    const char* text;
    const char* inText;
    const char* inAttribute;
  } rows[] = {{"nothing", "", "", ""},
              {"plain text", "Žluťoučký 節目 🎬 'x' ]] ;#", "Žluťoučký 節目 🎬 'x' ]] ;#", "Žluťoučký 節目 🎬 'x' ]] ;#"},
              {"markup", "a&b<c>d", "a&amp;b&lt;c&gt;d", "a&amp;b&lt;c&gt;d"},
              {"again", "&&", "&amp;&amp;", "&amp;&amp;"},
              {"what is escaped already", "&amp;", "&amp;amp;", "&amp;amp;"},
              {"carriage return", "a\rb\r\n", "a&#13;b&#13;\n", "a&#13;b&#13;&#10;"},
              {"tab and line feed", "\t\n", "\t\n", "&#9;&#10;"},
              {"quotes", "\"'", "\"'", "&quot;'"},
              {"delete and the higher control characters", "\x7F\xC2\x80\xC2\x9F", "\x7F\xC2\x80\xC2\x9F",
               "\x7F\xC2\x80\xC2\x9F"}};
  for (const auto& row : rows) {
    EXPECT_EQ(inText(row.text), row.inText) << row.behaviour;
    EXPECT_EQ(inAttribute(row.text), row.inAttribute) << row.behaviour;
  }
}

TEST(XMLTextEscaping, EveryControlCharacterBecomesTheReplacementCharacter) {
  for (int code = 0; code < 0x20; ++code) {
    if (code == '\t' || code == '\n' || code == '\r') continue;
    EXPECT_EQ(inText(std::string(1, static_cast<char>(code))), "\xEF\xBF\xBD") << code;
    EXPECT_EQ(inAttribute(std::string(1, static_cast<char>(code))), "\xEF\xBF\xBD") << code;
  }
}

TEST(XMLTextEscaping, TheTwoNoncharactersOfTheFirstPlaneBecomeTheReplacementCharacter) {
  EXPECT_EQ(inText("a\xEF\xBF\xBE"
                   "b\xEF\xBF\xBF"
                   "c"),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD"
            "c");
}

TEST(XMLTextEscaping, TheirNeighboursAndTheNoncharactersOfOtherPlanesStay) {
  const char* const text = "\xEF\xBF\xBD\xEF\xBE\xBF\xEF\xB7\x90\xF0\x9F\xBF\xBE\xF4\x8F\xBF\xBF";
  EXPECT_EQ(inText(text), text);
}

TEST(XMLTextEscaping, RefusesWhatIsNotUTF8) {
  for (const char* text : {"\x80", "\xFF", "a\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                           "\xF8\x88\x80\x80\x80", "\xEF\xBF"}) {
    EXPECT_EQ(inText(text), "(refused)");
    EXPECT_EQ(inAttribute(text), "(refused)");
    EXPECT_FALSE(isUTF8(text));
  }
}

TEST(XMLTextLiteral, IsWhatStandsInTextsAndAttributesAsItIs) {
  for (const char* text : {"", "a", "imageURL", "a b;c/d=e?f~", "0123456789abcdef#0123456789", "#", "\x7F"}) {
    EXPECT_TRUE(isLiteralInXML(text)) << text;
    EXPECT_EQ(inText(text), text);
    EXPECT_EQ(inAttribute(text), text);
  }
}

TEST(XMLTextLiteral, IsNothingElseWhereverItStands) {
  for (const char* special : {"&", "<", ">", "\"", "'", "\t", "\n", "\r", "\x01", "\x1F", "\x80", "é"}) {
    for (std::size_t before = 0; before < 10; ++before) {
      EXPECT_FALSE(isLiteralInXML(std::string(before, '#') + special + "after")) << special << before;
      EXPECT_FALSE(isLiteralInXML(std::string(before, 'a') + special)) << special << before;
    }
  }
}

TEST(XMLTextCarried, IsEverythingThatXMLHas) {
  for (const char* text : {"", "a\t\n\r", "\x7F\xC2\x80", "é節🎬", "\xEF\xBF\xBD", "\xEF\xB7\x90\xF0\x9F\xBF\xBE"}) {
    EXPECT_TRUE(isCarriedByXML(text)) << text;
    EXPECT_EQ(carriedByXML(text), text);
  }
}

TEST(XMLTextCarried, IsNotWhatXMLDoesNotHave) {
  EXPECT_FALSE(isCarriedByXML("a\x01"));
  EXPECT_FALSE(isCarriedByXML(std::string("\0", 1)));
  EXPECT_FALSE(isCarriedByXML("a\xEF\xBF\xBE"));
  EXPECT_FALSE(isCarriedByXML("\xFF"));
  EXPECT_EQ(carriedByXML("a\x01\x02"
                         "b\xEF\xBF\xBF"),
            "a\xEF\xBF\xBD\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
  EXPECT_EQ(carriedByXML(std::string("\0", 1)), "\xEF\xBF\xBD");
}

TEST(XMLTextCarried, HasTheReplacementCharacterForWhatIsNotUTF8) {
  const std::string one = "\xEF\xBF\xBD";
  const struct {
    std::string text;
    std::string carried;
  } rows[] = {{"\xFF", one},
              {"a\xFF\xFE"
               "b",
               "a" + one + one + "b"},
              {"caf\xE9", "caf" + one},
              {"\xF0\xC3\xA9", one + "\xC3\xA9"},
              {"\xE2\x82"
               "A",
               one + "A"},
              {"\xC3\xA9\xC3", "\xC3\xA9" + one},
              {"\xED\xA0\x80\xED\xB0\x80", one + one},
              {"\xC0\xAF\x80", one},
              {"\x01\xFF\xEF\xBF\xBF", one + one + one}};
  for (const auto& row : rows) {
    EXPECT_EQ(carriedByXML(row.text), row.carried) << row.text;
    std::string document;
    StringSink sink(document);
    EXPECT_TRUE(appendXMLText(sink, row.text, XMLContext::Text, Apostrophes::AsTheyAre, Malformed::Replaced));
    sink.flush();
    EXPECT_EQ(document, row.carried) << row.text;
  }
}

TEST(XMLTextCarried, IsWhatIsReadAfterWriting) {
  const std::string text =
      "a\x01\xEF\xBF\xBF\x1F"
      "b";
  EXPECT_EQ(inText(text), carriedByXML(text));
}

TEST(XMLTextEscaping, KnowsUTF8) {
  EXPECT_TRUE(isUTF8(""));
  EXPECT_TRUE(isUTF8(std::string("a\0b", 3)));
  EXPECT_TRUE(isUTF8("é節🎬\xF4\x8F\xBF\xBF"));
}

}  // namespace
}  // namespace epg::test
