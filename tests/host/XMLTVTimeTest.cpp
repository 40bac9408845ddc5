#include "host/guide/XMLTVTime.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace epg::test {

namespace {

/// Seconds since 1970; nothing when the time is refused.
std::optional<std::int64_t> unixTime(const std::string& text) {
  std::string problem;
  const std::optional<Instant> instant = instantFromXMLTVTime(text, &problem);
  EXPECT_EQ(problem.empty(), instant.has_value()) << text << ": " << problem;
  if (!instant) return std::nullopt;
  return static_cast<std::int64_t>(instant->unixTime());
}

std::string problemWith(const std::string& text) {
  std::string problem;
  EXPECT_FALSE(instantFromXMLTVTime(text, &problem)) << text;
  return problem;
}

constexpr std::int64_t hour = 3600;

}  // namespace

TEST(XMLTVTime, WithoutAZoneIsUTC) {
  EXPECT_EQ(unixTime("19700101000000"), 0);
  EXPECT_EQ(unixTime("20010829000500"), 999043500);
}

TEST(XMLTVTime, MayStopAfterEachField) {
  EXPECT_EQ(unixTime("2002"), unixTime("20020101000000"));
  EXPECT_EQ(unixTime("200209"), unixTime("20020901000000"));
  EXPECT_EQ(unixTime("20020915"), unixTime("20020915000000"));
  EXPECT_EQ(unixTime("2002091517"), unixTime("20020915170000"));
  EXPECT_EQ(unixTime("200209151733"), unixTime("20020915173300"));
}

TEST(XMLTVTime, MayNotStopInsideAField) {
  for (const char* text : {"", "2", "20", "200", "20020", "2002091", "200209151", "20020915173", "2002091517330"}) {
    EXPECT_FALSE(unixTime(text)) << text;
  }
}

TEST(XMLTVTime, HasAnOffsetInHoursAndMinutes) {
  EXPECT_EQ(unixTime("19880523083000 +0300"), *unixTime("19880523083000") - 3 * hour);
  EXPECT_EQ(unixTime("20030512233500 -0400"), *unixTime("20030512233500") + 4 * hour);
  EXPECT_EQ(unixTime("20030512233500 +0545"), *unixTime("20030512233500") - 5 * hour - 45 * 60);
  EXPECT_EQ(unixTime("20030512233500 -0330"), *unixTime("20030512233500") + 3 * hour + 30 * 60);
  EXPECT_EQ(unixTime("20030512233500 +1400"), *unixTime("20030512233500") - 14 * hour);
  EXPECT_EQ(unixTime("200305122335+0100"), *unixTime("20030512233500") - hour);
}

TEST(XMLTVTime, HasAZoneAlsoWhereTheTimeIsShort) {
  EXPECT_EQ(unixTime("20020915 +0200"), *unixTime("20020915") - 2 * hour);
  EXPECT_EQ(unixTime("200007281733 BST"), *unixTime("20000728173300") - hour);
}

TEST(XMLTVTime, KnowsTheUsualZoneNames) {
  const std::int64_t utc = *unixTime("20010829120000");
  const std::pair<const char*, double> zones[] = {
      {"Z", 0},     {"UTC", 0},  {"GMT", 0},    {"WET", 0},   {"WEST", 1},  {"BST", 1},    {"CET", 1},    {"CEST", 2},
      {"MET", 1},   {"MEST", 2}, {"EET", 2},    {"EEST", 3},  {"MSK", 3},   {"NST", -3.5}, {"NDT", -2.5}, {"EST", -5},
      {"EDT", -4},  {"CST", -6}, {"CDT", -5},   {"MST", -7},  {"MDT", -6},  {"PST", -8},   {"PDT", -7},   {"AKST", -9},
      {"HST", -10}, {"AWST", 8}, {"ACST", 9.5}, {"AEST", 10}, {"AEDT", 11}, {"NZST", 12},  {"NZDT", 13},  {"JST", 9}};
  for (const auto& [name, hours] : zones) {
    EXPECT_EQ(unixTime(std::string("20010829120000 ") + name), utc - static_cast<std::int64_t>(hours * 3600)) << name;
  }
  EXPECT_EQ(unixTime("20010829120000 bst"), utc - hour);
  EXPECT_EQ(unixTime("20010829120000Z"), utc);
}

TEST(XMLTVTime, RefusesZoneNamesThatMeanSeveralZonesOrNone) {
  for (const char* name : {"IST", "AST", "XYZ", "Europe/Berlin", "UTC+1"}) {
    const std::string problem = problemWith(std::string("20010829120000 ") + name);
    EXPECT_NE(problem.find(name), std::string::npos) << problem;
  }
}

TEST(XMLTVTime, RefusesOffsetsThatNoPlaceHas) {
  for (const char* offset : {"+1401", "-1500", "+0160", "+01", "+100", "+01:00", "+", "-", "++100", "+01000"}) {
    EXPECT_FALSE(unixTime(std::string("20010829120000 ") + offset)) << offset;
  }
}

TEST(XMLTVTime, RefusesDaysAndTimesThatTheCalendarLacks) {
  for (const char* text : {"20010230", "20010229", "19000229", "20010431", "20010000", "20011301", "20010100",
                           "20010132", "2001010124", "200101012360", "20010101235961", "0000"}) {
    EXPECT_FALSE(unixTime(text)) << text;
  }
}

TEST(XMLTVTime, KnowsLeapDays) {
  EXPECT_EQ(*unixTime("20000301") - *unixTime("20000229"), 24 * hour);
  EXPECT_EQ(*unixTime("20040301") - *unixTime("20040228"), 48 * hour);
}

TEST(XMLTVTime, CountsALeapSecondAsTheNextMinute) {
  EXPECT_EQ(unixTime("20161231235960"), unixTime("20170101000000"));
  EXPECT_EQ(unixTime("20170101005960 +0100"), unixTime("20170101000000"));
}

TEST(XMLTVTime, ReachesFarBeyondWhat32BitsCount) {
  EXPECT_EQ(unixTime("20380119031408"), std::int64_t{1} << 31);
  EXPECT_EQ(unixTime("19011213204551"), -(std::int64_t{1} << 31) - 1);
  EXPECT_EQ(unixTime("99991231235959"), 253402300799);
  EXPECT_EQ(unixTime("0001"), -62135596800);
}

TEST(XMLTVTime, PassesOverWhiteSpaceAround) {
  EXPECT_EQ(unixTime("  20010829000500\tBST\n"), unixTime("20010829000500 BST"));
}

TEST(XMLTVTime, RefusesAnythingElse) {
  for (const char* text :
       {"tomorrow", "2001-08-29", "2001 08 29", "-2001", "+2001", "20010829T0005", "\xD9\xA2\xD9\xA0"}) {
    EXPECT_FALSE(unixTime(text)) << text;
  }
}

TEST(XMLTVTime, IsWrittenInUTC) {
  std::string problem;
  EXPECT_EQ(xmltvTimeInUTC(*instantFromXMLTVTime("20010829000500 BST", &problem)), "20010828230500");
  EXPECT_EQ(xmltvTimeInUTC(*instantFromXMLTVTime("19690720201740", &problem)), "19690720201740");
}

}  // namespace epg::test
