#include "host/terminal/LineText.h"

#include <gtest/gtest.h>

namespace epg::test {

namespace {

std::optional<std::string> unescaped(const std::string& line) {
  std::string problem;
  std::optional<std::string> text = unescapedLine(line, &problem);
  EXPECT_EQ(problem.empty(), text.has_value()) << line;
  return text;
}

}  // namespace

TEST(LineText, LeavesOrdinaryTextAlone) {
  const std::string text = "Crème & Co. — 第1話 \xF0\x9F\x93\xBA 'x' \"y\"";
  EXPECT_EQ(escapedForLine(text), text);
}

TEST(LineText, EscapesWhatEndsALineOrSeparatesColumns) {
  EXPECT_EQ(escapedForLine("a\nb\tc\rd\\e"), "a\\nb\\tc\\rd\\\\e");
}

TEST(LineText, EscapesWhatSteersATerminal) {
  EXPECT_EQ(escapedForLine("\x1B[31mred"), "\\x1B[31mred");
  EXPECT_EQ(escapedForLine(std::string("\0\x7F", 2)), "\\x00\\x7F");
  EXPECT_EQ(escapedForLine("\xC2\x9B"), "\\xC2\\x9B");           // U+009B starts a control sequence too.
  EXPECT_EQ(escapedForLine("\xE2\x80\xAE"), "\\xE2\\x80\\xAE");  // U+202E turns the writing direction.
  EXPECT_EQ(escapedForLine("\xE2\x80\xA8"), "\\xE2\\x80\\xA8");  // U+2028 ends a line.
}

TEST(LineText, EscapesBytesThatAreNotUTF8) { EXPECT_EQ(escapedForLine("a\xFF\xC3"), "a\\xFF\\xC3"); }

TEST(LineText, IsReadBackExactly) {
  std::string everyByte;
  for (int i = 0; i < 256; ++i) everyByte += static_cast<char>(i);
  const std::string text = everyByte + "\\x41 \\n é \xE2\x80\xAE\xC2\x9B" + everyByte;
  const std::string line = escapedForLine(text);
  EXPECT_EQ(line.find('\n'), std::string::npos);
  EXPECT_EQ(unescaped(line), text);
}

TEST(LineText, RefusesABackslashThatStartsNothing) {
  for (const char* line : {"\\", "a\\q", "\\x", "\\x4", "\\x4g", "\\N"}) EXPECT_FALSE(unescaped(line)) << line;
  EXPECT_EQ(unescaped("\\x4a\\x4A"), "JJ");
}

TEST(LineText, KeepsBackslashesAndLinesOfMessages) {
  EXPECT_EQ(harmlessMessage("C:\\new\n\x1B[2J\t"), "C:\\new\n\\x1B[2J\\t");
}

TEST(LineText, StripsOnlyXMLWhiteSpaceAndOnlyAtTheEnds) {
  EXPECT_EQ(strippedOfWhiteSpace(" \t\r\n a \n b \xC2\xA0 \n"), "a \n b \xC2\xA0");
  EXPECT_EQ(strippedOfWhiteSpace(" \n"), "");
}

TEST(LineText, SteersOutputWhereAnythingWouldBeEscapedButABackslash) {
  for (const char* text : {"\n", "a\tb", "\x7F", "\xFF\x1B", "\xC2\x9B", "a\xE2\x80\xA9", "\xE2\x81\xA6"}) {
    EXPECT_TRUE(steersOutput(std::string(text))) << escapedForLine(text);
  }
  EXPECT_TRUE(steersOutput(std::string(1, '\0')));
  for (const char* text : {"", " a\\n ", "\xC3\xA9", "\xFF", "a\xC2", "\xED\xA0\x80z", "\xF0\x9F\x93\xBA"}) {
    EXPECT_FALSE(steersOutput(std::string(text))) << escapedForLine(text);
  }
}

}  // namespace epg::test
