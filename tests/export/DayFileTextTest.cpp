// Whatever an operator types arrives at an XML reader as it was typed.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/DayFileOf.h"
#include "tests/support/DayFileReader.h"
#include "tests/support/Events.h"
#include "tests/support/RandomText.h"
#include "tests/support/TimeZone.h"

namespace epg::test {
namespace {

using testing::HasSubstr;
using testing::Not;

const char* const replacement = "\xEF\xBF\xBD";

class DayFileTextTest : public testing::Test {
 protected:
  static std::vector<EPGEvent> oneEvent() { return {eventAt("E", 1330905600)}; }

  static std::string bytesWith(const std::string& text) {
    const ItemsForDayFile items(Entries{{ZRLEPGDSTitleKey, text},
                                        {ZRLEPGDSDescriptionKey, text},
                                        {ZRLEPGDSImageURLKey, text},
                                        {ZRLEPGDSTagsKey, PropertyList::Array{text, text}}});
    const auto bytes = items.dayFile(oneEvent());
    EXPECT_TRUE(bytes);
    return bytes.value_or("");
  }

  /// Puts the text into every place and expects to read `read` there.
  static void expectRead(const std::string& text, const std::string& read) {
    const DayFile file = dayFileFrom(bytesWith(text));
    ASSERT_EQ(1U, file.programs.size());
    EXPECT_EQ(read, file.programs[0].title);
    EXPECT_EQ(read, file.programs[0].description);
    EXPECT_EQ(read, file.programs[0].imgUrl);
    EXPECT_EQ((std::vector<std::string>{read, read}), file.programs[0].tags);
  }
  static void expectReadAsTyped(const std::string& text) { expectRead(text, text); }

