#include "host/guide/EventsFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/guide/EPGUniqueID.h"
#include "host/guide/XMLTVGuide.h"
#include "host/terminal/Refusal.h"
#include "platform/Environment.h"
#include "tests/host/GzipData.h"
#include "tests/host/WholeGuide.h"
#include "tests/support/TemporaryFolder.h"

namespace epg::test {

namespace {

using testing::HasSubstr;
using testing::StartsWith;

const char* const guideText =
    "<tv><channel id='c'><display-name>Channel</display-name></channel>"
    "<programme start='20010829000500' stop='20010829003000' channel='c' clumpidx='1/2'><title>T</title></programme>"
    "<programme start='2001-08-29' channel='c'><title>U</title></programme></tv>";

class EventsFile : public testing::Test {
 protected:
  Schedule read(const std::string& content) {
    writeFile(path(), content);
    return readSchedule(Environment::standard(), path());
  }
  Schedule readPropertyList(const std::string& content) { return read("<plist>" + content + "</plist>"); }

  /// The message without the path that it begins with.
  std::string refusalOf(const std::string& content) {
    try {
      read(content);
    } catch (const Refusal& refusal) {
      EXPECT_THAT(refusal.what(), StartsWith(path() + ": "));
      return std::string(refusal.what()).substr(path().size() + 2);
    }
    return "not refused";
  }

  std::string path() const { return folder_.file("events"); }

