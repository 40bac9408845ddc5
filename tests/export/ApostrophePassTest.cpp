#include "export/ApostrophePass.h"

#include <gtest/gtest.h>

#include <string>

namespace epg::test {
namespace {

TEST(ApostrophePassTest, ReplacesEveryApostrophe) {
  EXPECT_EQ("Kids&#39; Corner, the critics&#39; choice",
            stringByEscapingSpecialCharacters("Kids' Corner, the critics' choice"));
}

TEST(ApostrophePassTest, ReplacesApostrophesAtBothEndsAndSideBySide) {
  EXPECT_EQ("&#39;&#39;a&#39;", stringByEscapingSpecialCharacters("''a'"));
  EXPECT_EQ("&#39;", stringByEscapingSpecialCharacters("'"));
}

TEST(ApostrophePassTest, TouchesNothingElseWhateverItsNameSays) {
  const std::string text = "<a b=\"c\">&amp; & \" ` \xE2\x80\x99 \xCA\xBC \t\r\n</a>";
  EXPECT_EQ(text, stringByEscapingSpecialCharacters(text));
}

TEST(ApostrophePassTest, DoesNotSearchWhatItPutIn) {
  EXPECT_EQ("&#39;&#39;", stringByEscapingSpecialCharacters("&#39;'"));
  EXPECT_EQ("&&#39;#39;", stringByEscapingSpecialCharacters("&'#39;"));
}

TEST(ApostrophePassTest, LeavesTheEmptyTextEmpty) { EXPECT_EQ("", stringByEscapingSpecialCharacters("")); }

TEST(ApostrophePassTest, KeepsZeroBytesAndWhatFollowsThem) {
  EXPECT_EQ(std::string("a\0b&#39;", 8), stringByEscapingSpecialCharacters(std::string("a\0b'", 4)));
}

TEST(ApostrophePassTest, LeavesTheGivenTextAsItWas) {
  const std::string given = "it's";
  const std::string escaped = stringByEscapingSpecialCharacters(given);
  EXPECT_EQ("it's", given);
  EXPECT_EQ("it&#39;s", escaped);
}

TEST(ApostrophePassTest, AMillionApostrophesGiveAMillionReferences) {
  const std::string escaped = stringByEscapingSpecialCharacters(std::string(1000000, '\''));
  EXPECT_EQ(5000000U, escaped.size());
  EXPECT_EQ("&#39;&#39;", escaped.substr(0, 10));
  EXPECT_EQ("&#39;", escaped.substr(escaped.size() - 5));
  EXPECT_EQ(std::string::npos, escaped.find('\''));
}

}  // namespace
}  // namespace epg::test
