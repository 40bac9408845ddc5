#include "host/guide/Gzip.h"

#include <gtest/gtest.h>

#include "tests/host/GzipData.h"

namespace epg::test {

namespace {

constexpr std::size_t enough = 1U << 26;

std::string problemWith(const std::string& bytes, std::size_t largestSize = enough) {
  std::string problem;
  EXPECT_FALSE(decompressedGzip(bytes, largestSize, &problem));
  return problem;
}

std::optional<std::string> decompressed(const std::string& bytes, std::size_t largestSize = enough) {
  std::string problem;
  std::optional<std::string> text = decompressedGzip(bytes, largestSize, &problem);
  EXPECT_EQ(problem, "");
  return text;
}

/// Compresses badly, so that it is long in both forms.
std::string longText() {
  std::string text;
  unsigned state = 1;
  for (int i = 0; i < 700000; ++i) {
    state = state * 1664525 + 1013904223;
    text += static_cast<char>(state >> 24);
  }
  return text;
}

}  // namespace

TEST(Gzip, IsKnownByItsFirstBytes) {
  EXPECT_TRUE(isGzip(gzipData("a")));
  EXPECT_FALSE(isGzip("<tv/>"));
  EXPECT_FALSE(isGzip(""));
  EXPECT_FALSE(isGzip("\x1f"));
}

TEST(Gzip, GivesBackWhatWasCompressed) {
  EXPECT_EQ(decompressed(gzipData("")), "");
  EXPECT_EQ(decompressed(gzipData("<tv/>")), "<tv/>");
  const std::string text = longText();
  EXPECT_EQ(decompressed(gzipData(text)), text);
}

TEST(Gzip, JoinsMembers) { EXPECT_EQ(decompressed(gzipData("one ") + gzipData("") + gzipData("two")), "one two"); }

TEST(Gzip, PassesOverPaddingOfZeroBytes) {
  EXPECT_EQ(decompressed(gzipData("text") + std::string(1000, '\0')), "text");
}

TEST(Gzip, IsRefusedWhereverItIsCutOff) {
  const std::string bytes = gzipData("A guide that has been downloaded only in part.");
  for (std::size_t size = 2; size < bytes.size(); ++size) {
    EXPECT_EQ(problemWith(bytes.substr(0, size)), "the gzip data is cut off") << size;
  }
  const std::string two = gzipData("whole") + bytes;
  EXPECT_EQ(problemWith(two.substr(0, two.size() - 5)), "the gzip data is cut off");
}

TEST(Gzip, IsRefusedWhereItIsDamaged) {
  std::string bytes = gzipData(longText());
  bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 0x55);
  EXPECT_NE(problemWith(bytes).find("the gzip data is damaged"), std::string::npos);

  std::string wrongSum = gzipData("text");
  wrongSum[wrongSum.size() - 6] = static_cast<char>(wrongSum[wrongSum.size() - 6] ^ 1);
  EXPECT_NE(problemWith(wrongSum).find("the gzip data is damaged"), std::string::npos);
}

TEST(Gzip, IsRefusedWithSomethingElseBehindIt) {
  const std::string bytes = gzipData("text");
  EXPECT_EQ(problemWith(bytes + "<tv/>"),
            "byte " + std::to_string(bytes.size() + 1) + ": something that is no gzip data follows the gzip data");
}

TEST(Gzip, IsRefusedBeyondTheLargestSize) {
  const std::string bytes = gzipData(std::string(10000000, 'a'));
  EXPECT_LT(bytes.size(), 20000U);
  EXPECT_EQ(problemWith(bytes, 1000000), "decompresses to more than 1000000 bytes");
  EXPECT_EQ(decompressed(gzipData(std::string(1000, 'a')), 1000), std::string(1000, 'a'));
  EXPECT_EQ(problemWith(gzipData(std::string(1001, 'a')), 1000), "decompresses to more than 1000 bytes");
  EXPECT_EQ(problemWith(gzipData(std::string(600, 'a')) + gzipData(std::string(600, 'b')), 1000),
            "decompresses to more than 1000 bytes");
}

}  // namespace epg::test
