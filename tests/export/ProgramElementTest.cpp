#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "export/DayFile.h"
#include "tests/support/DayFileOf.h"
#include "tests/support/Events.h"
#include "tests/support/NaiveDayFile.h"
#include "tests/support/TimeZone.h"

namespace epg::test {
namespace {

class ProgramElementTest : public testing::Test {
 protected:
  std::optional<XMLElement> programOf(const EPGEvent& one) const {
    return xmlEventWithDictionary(LocalCalendar(), items.store(), one);
  }
  XMLElement made(const EPGEvent& one) const {
    const auto program = programOf(one);
    EXPECT_TRUE(program);
    return program.value_or(XMLElement());
  }

  TimeZone zone{"UTC"};
  ItemsForDayFile items{Entries{{ZRLEPGDSTitleKey, "Morning Prayer"},
                                {ZRLEPGDSDescriptionKey, "Live from studio 2"},
                                {ZRLEPGDSImageURLKey, "images/prayer.jpg"},
                                {ZRLEPGDSTagsKey, PropertyList::Array{"Live"}}}};
  const EPGEvent event = eventFromTo("E", 1330925400, 1330926900);
};

TEST_F(ProgramElementTest, HasSixChildrenInThisOrder) {
  const XMLElement program = made(event);
  EXPECT_EQ("program", program.name);
  std::vector<std::string> names;
  for (const XMLElement& child : program.children) names.push_back(child.name);
  EXPECT_EQ((std::vector<std::string>{"date", "time", "title", "description", "imgUrl", "tags"}), names);
}

TEST_F(ProgramElementTest, TakesTitleDescriptionAndImageURLFromTheItem) {
  const XMLElement program = made(event);
  ASSERT_EQ(6U, program.children.size());
  EXPECT_EQ("Morning Prayer", program.children[2].text);
  EXPECT_EQ("Live from studio 2", program.children[3].text);
  EXPECT_EQ("images/prayer.jpg", program.children[4].text);
  ASSERT_EQ(1U, program.children[5].children.size());
  EXPECT_EQ("Live", program.children[5].children[0].text);
}

TEST_F(ProgramElementTest, AnEventWithoutAnItemGivesNone) { EXPECT_FALSE(programOf(eventAt("unknown", 0))); }

TEST_F(ProgramElementTest, AnEventWithoutAnIDGivesNone) {
  EPGEvent nameless = event;
  nameless.eventEPGUniqueID.reset();
  EXPECT_FALSE(programOf(nameless));
}

TEST_F(ProgramElementTest, TheEmptyIDFindsTheItemUnderTheEmptyKey) {
  EXPECT_FALSE(programOf(eventAt("", 0)));
  items.add("", {{ZRLEPGDSTitleKey, "Nameless"}});
  EXPECT_EQ("Nameless", made(eventAt("", 0)).children.at(2).text);
}

TEST_F(ProgramElementTest, AnItemWithoutAnyValueGivesEmptyElements) {
  items.add("empty", {});
  const XMLElement program = made(eventAt("empty", 0));
  ASSERT_EQ(6U, program.children.size());
  for (std::size_t i = 2; i < 6; ++i) {
    EXPECT_TRUE(program.children[i].text.empty());
    EXPECT_TRUE(program.children[i].children.empty());
  }
}

TEST_F(ProgramElementTest, IdIsTheHashOfThePlaybackIDInDecimal) {
  const XMLElement program = made(withPlaybackID(event, "P-100"));
  ASSERT_EQ(1U, program.attributes.size());
  EXPECT_EQ("id", program.attributes[0].first);
  EXPECT_EQ(byWordWidth("7118868021960440957", "4961821"), program.attributes[0].second);
}

TEST_F(ProgramElementTest, AnEmptyOrAbsentPlaybackIDGivesNoId) {
  EXPECT_TRUE(made(withPlaybackID(event, "")).attributes.empty());
  EXPECT_TRUE(made(event).attributes.empty());
}

TEST_F(ProgramElementTest, APlaybackIDOfOneCharacterGivesAnId) {
  EXPECT_EQ(1U, made(withPlaybackID(event, " ")).attributes.size());
}

TEST_F(ProgramElementTest, TheSamePlaybackIDGivesTheSameId) {
  items.add("other", {});
  EXPECT_EQ(made(withPlaybackID(event, "P")).attributes, made(withPlaybackID(eventAt("other", 9), "P")).attributes);
}

TEST_F(ProgramElementTest, IdIsTheNumberThatTheGivenHashMakes) {
  const auto zero = [](const std::string& /*playbackID*/) { return std::size_t{0}; };
  const auto program = xmlEventWithDictionary(LocalCalendar(), items.store(), withPlaybackID(event, "P"), zero);
  ASSERT_TRUE(program);
  EXPECT_EQ("0", program->attributes.at(0).second);
}

TEST_F(ProgramElementTest, AnEventWithoutAStartGivesEmptyDateAndTime) {
  const XMLElement program = made(eventWithoutTimes("E"));
  ASSERT_EQ(3U, program.children.at(0).children.size());
  ASSERT_EQ(2U, program.children.at(1).children.size());
  for (std::size_t i = 0; i < 2; ++i) {
    for (const XMLElement& part : program.children[i].children) EXPECT_TRUE(part.text.empty()) << part.name;
  }
}

TEST_F(ProgramElementTest, TheEndStandsNowhere) {
  const XMLElement withEnd = made(event);
  const XMLElement withoutEnd = made(eventAt("E", 1330925400));
  std::string first;
  std::string second;
  ASSERT_TRUE(appendXMLElement(first, withEnd, 0));
  ASSERT_TRUE(appendXMLElement(second, withoutEnd, 0));
  EXPECT_EQ(first, second);
}

TEST_F(ProgramElementTest, KnownKeysOfAnotherTypeReadAsAbsent) {
  items.add("wrong", {{ZRLEPGDSTitleKey, PropertyList::fromInteger(7)},
                      {ZRLEPGDSDescriptionKey, PropertyList::fromData("text")},
                      {ZRLEPGDSImageURLKey, PropertyList(PropertyList::Array{"a"})},
                      {ZRLEPGDSTagsKey, "Live"}});
  const XMLElement program = made(eventAt("wrong", 0));
  for (std::size_t i = 2; i < 6; ++i) {
    EXPECT_TRUE(program.children.at(i).text.empty());
    EXPECT_TRUE(program.children.at(i).children.empty());
  }
}

TEST_F(ProgramElementTest, UnknownKeysAreNotWritten) {
  items.add("more", {{"rating", "12"}, {"imgUrl", "x"}, {"Title", "y"}});
  std::string text;
  ASSERT_TRUE(appendXMLElement(text, made(eventAt("more", 0)), 0));
  EXPECT_EQ(std::string::npos, text.find("12"));
  EXPECT_NE(std::string::npos, text.find("<title></title>"));
  EXPECT_NE(std::string::npos, text.find("<imgUrl></imgUrl>"));
}

TEST_F(ProgramElementTest, TheItemsOwnUniqueIDPlaysNoPart) {
  items.add("E2", {{ZRLEPGDSUniqueIDKey, "E"}, {ZRLEPGDSTitleKey, "Copy"}});
  EXPECT_EQ("Copy", made(eventAt("E2", 0)).children.at(2).text);
  EXPECT_EQ("Morning Prayer", made(eventAt("E", 0)).children.at(2).text);
}

}  // namespace
}  // namespace epg::test
