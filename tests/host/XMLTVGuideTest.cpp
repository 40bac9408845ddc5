#include "host/guide/XMLTVGuide.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/guide/InputFile.h"
#include "host/guide/XMLTVTime.h"
#include "platform/Environment.h"
#include "tests/host/GzipData.h"
#include "tests/host/RefusalOf.h"
#include "tests/host/WholeGuide.h"
#include "tests/support/TemporaryFolder.h"

namespace epg::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

WholeGuide guide(const std::string& elements) { return wholeGuide("<tv>" + elements + "</tv>"); }

/// The one programme of a guide that holds only it; `content` goes behind a title.
XMLTVProgramme programmeWith(const std::string& content) {
  WholeGuide only = guide("<programme start='2001' channel='c'><title>T</title>" + content + "</programme>");
  EXPECT_THAT(only.warnings, IsEmpty());
  return only.programmes.empty() ? XMLTVProgramme() : only.programmes.front();
}

std::string guideRefusal(const std::string& bytes) {
  return refusalOf([&] { wholeGuide(bytes); });
}

Instant instant(const std::string& time) {
  std::string problem;
  return instantFromXMLTVTime(time, &problem).value_or(Instant());
}

}  // namespace

TEST(XMLTVGuide, GivesEverythingThatBecomesMetadata) {
  const WholeGuide all = guide(
      "<channel id='one'><display-name> Channel One </display-name><display-name>1</display-name></channel>"
      "<channel id='two'><display-name> </display-name></channel>"
      "<programme start='20261114233000 +0100' stop='20261115013000 +0100' channel='one' clumpidx='0/2'>"
      "<title lang='en'>Night &amp; Day</title><title>Nuit</title><sub-title>Part</sub-title><desc>What happens.</desc>"
      "<category>Movie</category><icon src='http://i/1.png'/><episode-num system='xmltv_ns'>0 . 1 .</episode-num>"
      "<episode-num>S1E2</episode-num></programme>");
  ASSERT_EQ(all.programmes.size(), 1U);
  EXPECT_THAT(all.warnings, IsEmpty());
  EXPECT_THAT(all.channelNames, ElementsAre(std::make_pair("one", "Channel One")));
  const XMLTVProgramme& programme = all.programmes[0];
  EXPECT_EQ(programme.channel, "one");
  EXPECT_EQ(programme.start, instant("20261114223000"));
  EXPECT_EQ(programme.stop, instant("20261115003000"));
  EXPECT_EQ(programme.clumpIndex, "0/2");
  EXPECT_EQ(programme.title, "Night & Day");
  EXPECT_EQ(programme.description, "What happens.");
  EXPECT_EQ(programme.imageURL, "http://i/1.png");
  EXPECT_THAT(programme.categories, ElementsAre("Movie"));
  EXPECT_THAT(programme.subTitles, ElementsAre("Part"));
  ASSERT_EQ(programme.episodeNumbers.size(), 2U);
  EXPECT_EQ(programme.episodeNumbers[0].system, "xmltv_ns");
  EXPECT_EQ(programme.episodeNumbers[0].text, "0 . 1 .");
  EXPECT_EQ(programme.episodeNumbers[1].system, "onscreen");
  EXPECT_EQ(programme.episodeNumbers[1].text, "S1E2");
}

TEST(XMLTVGuide, LeavesAbsentWhatItDoesNotTell) {
  const XMLTVProgramme programme = programmeWith("");
  EXPECT_EQ(programme.description, std::nullopt);
  EXPECT_EQ(programme.imageURL, std::nullopt);
  EXPECT_EQ(programme.stop, std::nullopt);
  EXPECT_EQ(programme.clumpIndex, "0/1");
  EXPECT_THAT(programme.categories, IsEmpty());
}

