#include <gtest/gtest.h>

#include <set>
#include <string>

#include "export/DayFile.h"
#include "tests/support/Events.h"

namespace epg::test {
namespace {

std::string hashOf(const std::string& playbackID) { return std::to_string(playbackIDHash(playbackID)); }

TEST(PlaybackIDHashTest, IsFNV1aInTheMachinesWordWidth) {
  // The first two are published test vectors of the hash.
  EXPECT_EQ(byWordWidth("12638187200555641996", "3826002220"), hashOf("a"));
  EXPECT_EQ(byWordWidth("9625390261332436968", "3214735720"), hashOf("foobar"));
  EXPECT_EQ(byWordWidth("7118868021960440957", "4961821"), hashOf("P-100"));
  EXPECT_EQ(byWordWidth("16261884560268382917", "131170661"), hashOf(std::string(1000, 'x')));
}

TEST(PlaybackIDHashTest, GoesOverTheBytesOfUTF8) {
  EXPECT_EQ(byWordWidth("13254928379955648012", "800835628"), hashOf("Grüße, Welt €"));
  EXPECT_EQ(byWordWidth("18374412943757542024", "866293256"), hashOf("😀"));
}

TEST(PlaybackIDHashTest, CountsAZeroByte) {
  EXPECT_EQ(byWordWidth("12638153115695167455", "84696351"), hashOf(std::string(1, '\0')));
}

TEST(PlaybackIDHashTest, IsTheSameForTheSameID) { EXPECT_EQ(hashOf("P-100"), hashOf(std::string("P-") + "100")); }

TEST(PlaybackIDHashTest, DiffersForIDsThatDifferInOneCharacter) {
  std::set<std::string> hashes;
  for (int i = 0; i < 10000; ++i) hashes.insert(hashOf("P-" + std::to_string(i)));
  EXPECT_EQ(10000U, hashes.size());
}

}  // namespace
}  // namespace epg::test
