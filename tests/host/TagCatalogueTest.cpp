#include "host/commands/TagCatalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/RefusalOf.h"

namespace epg::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> catalogue = {"Live", "Repeat", "News",  "News Magazine", "Sport",
                                            "HD",   "UHD",    "Opéra", "Film noir",     "Docu-drama"};

std::string tagRefusal(const std::vector<std::string>& tags) {
  return refusalOf([&] { tagIndexes(catalogue, tags); });
}

}  // namespace

TEST(TagCatalogue, FindsTagsByTheirExactName) {
  EXPECT_THAT(tagIndexes(catalogue, {"Sport", "Live", "Sport"}), ElementsAre(4, 0, 4));
  EXPECT_THAT(tagIndexes(catalogue, {}), IsEmpty());
}

TEST(TagCatalogue, NamesEveryTagThatItLacksAndTheNearOnes) {
  EXPECT_EQ(tagRefusal({"live", "Live", "Quatsch", "news"}),
            "the tag catalogue has no \"live\"; near it: \"Live\"\n"
            "the tag catalogue has no \"Quatsch\"\n"
            "the tag catalogue has no \"news\"; near it: \"News\", \"News Magazine\"");
}

TEST(TagCatalogue, TakesSlipsOfTheFingerForNear) {
  EXPECT_THAT(nearNames(catalogue, "Lvie"), ElementsAre("Live"));
  EXPECT_THAT(nearNames(catalogue, "Lvee"), IsEmpty());  // Two letters of four are another word.
  EXPECT_THAT(nearNames(catalogue, "Lve"), ElementsAre("Live"));
  EXPECT_THAT(nearNames(catalogue, "Repaet"), ElementsAre("Repeat"));
  EXPECT_THAT(nearNames(catalogue, "Opera"), ElementsAre("Opéra"));
  EXPECT_THAT(nearNames(catalogue, "hd"), ElementsAre("HD", "UHD"));
}

TEST(TagCatalogue, TakesPartsForNear) {
  EXPECT_THAT(nearNames(catalogue, "magazine"), ElementsAre("News Magazine"));
  EXPECT_THAT(nearNames(catalogue, "live sport"), Contains("Sport"));
  EXPECT_THAT(nearNames(catalogue, "drama"), ElementsAre("Docu-drama"));
}

TEST(TagCatalogue, NamesTheNearestFirstAndFiveAtMost) {
  const std::vector<std::string> many = {"News 12345", "News 1234", "News 123", "News 12", "News 1", "News"};
  EXPECT_THAT(nearNames(many, "News"), ElementsAre("News", "News 1", "News 12", "News 123", "News 1234"));
}

TEST(TagCatalogue, FindsNothingNearToALongText) {
  EXPECT_THAT(nearNames(catalogue, std::string(1 << 20, 'x')), IsEmpty());
}

}  // namespace epg::test