TEST(XMLTVGuide, TakesTheFirstTextThatIsNotEmpty) {
  const WholeGuide texts = guide(
      "<programme start='2001' channel='c'><title/><title> \n </title><title>Second</title><title>Third</title>"
      "<desc></desc><desc>Text</desc><desc>Other</desc><icon/><icon src=' '/><icon src='a'/><icon src='b'/>"
      "</programme>");
  ASSERT_EQ(texts.programmes.size(), 1U);
  EXPECT_EQ(texts.programmes[0].title, "Second");
  EXPECT_EQ(texts.programmes[0].description, "Text");
  EXPECT_EQ(texts.programmes[0].imageURL, "a");
}

TEST(XMLTVGuide, StripsTheEndsOfATextAndKeepsItsInside) {
  EXPECT_EQ(programmeWith("<desc>\n   Two  spaces,\n   and a line.\t\n </desc>").description,
            "Two  spaces,\n   and a line.");
  EXPECT_EQ(programmeWith("<desc>\xC2\xA0kept\xC2\xA0</desc>").description, "\xC2\xA0kept\xC2\xA0");
}

TEST(XMLTVGuide, GivesTheSameTextHoweverItsEndsAreWritten) {
  for (const char* desc : {"<desc>  Bla.\n    </desc>", "<desc>\nBla.</desc>", "<desc>Bla.</desc>",
                           "<desc><![CDATA[ Bla. ]]></desc>", "<desc>&#32;Bla.&#10;</desc>"}) {
    EXPECT_EQ(programmeWith(desc).description, "Bla.") << desc;
  }
}

TEST(XMLTVGuide, ResolvesReferencesOnce) {
  EXPECT_EQ(programmeWith("<desc>&amp; &lt;b&gt; &amp;amp; &#39;&#x41;&apos;</desc>").description, "& <b> &amp; 'A'");
}

TEST(XMLTVGuide, GivesEachCategoryOnceInItsOrder) {
  EXPECT_THAT(programmeWith("<category>b</category><category>a</category><category> b </category><category/>"
                            "<category>B</category><category>a</category>")
                  .categories,
              ElementsAre("b", "a", "B"));
}

TEST(XMLTVGuide, GivesEachCategoryOnceHoweverManyThereAre) {
  for (const int different : {2, 7, 8, 9, 1000}) {
    std::string categories;
    std::vector<std::string> expected;
    for (int i = 0; i < 2 * different; ++i) {
      const std::string text = "Category " + std::to_string(i * 7 % different);
      categories += "<category>" + text + "</category>";
      if (std::find(expected.begin(), expected.end(), text) == expected.end()) expected.push_back(text);
    }
    EXPECT_EQ(programmeWith(categories).categories, expected) << different;
  }
}

TEST(XMLTVGuide, CountsOnlyAnElementsOwnText) {
  EXPECT_EQ(programmeWith("<desc>Bobby tours. <x-note>inside</x-note></desc>").description, "Bobby tours.");
}

TEST(XMLTVGuide, PassesOverWhatItDoesNotKnow) {
  const WholeGuide extended = guide(
      "<x-random><programme start='2001'><title>Not this</title></programme></x-random>"
      "<programme start='2001' channel='c' x-foo='bar'><x-extra>No</x-extra><title>T</title><credits><actor>A</actor>"
      "</credits></programme><x-whatever/>");
  ASSERT_EQ(extended.programmes.size(), 1U);
  EXPECT_EQ(extended.programmes[0].title, "T");
  EXPECT_THAT(extended.warnings, IsEmpty());
}

TEST(XMLTVGuide, TakesNoProcessingInstructionForAnElement) {
  const WholeGuide read = guide(
      "<?programme p?><?channel c?><channel id='c'><?display-name d?></channel>"
      "<programme start='2001'><?title t?><title>T</title><?category c?></programme>");
  EXPECT_THAT(read.warnings, IsEmpty());
  EXPECT_THAT(read.channelNames, IsEmpty());
  ASSERT_EQ(read.programmes.size(), 1U);
  EXPECT_EQ(read.programmes[0].title, "T");
  EXPECT_THAT(read.programmes[0].categories, IsEmpty());
}

