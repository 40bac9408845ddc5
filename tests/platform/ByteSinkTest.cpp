#include "platform/ByteSink.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace epg::test {
namespace {

/// Keeps the pieces; refuses one of them.
class PieceSink : public ByteSink {
 public:
  std::vector<std::string> pieces;
  std::size_t refusedPiece = static_cast<std::size_t>(-1);

 protected:
  bool take(std::string_view piece) override {
    pieces.emplace_back(piece);
    return pieces.size() - 1 != refusedPiece;
  }
};

std::string together(const std::vector<std::string>& pieces) {
  std::string text;
  for (const std::string& piece : pieces) text += piece;
  return text;
}

TEST(ByteSinkTest, HandsOnNothingBeforeItHasTo) {
  PieceSink sink;
  sink.append("a");
  sink.append("b");
  EXPECT_TRUE(sink.pieces.empty());
  EXPECT_TRUE(sink.flush());
  EXPECT_EQ(sink.pieces, std::vector<std::string>{"ab"});
}

TEST(ByteSinkTest, HandsOnNoEmptyPiece) {
  PieceSink sink;
  sink.append("");
  sink.append({});
  EXPECT_TRUE(sink.flush());
  EXPECT_TRUE(sink.pieces.empty());
}

TEST(ByteSinkTest, KeepsEveryByteInOrderWhereverPiecesEnd) {
  const std::size_t piece = ByteSink::pieceSize;
  for (const std::size_t size : {std::size_t{7}, std::size_t{1000}, piece - 1, piece, piece + 1, 3 * piece}) {
    SCOPED_TRACE(size);
    PieceSink sink;
    std::string expected;
    for (int i = 0; expected.size() < 5 * piece; ++i) {
      const std::string next(size, static_cast<char>('a' + i % 26));
      sink.append(next);
      sink.append("-");
      expected += next + "-";
    }
    EXPECT_TRUE(sink.flush());
    EXPECT_FALSE(sink.failed());
    EXPECT_EQ(together(sink.pieces), expected);
    for (std::size_t i = 0; i + 1 < sink.pieces.size(); ++i) EXPECT_FALSE(sink.pieces[i].empty());
  }
}

constexpr std::size_t tensOfSomePieces = 4 * ByteSink::pieceSize / 10;

TEST(ByteSinkTest, SmallBytesComeInLargePieces) {
  PieceSink sink;
  for (std::size_t i = 0; i < tensOfSomePieces; ++i) sink.append("ten bytes.");
  sink.flush();
  EXPECT_LE(sink.pieces.size(), 10 * tensOfSomePieces / (ByteSink::pieceSize - 10) + 1);
}

TEST(ByteSinkTest, WhatComesAfterAPieceThatFailedIsDropped) {
  PieceSink sink;
  sink.refusedPiece = 1;
  for (std::size_t i = 0; i < tensOfSomePieces && !sink.failed(); ++i) sink.append("ten bytes.");
  EXPECT_TRUE(sink.failed());
  ASSERT_EQ(sink.pieces.size(), 2U);
  for (std::size_t i = 0; i < tensOfSomePieces; ++i) sink.append("ten bytes.");
  sink.append(std::string(10 * tensOfSomePieces, 'x'));
  EXPECT_FALSE(sink.flush());
  EXPECT_EQ(sink.pieces.size(), 2U);
}

TEST(ByteSinkTest, ATextHasEverythingAfterAFlush) {
  std::string text = "before ";
  StringSink sink(text);
  sink.append("and after");
  EXPECT_TRUE(sink.flush());
  EXPECT_EQ(text, "before and after");
}

}  // namespace
}  // namespace epg::test