  TimeZone zone{"UTC"};
};

TEST_F(DayFileTextTest, ApostrophesAreReferences) {
  EXPECT_THAT(bytesWith("Kids' Corner"), HasSubstr("<title>Kids&#39; Corner</title>"));
  EXPECT_THAT(bytesWith("Kids' Corner"), HasSubstr("<description>Kids&#39; Corner</description>"));
  EXPECT_THAT(bytesWith("Kids' Corner"), HasSubstr("<imgUrl>Kids&#39; Corner</imgUrl>"));
  EXPECT_THAT(bytesWith("Kids' Corner"), HasSubstr("<tag>Kids&#39; Corner</tag>"));
  EXPECT_THAT(bytesWith("Kids' Corner"), Not(HasSubstr("'")));
  expectReadAsTyped("'Kids'' Corner'");
}

TEST_F(DayFileTextTest, AnAmpersandIsEscapedOnce) {
  EXPECT_THAT(bytesWith("Q&A"), HasSubstr("<title>Q&amp;A</title>"));
  EXPECT_THAT(bytesWith("Q&A"), HasSubstr("<tag>Q&amp;A</tag>"));
  expectReadAsTyped("Q&A && &");
}

TEST_F(DayFileTextTest, ALiteralReferenceStaysWhatWasTyped) {
  EXPECT_THAT(bytesWith("Kids&#39; Corner"), HasSubstr("<title>Kids&amp;#39; Corner</title>"));
  expectReadAsTyped("&#39; &amp;#39; &amp; &lt; &#x27; &apos; '&#39;'");
}

TEST_F(DayFileTextTest, MarkupIsText) {
  EXPECT_THAT(bytesWith("<b>"), HasSubstr("<title>&lt;b&gt;</title>"));
  expectReadAsTyped("</title><title>x</title> <!-- --> <![CDATA[ ]]> <?pi?> ]]> \"quoted\"");
}

TEST_F(DayFileTextTest, DoubleQuotesStandForThemselvesInText) {
  EXPECT_THAT(bytesWith("say \"so\""), HasSubstr("<title>say \"so\"</title>"));
}

TEST_F(DayFileTextTest, WhiteSpaceIsKept) {
  expectReadAsTyped(" ");
  expectReadAsTyped("\n");
  expectReadAsTyped("\t\n  two  spaces  \n\t");
  expectReadAsTyped("   leading and trailing   ");
}

TEST_F(DayFileTextTest, CarriageReturnsAreReferencesAndSurviveReading) {
  EXPECT_THAT(bytesWith("a\rb"), HasSubstr("<title>a&#13;b</title>"));
  expectReadAsTyped("a\rb\r\nc\n\rd\r");
}

TEST_F(DayFileTextTest, CharactersThatXMLCannotCarryAreWrittenAsTheReplacementCharacter) {
  for (std::uint32_t point = 0; point < 0x20; ++point) {
    if (isXMLCharacter(point)) continue;
    expectRead("a" + utf8(point) + "b", std::string("a") + replacement + "b");
  }
  expectRead(utf8(0xFFFE), replacement);
  expectRead(utf8(0xFFFF), replacement);
  expectRead(utf8(0xFFFE) + utf8(0xFFFF) + "\x01", std::string(replacement) + replacement + replacement);
}

TEST_F(DayFileTextTest, TheReplacementCharacterItselfIsKept) { expectReadAsTyped(replacement); }

TEST_F(DayFileTextTest, CharactersThatOnlyLookForbiddenAreKept) {
  for (const std::uint32_t point : {0x7FU, 0x80U, 0x85U, 0x9FU, 0xA0U, 0xADU, 0x2028U, 0x2029U, 0xFDD0U, 0xFEFFU,
                                    0xFFFDU, 0xFFBEU, 0x1FFFEU, 0x1FFFFU, 0x10FFFEU, 0x10FFFFU}) {
    expectReadAsTyped("a" + utf8(point) + "b");
    expectReadAsTyped(utf8(point));
  }
}

TEST_F(DayFileTextTest, OtherQuotationMarksAreNoApostrophes) {
  EXPECT_THAT(bytesWith("\xE2\x80\x99"), HasSubstr("<title>\xE2\x80\x99</title>"));
  EXPECT_THAT(bytesWith("`\xC2\xB4"), HasSubstr("<title>`\xC2\xB4</title>"));
}

TEST_F(DayFileTextTest, UnicodeIsNeitherComposedNorDecomposed) {
  expectReadAsTyped("Caf\xC3\xA9 and Cafe\xCC\x81");
  expectReadAsTyped("\xE2\x84\xAB \xC3\x85 A\xCC\x8A");  // Three ways to write one letter.
  expectReadAsTyped("👩‍👩‍👧 🇳🇴 שלום مرحبا 日本語 𝔘𝔫𝔦");
}

TEST_F(DayFileTextTest, EveryCharacterOfEveryPlaneIsReadBack) {
  for (std::uint32_t start = 0; start <= 0x10FFFF; start += 0x4000) {
    std::string typed;
    std::string read;
    for (std::uint32_t point = start; point < start + 0x4000; ++point) {
      if (point >= 0xD800 && point <= 0xDFFF) continue;  // Surrogates have no form in UTF-8.
      typed += utf8(point);
      read += isXMLCharacter(point) ? utf8(point) : replacement;
    }
    const ItemsForDayFile items(Entries{{ZRLEPGDSTitleKey, typed}});
    const auto bytes = items.dayFile(oneEvent());
    ASSERT_TRUE(bytes) << std::hex << start;
    const DayFile file = dayFileFrom(*bytes);
    ASSERT_EQ(1U, file.programs.size());
    EXPECT_TRUE(read == file.programs[0].title) << "in the range from " << std::hex << start;
  }
}

TEST_F(DayFileTextTest, ATitleOfMegabytesIsReadBack) {
  std::string title;
  while (title.size() < 8U << 20) title += "O'Brien & Söhne <live> \r\n";
  const ItemsForDayFile items(Entries{{ZRLEPGDSTitleKey, title}});
  const auto bytes = items.dayFile(oneEvent());
  ASSERT_TRUE(bytes);
  const DayFile file = dayFileFrom(*bytes);
  ASSERT_EQ(1U, file.programs.size());
  EXPECT_TRUE(title == file.programs[0].title);
}

/// Sequences that are no UTF-8, each for a reason of its own.
const std::vector<std::string> notUTF8 = {
    "\xFF",              // no byte of UTF-8
    "caf\xE9",           // a letter of another encoding
    "\x80",              // a continuation without a beginning
    "\xC3",              // cut off
    "\xE2\x82",          // cut off
    "\xF0\x9F\x98",      // cut off
    "\xC0\xAF",          // longer than needed
    "\xE0\x80\xA7",      // an apostrophe, longer than needed
    "\xED\xA0\x80",      // a surrogate
    "\xED\xB0\x80",      // the other surrogate
    "\xF4\x90\x80\x80",  // beyond the last character
    "a\xC3(b",           // a beginning without its continuation
};

TEST_F(DayFileTextTest, TextThatIsNotUTF8GivesNoFile) {
  for (const std::string& text : notUTF8) {
    EXPECT_FALSE(ItemsForDayFile(Entries{{ZRLEPGDSTitleKey, text}}).dayFile(oneEvent()))
        << testing::PrintToString(text);
    EXPECT_FALSE(ItemsForDayFile(Entries{{ZRLEPGDSDescriptionKey, "good " + text}}).dayFile(oneEvent()));
    EXPECT_FALSE(ItemsForDayFile(Entries{{ZRLEPGDSImageURLKey, text + " good"}}).dayFile(oneEvent()));
    EXPECT_FALSE(ItemsForDayFile(Entries{{ZRLEPGDSTagsKey, PropertyList::Array{"good", text}}}).dayFile(oneEvent()));
  }
}

TEST_F(DayFileTextTest, OneBadTextAmongManyEventsGivesNoFile) {
  ItemsForDayFile items(Entries{{ZRLEPGDSTitleKey, "good"}});
  items.add("bad", {{ZRLEPGDSTitleKey, "\xFF"}});
  std::vector<EPGEvent> events(100, eventAt("E", 0));
  EXPECT_TRUE(items.dayFile(events));
  events[50] = eventAt("bad", 0);
  EXPECT_FALSE(items.dayFile(events));
}

TEST_F(DayFileTextTest, BadTextThatIsNotWrittenDoesNoHarm) {
  ItemsForDayFile items(Entries{{ZRLEPGDSTitleKey, "good"}, {"note", "\xFF"}, {ZRLEPGDSUniqueIDKey, "\xFF"}});
  items.add("bad", {{ZRLEPGDSTitleKey, "\xFF"}});
  items.add("\xFF", {{ZRLEPGDSTitleKey, "an ID of other bytes"}});
  EXPECT_TRUE(items.dayFile({eventAt("E", 0), withPlaybackID(eventAt("\xFF", 0), "\xFF")}));
}

}  // namespace
}  // namespace epg::test