TEST(XMLTVGuide, MayBeEmpty) {
  EXPECT_THAT(guide("").programmes, IsEmpty());
  EXPECT_THAT(wholeGuide("<tv/>").programmes, IsEmpty());
}

TEST(XMLTVGuide, SkipsAProgrammeWithoutTitleAndNamesItsPlace) {
  const WholeGuide texts =
      guide("\n  <programme start='2001'><desc>D</desc></programme>\n\n <programme start='2001'/>");
  EXPECT_THAT(texts.programmes, IsEmpty());
  EXPECT_THAT(texts.warnings, ElementsAre("guide.xml: line 2, column 3: programme skipped: it has no title",
                                          "guide.xml: line 4, column 2: programme skipped: it has no title"));
}

TEST(XMLTVGuide, SkipsAProgrammeWithoutAValidStart) {
  const WholeGuide texts = guide(
      "<programme><title>T</title></programme><programme start=' '><title>T</title></programme>"
      "<programme start='20010230'><title>T</title></programme>"
      "<programme start='20010203 IST'><title>T</title></programme><programme "
      "start='2001'><title>T</title></programme>");
  EXPECT_EQ(texts.programmes.size(), 1U);
  EXPECT_THAT(texts.warnings, ElementsAre(HasSubstr("skipped: it has no start"), HasSubstr("skipped: it has no start"),
                                          HasSubstr("skipped: its start cannot be used: \"20010230\" is no time"),
                                          HasSubstr("the time zone \"IST\" is unknown or ambiguous")));
}

TEST(XMLTVGuide, CountsAnUnusableStopAsAbsentAndSaysSo) {
  const WholeGuide texts = guide(
      "<programme start='2001' stop='later'><title>T</title></programme>"
      "<programme start='2001' stop=''><title>T</title></programme>");
  ASSERT_EQ(texts.programmes.size(), 2U);
  EXPECT_EQ(texts.programmes[0].stop, std::nullopt);
  EXPECT_EQ(texts.programmes[1].stop, std::nullopt);
  EXPECT_THAT(texts.warnings,
              ElementsAre(AllOf(StartsWith("guide.xml: line 1, column 5: stop left out: "), HasSubstr("\"later\"")),
                          HasSubstr("stop left out")));
}

TEST(XMLTVGuide, SkipsAProgrammeWithAReferenceThatStandsForNoCharacter) {
  const WholeGuide texts = guide(
      "<programme start='2001'><title>Caf&eacute;</title></programme>\n"
      "<programme start='20&nope;01'><title>T</title></programme>\n"
      "<programme start='2001' channel='a&nope;b'><title>T</title></programme>\n"
      "<programme start='2001'><title>Whole</title></programme>");
  ASSERT_EQ(texts.programmes.size(), 1U);
  EXPECT_EQ(texts.programmes[0].title, "Whole");
  EXPECT_THAT(texts.warnings,
              ElementsAre(AllOf(HasSubstr("line 1, column 5: programme skipped"), HasSubstr("&eacute;")),
                          AllOf(HasSubstr("line 2, column 1: programme skipped"), HasSubstr("&nope;")),
                          AllOf(HasSubstr("line 3, column 1: programme skipped"), HasSubstr("&nope;"))));
}

