#include "export/XMLElement.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/NaiveDayFile.h"

namespace epg::test {
namespace {

XMLElement element(const std::string& name, const std::string& text = {}) {
  XMLElement made;
  made.name = name;
  made.text = text;
  return made;
}

std::string written(const XMLElement& root, int level = 0) {
  std::string document;
  EXPECT_TRUE(appendXMLElement(document, root, level));
  return document;
}

TEST(XMLElementTest, WithTextStandsOnOneLineWithoutAddedWhiteSpace) {
  EXPECT_EQ("<title>Live from studio 2</title>\n", written(element("title", "Live from studio 2")));
}

TEST(XMLElementTest, WithoutContentIsAStartTagDirectlyFollowedByItsEndTag) {
  EXPECT_EQ("<tags></tags>\n", written(element("tags")));
}

TEST(XMLElementTest, ChildrenStandOnLinesOfTheirOwnFourSpacesDeeper) {
  XMLElement tags = element("tags");
  tags.addChild(element("tag", "Live"));
  tags.addChild(element("tag"));
  XMLElement program = element("program");
  program.addChild(tags);
  EXPECT_EQ(
      "    <program>\n"
      "        <tags>\n"
      "            <tag>Live</tag>\n"
      "            <tag></tag>\n"
      "        </tags>\n"
      "    </program>\n",
      written(program, 1));
}

TEST(XMLElementTest, AnAbsentChildAddsNothing) {
  XMLElement tags = element("tags");
  tags.addChild(std::nullopt);
  EXPECT_TRUE(tags.children.empty());
  tags.addChild(element("tag", "Live"));
  tags.addChild(std::nullopt);
  EXPECT_EQ(1U, tags.children.size());
}

TEST(XMLElementTest, AttributesStandInTheirOrderBetweenDoubleQuotes) {
  XMLElement programs = element("programs");
  programs.attributes = {{"dateTo", "2"}, {"dateFrom", "1"}, {"a", ""}};
  EXPECT_EQ("<programs dateTo=\"2\" dateFrom=\"1\" a=\"\"></programs>\n", written(programs));
}

TEST(XMLElementTest, AttributeValuesKeepTheirWhiteSpaceAndQuotesWhenRead) {
  XMLElement programs = element("programs");
  programs.attributes = {{"a", "\"<&>\t\n\r'"}};
  EXPECT_EQ("<programs a=\"&quot;&lt;&amp;&gt;&#9;&#10;&#13;'\"></programs>\n", written(programs));
}

TEST(XMLElementTest, LeavesApostrophesToTheApostrophePass) {
  EXPECT_EQ("<title>Kids' Corner</title>\n", written(element("title", "Kids' Corner")));
}

TEST(XMLElementTest, TextThatIsNotUTF8IsRefused) {
  std::string document;
  EXPECT_FALSE(appendXMLElement(document, element("title", "caf\xE9"), 0));
}

TEST(XMLElementTest, AttributeValuesThatAreNotUTF8AreRefused) {
  XMLElement programs = element("programs");
  programs.attributes = {{"a", "\xFF"}};
  std::string document;
  EXPECT_FALSE(appendXMLElement(document, programs, 0));
}

TEST(XMLElementTest, OneBadChildRefusesTheWholeElement) {
  XMLElement tags = element("tags");
  tags.addChild(element("tag", "Live"));
  tags.addChild(element("tag", "\xC3"));
  std::string document;
  EXPECT_FALSE(appendXMLElement(document, tags, 0));
}

TEST(XMLElementTest, AppendsToWhatIsThere) {
  std::string document = "<a/>\n";
  EXPECT_TRUE(appendXMLElement(document, element("b"), 0));
  EXPECT_EQ("<a/>\n<b></b>\n", document);
}

}  // namespace
}  // namespace epg::test