 private:
  TemporaryFolder folder_;
};

}  // namespace

TEST_F(EventsFile, GivesTheEventsOfAPropertyList) {
  const Schedule schedule = readPropertyList(
      "<array><dict><key>eventEPGUniqueID</key><string>E1</string><key>eventEPGPlaybackUniqueID</key>"
      "<string>P1</string><key>eventEPGStartDateTime</key><date>2001-08-29T00:05:00Z</date>"
      "<key>eventEPGEndDateTime</key><date>2001-08-29T00:30:00Z</date><key>more</key><integer>1</integer></dict>"
      "<dict/></array>");
  ASSERT_EQ(schedule.events.size(), 2U);
  const EPGEvent& event = schedule.events[0];
  EXPECT_EQ(event.eventEPGUniqueID, "E1");
  EXPECT_EQ(event.eventEPGPlaybackUniqueID, "P1");
  EXPECT_EQ(event.eventEPGStartDateTime, Instant::fromUnixTime(999043500));
  EXPECT_EQ(event.eventEPGEndDateTime, Instant::fromUnixTime(999045000));
  const EPGEvent& bare = schedule.events[1];
  EXPECT_EQ(bare.eventEPGUniqueID, std::nullopt);
  EXPECT_EQ(bare.eventEPGPlaybackUniqueID, std::nullopt);
  EXPECT_EQ(bare.eventEPGStartDateTime, std::nullopt);
  EXPECT_EQ(bare.eventEPGEndDateTime, std::nullopt);
}

TEST_F(EventsFile, GivesTheEventsOfAGuideWithTheIDsOfAnImport) {
  const Schedule schedule = read(guideText);
  const WholeGuide guide = wholeGuide(guideText);
  ASSERT_EQ(schedule.events.size(), 1U);
  const EPGEvent& event = schedule.events[0];
  const EventDetails& details = schedule.details[0];
  EXPECT_EQ(event.eventEPGUniqueID, epgUniqueID(guide.programmes[0]));
  EXPECT_EQ(event.eventEPGPlaybackUniqueID, playbackUniqueID(guide.programmes[0]));
  EXPECT_EQ(event.eventEPGStartDateTime, Instant::fromUnixTime(999043500));
  EXPECT_EQ(event.eventEPGEndDateTime, Instant::fromUnixTime(999045000));
  EXPECT_EQ(details.channel, "c");
  EXPECT_EQ(details.clumpIndex, "1/2");
  EXPECT_EQ(details.title, "T");
  EXPECT_EQ(schedule.channelNames.at("c"), "Channel");
  EXPECT_THAT(schedule.warnings, testing::ElementsAre(HasSubstr(": line 1, column ")));
}

TEST_F(EventsFile, MayBeCompressed) {
  EXPECT_EQ(read(gzipData(guideText)).events.size(), 1U);
  EXPECT_EQ(read(gzipData("<plist><array><dict/></array></plist>")).events.size(), 1U);
}

TEST_F(EventsFile, IsAPropertyListWhateverStandsBeforeItsRoot) {
  const std::string list = "<plist version='1.0'><array><dict/></array></plist>";
  for (const char* prologue : {"", "\xEF\xBB\xBF<?xml version='1.0'?>\n", "<!-- <tv> -->\n<?tool a?>",
                               "<!DOCTYPE plist>", "<!DOCTYPE plist [<!ELEMENT plist ANY>]>"}) {
    EXPECT_EQ(read(prologue + list).events.size(), 1U) << prologue;
  }
  std::string utf16("\xFF\xFE");
  for (const char character : list) utf16 += {character, '\0'};
  EXPECT_EQ(read(utf16).events.size(), 1U);
}

TEST_F(EventsFile, IsAGuideAlsoWhereACommentNamesAPropertyList) {
  EXPECT_TRUE(read("<!-- <plist> --><tv/>").events.empty());
  EXPECT_THAT(refusalOf("<!-- <plist> --><array/>"), HasSubstr("the root element is <array>"));
  EXPECT_THAT(refusalOf("<plister/>"), HasSubstr("the root element is <plister>"));
}

TEST_F(EventsFile, MayHoldNoEvents) {
  EXPECT_TRUE(read("<tv/>").events.empty());
  EXPECT_TRUE(readPropertyList("<array/>").events.empty());
}

TEST_F(EventsFile, NamesTheEventAndTheKeyOfAWrongType) {
  const auto propertyList = [](const std::string& key, const std::string& value) {
    return "<plist><array><dict/><dict><key>" + key + "</key>" + value + "</dict></array></plist>";
  };
  EXPECT_EQ(refusalOf(propertyList("eventEPGUniqueID", "<integer>1</integer>")),
            "event 2: \"eventEPGUniqueID\" is not a string");
  EXPECT_EQ(refusalOf(propertyList("eventEPGPlaybackUniqueID", "<true/>")),
            "event 2: \"eventEPGPlaybackUniqueID\" is not a string");
  EXPECT_EQ(refusalOf(propertyList("eventEPGStartDateTime", "<string>2001</string>")),
            "event 2: \"eventEPGStartDateTime\" is not a date");
  EXPECT_EQ(refusalOf(propertyList("eventEPGEndDateTime", "<real>1</real>")),
            "event 2: \"eventEPGEndDateTime\" is not a date");
  EXPECT_EQ(refusalOf("<plist><array><string>E1</string></array></plist>"), "event 1: not a dictionary");
  EXPECT_EQ(refusalOf("<plist><dict/></plist>"), "a property list, but not an array of events");
}

TEST_F(EventsFile, RefusesADateFarFromEveryYear) {
  // A binary property list: array of one dictionary { "eventEPGStartDateTime" = a date in 10^292 years }.
  const std::string farAway("\x33\x7E\x37\xE4\x3C\x88\x00\x75\x9C", 9);
  const std::string bytes = std::string("bplist00\xA1\x01\xD1\x02\x03\x5F\x10\x15") + "eventEPGStartDateTime" +
                            farAway + std::string("\x08\x0A\x0D\x25", 4) + std::string(6, '\0') + "\x01\x01" +
                            std::string(7, '\0') + "\x04" + std::string(8, '\0') + std::string(7, '\0') + "\x2E";
  EXPECT_EQ(refusalOf(bytes), "event 1: \"eventEPGStartDateTime\" is a date that no calendar has");
}

TEST_F(EventsFile, IsRefusedWithAPlaceWhereItIsNeitherForm) {
  EXPECT_THAT(refusalOf("<html/>"), HasSubstr("line 1, column 1: not an XMLTV guide, the root element is <html>"));
  EXPECT_THAT(refusalOf("{ events = (); }"), StartsWith("neither a property list nor an XMLTV guide: line 1"));
  EXPECT_THAT(refusalOf(""), StartsWith("neither a property list nor an XMLTV guide: line 1"));
  EXPECT_THAT(refusalOf("<plist><array>\n<date>today</date></array></plist>"), HasSubstr("line 2"));
  EXPECT_THAT(refusalOf("bplist00"), StartsWith("not a property list: "));
}

TEST_F(EventsFile, IsNamedWhereItCannotBeRead) { EXPECT_THROW(readSchedule(Environment::standard(), path()), Refusal); }

}  // namespace epg::test
