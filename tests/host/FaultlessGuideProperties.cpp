// The quick way to read a guide against the thorough one.

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/guide/EPGUniqueID.h"
#include "host/guide/FaultlessGuide.h"
#include "host/terminal/Refusal.h"
#include "tests/host/WholeGuide.h"
#include "tests/support/HostileText.h"
#include "tests/support/Property.h"

namespace epg::test {

namespace {

/// What tells one programme from another.
std::string told(const XMLTVProgramme& programme) {
  std::string text = playbackUniqueID(programme) + " " + epgUniqueID(programme) + " ";
  text += programme.stop ? std::to_string(programme.stop->unixTime()) : "-";
  return text + " " + programme.clumpIndex + " " + std::to_string(programme.unusableElements.size());
}

using Programmes = std::vector<std::string>;

/// Nothing when that is left to the thorough way.
std::optional<Programmes> readQuickly(const std::string& bytes, std::size_t chunkSize, std::size_t parts) {
  std::vector<Programmes> programmes(parts);
  std::vector<ProgrammeTaker> takers;
  takers.reserve(parts);
  for (Programmes& part : programmes) {
    takers.emplace_back([&part](const XMLTVProgramme& programme) { part.push_back(told(programme)); });
  }
  if (!parseFaultlessGuide(bytes, takers, chunkSize)) return std::nullopt;
  Programmes read;
  for (const Programmes& part : programmes) read.insert(read.end(), part.begin(), part.end());
  return read;
}

/// Nothing when there is anything to tell.
std::optional<Programmes> readThoroughly(const std::string& bytes) {
  try {
    const WholeGuide guide = wholeGuide(bytes);
    if (!guide.warnings.empty()) return std::nullopt;
    Programmes read;
    for (const XMLTVProgramme& programme : guide.programmes) read.push_back(told(programme));
    return read;
  } catch (const Refusal&) {
    return std::nullopt;
  }
}

std::string programme(const std::string& title) {
  return "<programme start='2012' channel='c'><title>" + title + "</title></programme>";
}

std::optional<std::size_t> programmesReadQuickly(const std::string& bytes, std::size_t chunkSize = 50) {
  const auto read = readQuickly(bytes, chunkSize, 1);
  return read ? std::optional<std::size_t>(read->size()) : std::nullopt;
}

TEST(FaultlessGuide, IsReadInAnyNumberOfPiecesAndParts) {
  std::string guide = "\xEF\xBB\xBF<?xml version='1.0'?>\n<!DOCTYPE tv SYSTEM 'xmltv.dtd'>\n<tv date='2012'>\n";
  guide += "<channel id='c'><display-name>first</display-name></channel>\n";
  for (int i = 0; i < 50; ++i) guide += programme("Part " + std::to_string(i)) + "<!-- \xC3\xA9 -->\n";
  guide += "<channel id='c'><display-name>last</display-name></channel><channel id='d'/>\n</tv>\n<!-- end -->\n";
  const auto whole = readThoroughly(guide);
  ASSERT_TRUE(whole);
  ASSERT_EQ(whole->size(), 50U);
  for (const std::size_t chunkSize : {std::size_t{50}, std::size_t{100}, std::size_t{1000}, guide.size()}) {
    for (const std::size_t parts : {1U, 2U, 3U, 7U, 200U}) EXPECT_EQ(readQuickly(guide, chunkSize, parts), whole);
  }
}

// The parts' sizes hardly ever add up to the whole: what is left over belongs to the last one.
TEST(FaultlessGuide, IsReadToItsEndInAnyNumberOfParts) {
  std::string guide = "<tv>";
  for (int i = 0; i < 40; ++i) guide += programme("Part " + std::to_string(i)) + "\n";
  for (const char* const end : {"", "</tv>", "</tv>x", "<programme start='2012'><title>A</title></programme></tv>"}) {
    const auto whole = readThoroughly(guide + end);
    for (std::size_t parts = 1; parts < 140; parts += parts < 20 ? 1 : 12) {
      ASSERT_EQ(readQuickly(guide + end, 1000, parts), whole) << parts;
    }
  }
}

TEST(FaultlessGuide, IsNotReadForNobody) { EXPECT_FALSE(parseFaultlessGuide("<tv/>", {})); }

TEST(FaultlessGuide, IsLeftToTheThoroughWayWhereItDoesNotComeToPieces) {
  const std::string guide = "<tv>" + std::string(1000, ' ') + programme("A") + "</tv>";
  EXPECT_FALSE(readQuickly(guide, 10, 1));
  EXPECT_TRUE(readQuickly(guide, 100, 1));
}

TEST(FaultlessGuide, MayHaveNoProgramme) {
  EXPECT_EQ(programmesReadQuickly("<tv/>"), 0U);
  EXPECT_EQ(programmesReadQuickly("<tv></tv>"), 0U);
}

TEST(FaultlessGuide, IsNoneWithAnythingToTell) {
  const std::string good = programme("A");
  EXPECT_EQ(programmesReadQuickly("<tv>" + good + good + "</tv>"), 2U);
  for (const char* const bad :
       {"<programme start='never'><title>B</title></programme>", "<programme start='2012'></programme>",
        "<programme start='2012'><title>&unknown;</title></programme>", "<a b='1' b='2'/>", "<a b='<'/>", "<a>",
        "</tv>", "\xFF", "<![CDATA["}) {
    EXPECT_FALSE(programmesReadQuickly(joined({"<tv>", good, bad, good, "</tv>"}))) << bad;
  }
  EXPECT_FALSE(programmesReadQuickly("<guide>" + good + "</guide>"));
  EXPECT_FALSE(programmesReadQuickly("<tv>" + good + "</tv><tv>" + good + "</tv>"));
  EXPECT_FALSE(programmesReadQuickly("<tv>" + good + "</tv>" + good));
  EXPECT_FALSE(programmesReadQuickly("<tv><tv>" + good + "</tv>" + good + "</tv></tv>"));
  EXPECT_FALSE(programmesReadQuickly("<tv>" + good + std::string(1, '\0') + good + "</tv>"));
}

TEST(FaultlessGuide, IsNoneInAnotherEncoding) {
  const std::string declaration = "<?xml version='1.0' encoding='ISO-8859-1'?>";
  EXPECT_FALSE(programmesReadQuickly(declaration + "<tv>" + programme("\xC3\xA9") + programme("B") + "</tv>"));
}

// Ends of programmes that are none: each of these guides is good, and must not be taken to pieces there.
TEST(FaultlessGuide, IsNotTakenApartInsideOfAnythingElse) {
  const std::string good = programme("A");
  for (const std::string& around :
       {"<!-- " + good + " -->", "<?p " + good + " ?>", "<a><![CDATA[" + good + "]]></a>", "<a>" + good + "</a>",
        "<programme start='2013'><title>B</title>" + good + "</programme>"}) {
    const std::string guide = joined({"<tv>", good, around, good, "</tv>"});
    const auto whole = readThoroughly(guide);
    ASSERT_TRUE(whole) << guide;
    for (const std::size_t chunkSize : {20U, 40U, 80U, 100U, 120U, 1000U}) {
      const auto read = readQuickly(guide, chunkSize, 1);
      EXPECT_TRUE(!read || read == whole) << guide;
    }
    EXPECT_EQ(readQuickly(guide, guide.size(), 1), whole);
  }
}

/// A piece of a guide in which there is nothing to tell.
std::string wholePiece() {
  static const std::vector<std::string> pieces = {
      programme("A"),
      programme("C &amp; D"),
      "<programme start='2014' stop='2015'><title>Caf\xC3\xA9</title><category>x</category></programme>",
      "<channel id='c'><display-name>C</display-name></channel>",
      "<channel id='c'><display-name>D</display-name></channel>",
      "<a b=''>text</a>",
      "<!-- </programme> -->",
      "<a><![CDATA[</programme>]]></a>",
      "<?p </programme> ?>",
      "\n"};
  return oneOf(pieces);
}

/// A piece with which a guide is broken, as a rule.
std::string brokenPiece() {
  static const std::vector<std::string> pieces = {"<programme start='2014'><title>G</title>",
                                                  "</programme>",
                                                  "</programme >",
                                                  "<title>",
                                                  "</title>",
                                                  "<tv>",
                                                  "</tv>",
                                                  "<!--",
                                                  "-->",
                                                  "<![CDATA[",
                                                  "]]>",
                                                  "<?p",
                                                  "?>",
                                                  "<a b='",
                                                  "'/>",
                                                  "<!DOCTYPE tv [",
                                                  "]>",
                                                  "&amp;",
                                                  "&x;",
                                                  "<",
                                                  ">",
                                                  "text",
                                                  "\xC3",
                                                  std::string(1, '\0'),
                                                  "<programme start='0'/>",
                                                  "<?xml version='1.0'?>"};
  return oneOf(pieces);
}

TEST(FaultlessGuide, IsReadAsTheThoroughWayReadsItOrNotAtAll) {
  int tried = 0;
  int faultless = 0;
  int read = 0;
  expectForCases(3 * usualCases, [&] {
    const bool mayBeBroken = onceIn(4);
    std::string guide =
        joined(upTo(sizeOfCase(), [&] { return mayBeBroken && onceIn(3) ? brokenPiece() : wholePiece(); }));
    if (!mayBeBroken || !onceIn(8)) guide = "<tv>" + guide + "</tv>";
    tell("guide", guide);
    const std::size_t chunkSize = 1 + below(299);
    const std::size_t parts = 1 + below(3);
    tell("size of a piece", chunkSize);
    tell("parts", parts);
    const auto quickly = readQuickly(guide, chunkSize, parts);
    const auto thoroughly = readThoroughly(guide);
    HOLDS(mayBeBroken || thoroughly.has_value());
    if (quickly) HOLDS(quickly == thoroughly);
    ++tried;
    faultless += thoroughly ? 1 : 0;
    read += quickly ? 1 : 0;
  });
  // Or else the two would hardly ever have been compared.
  EXPECT_GE(faultless, tried / 2);
  EXPECT_GE(read, tried / 5);
}

TEST(FaultlessGuide, IsReadWhereverItsProgrammesEnd) {
  expectForCases(usualCases, [] {
    std::string guide = "<tv>";
    for (Times programmes(0, sizeOfCase()); programmes.next();) {
      guide += programme(oneTextOf({"A", "B", "C", "&lt;"}));
      guide += oneTextOf({"", "\n", "<!-- -->"});
    }
    guide += "</tv>";
    tell("guide", guide);
    const auto whole = readThoroughly(guide);
    HOLDS(whole.has_value());
    const std::size_t chunkSize = 20 + below(280);
    const std::size_t parts = 1 + below(3);
    tell("size of a piece", chunkSize);
    tell("parts", parts);
    HOLDS(readQuickly(guide, chunkSize, parts) == whole);
  });
}

}  // namespace
}  // namespace epg::test