TEST(XMLTVGuide, LeavesOutOnlyTheValueThatAProgrammeCanDoWithout) {
  const WholeGuide texts = guide(
      "\n<programme start='2001' stop='20&a;02' clumpidx='&b;' channel='c'><title>T</title>\n"
      "<desc>&c;</desc><desc>Second</desc>\n<icon src='&d;'/>\n<category>&e;</category><category>News</category>\n"
      "<sub-title>&f;</sub-title>\n<episode-num>&g;</episode-num><episode-num system='&h;'>1</episode-num>"
      "</programme>");
  ASSERT_EQ(texts.programmes.size(), 1U);
  const XMLTVProgramme& programme = texts.programmes[0];
  EXPECT_EQ(programme.title, "T");
  EXPECT_EQ(programme.channel, "c");
  EXPECT_EQ(programme.stop, std::nullopt);
  EXPECT_EQ(programme.clumpIndex, "0/1");
  EXPECT_EQ(programme.description, "Second");
  EXPECT_EQ(programme.imageURL, std::nullopt);
  EXPECT_THAT(programme.categories, ElementsAre("News"));
  EXPECT_THAT(programme.subTitles, IsEmpty());
  EXPECT_THAT(programme.episodeNumbers, IsEmpty());
  EXPECT_THAT(
      programme.unusableElements,
      ElementsAre("<desc>&c;</desc>", "<icon src=\"&d;\"/>", "<category>&e;</category>", "<sub-title>&f;</sub-title>",
                  "<episode-num>&g;</episode-num>", "<episode-num system=\"&h;\">1</episode-num>"));
  const std::string place = "guide.xml: line 2, column 1: ";
  EXPECT_THAT(
      texts.warnings,
      testing::UnorderedElementsAre(
          place +
              "stop left out: line 2, column 1: the reference &a; in the attribute \"stop\" stands for no character",
          place + "clumpidx left out: line 2, column 1: the reference &b; in the attribute \"clumpidx\" stands for no "
                  "character",
          place + "desc left out: line 3, column 7: the reference &c; stands for no character",
          place + "icon left out: line 4, column 1: the reference &d; in the attribute \"src\" stands for no character",
          place + "category left out: line 5, column 11: the reference &e; stands for no character",
          place + "sub-title left out: line 6, column 12: the reference &f; stands for no character",
          place + "episode-num left out: line 7, column 14: the reference &g; stands for no character",
          place + "episode-num left out: line 7, column 31: the reference &h; in the attribute \"system\" stands for "
                  "no character"));
}

TEST(XMLTVGuide, ExpandsNoEntityThatItDeclaresItself) {
  std::string bomb = "<?xml version='1.0'?><!DOCTYPE tv [<!ENTITY a0 'ha'>";
  for (int i = 1; i < 30; ++i) {
    const std::string before = "&a" + std::to_string(i - 1) + ";";
    bomb.append("<!ENTITY a").append(std::to_string(i)).append(" '").append(before).append(before).append("'>");
  }
  bomb += "]><tv><programme start='2001'><title>&a29;</title></programme></tv>";
  const WholeGuide texts = wholeGuide(bomb);
  EXPECT_THAT(texts.programmes, IsEmpty());
  EXPECT_THAT(texts.warnings, ElementsAre(HasSubstr("&a29;")));
}

TEST(XMLTVGuide, IsReadInTheEncodingThatItDeclares) {
  const std::string rest = "<tv><programme start='2001'><title>";
  const std::string end = "</title></programme></tv>";
  const std::pair<std::string, std::string> cases[] = {
      {"<?xml version='1.0' encoding='UTF-8'?>" + rest + "Cr\xC3\xA8me \xE2\x82\xAC" + end, "Crème €"},
      {"\xEF\xBB\xBF" + rest + "Cr\xC3\xA8me" + end, "Crème"},
      {"<?xml version='1.0' encoding='ISO-8859-1'?>" + rest + "Cr\xE8me" + end, "Crème"},
      {"<?xml version='1.0' encoding='windows-1252'?>" + rest + "Cr\xE8me \x80" + end, "Crème €"},
  };
  for (const auto& [bytes, title] : cases) {
    const WholeGuide texts = wholeGuide(bytes);
    ASSERT_EQ(texts.programmes.size(), 1U);
    EXPECT_EQ(texts.programmes[0].title, title);
  }
}

TEST(XMLTVGuide, IsReadInUTF16WithAndWithoutAByteOrderMark) {
  const std::string text =
      "<?xml version='1.0' encoding='UTF-16'?><tv><programme start='2001'><title>M\xE9</title></programme></tv>";
  std::string little;
  std::string big;
  for (const char c : text) {
    little += {c, '\0'};
    big += {'\0', c};
  }
  for (const std::string& bytes : {little, big, "\xFF\xFE" + little, "\xFE\xFF" + big}) {
    const WholeGuide guide = wholeGuide(bytes);
    ASSERT_EQ(guide.programmes.size(), 1U);
    EXPECT_EQ(guide.programmes[0].title, "Mé");
  }
}

TEST(XMLTVGuide, IsRefusedWithAPlaceWhereItIsNoGuide) {
  EXPECT_EQ(guideRefusal("\n<html><body/></html>"),
            "guide.xml: line 2, column 1: not an XMLTV guide, the root element is <html> instead of <tv>");
  EXPECT_THAT(guideRefusal("<tv>\n<programme start='2001'>\n</tv>"), StartsWith("guide.xml: line 3"));
  EXPECT_THAT(guideRefusal("<tv><title>\xC3\x28</title></tv>"), StartsWith("guide.xml: line 1, column 12: not UTF-8"));
  EXPECT_THAT(guideRefusal(std::string("<tv>\n\0</tv>", 11)), StartsWith("guide.xml: line 2, column 1"));
  EXPECT_THAT(guideRefusal("<?xml version='1.0' encoding='KOI8-R'?><tv/>"), HasSubstr("KOI8-R"));
  EXPECT_THAT(guideRefusal("<?xml version='1.0' encoding='windows-1252'?><tv>\x81</tv>"),
              HasSubstr("guide.xml: byte 50"));
  EXPECT_THAT(guideRefusal("<tv/><tv/>"), StartsWith("guide.xml: line 1, column 6"));
  for (const char* bytes : {"", " \n", "just text", "\x89PNG\r\n", "<", "<tv", "</tv>", "<!DOCTYPE tv"}) {
    EXPECT_THAT(guideRefusal(bytes), StartsWith("guide.xml: line 1")) << bytes;
  }
}

TEST(XMLTVGuide, SurvivesDeepNesting) {
  constexpr int depth = 200000;
  std::string open;
  std::string close;
  for (int i = 0; i < depth; ++i) {
    open += "<a>";
    close += "</a>";
  }
  EXPECT_THAT(guide(open + close).programmes, IsEmpty());
}

TEST(XMLTVGuide, NamesTheFileThatCannotBeRead) {
  const TemporaryFolder folder;
  Environment& environment = Environment::standard();
  const auto refusal = [&](const std::string& path) -> std::string {
    try {
      readDecompressedFile(environment, path);
    } catch (const Refusal& refused) {
      return refused.what();
    }
    return "not refused";
  };
  EXPECT_EQ(refusal(folder.file("none")), folder.file("none") + ": No such file or directory");
  EXPECT_EQ(refusal(folder.path()), folder.path() + ": Not a regular file");
  writeFile(folder.file("cut.gz"), gzipData("<tv/>").substr(0, 15));
  EXPECT_EQ(refusal(folder.file("cut.gz")), folder.file("cut.gz") + ": the gzip data is cut off");
}

TEST(XMLTVGuide, MayBeCompressed) {
  const TemporaryFolder folder;
  writeFile(folder.file("guide.xml"), gzipData("<tv/>"));  // Known by its content, whatever its name.
  EXPECT_EQ(readDecompressedFile(Environment::standard(), folder.file("guide.xml")), "<tv/>");
}

TEST(XMLTVGuide, IsReadInTimeThatGrowsAsItDoes) {
  // Places are told for every one of these; counting each from the start of the file would take minutes.
  std::string elements;
  for (int i = 0; i < 100000; ++i) elements += "<programme start='2001' stop='never'>\n</programme>\n";
  EXPECT_EQ(guide(elements).warnings.size(), 100000U);
}

}  // namespace epg::test
