#include "host/guide/EPGUniqueID.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "host/guide/SHA256.h"
#include "host/guide/XMLTVGuide.h"

namespace epg::test {

namespace {

XMLTVProgramme programme() {
  XMLTVProgramme programme;
  programme.channel = "one.example";
  programme.start = Instant::fromUnixTime(999043500);
  programme.stop = Instant::fromUnixTime(999045000);
  programme.title = "Title";
  programme.description = "Description";
  programme.imageURL = "http://i/1.png";
  programme.categories = {"News", "Live"};
  programme.subTitles = {"Sub-title"};
  programme.episodeNumbers = {{"onscreen", "S1E2"}};
  return programme;
}

std::string idWith(const std::function<void(XMLTVProgramme&)>& change) {
  XMLTVProgramme changed = programme();
  change(changed);
  return epgUniqueID(changed);
}

std::string playbackWith(const std::function<void(XMLTVProgramme&)>& change) {
  XMLTVProgramme changed = programme();
  change(changed);
  return playbackUniqueID(changed);
}

}  // namespace

TEST(SHA256, IsThePublishedFunction) {
  EXPECT_EQ(sha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(EPGUniqueID, StaysTheSameFromVersionToVersion) {
  // A change here would make a second entry of every programme that anybody has imported.
  EXPECT_EQ(epgUniqueID(programme()), "xmltv-" + sha256("5:Title11:Description14:http://i/1.png2:4:News4:Live1:9:Sub-"
                                                        "title1:8:onscreen4:S1E2")
                                                     .substr(0, 32));
}

TEST(EPGUniqueID, DoesNotDependOnWhenAndWhere) {
  EXPECT_EQ(idWith([](XMLTVProgramme& p) { p.channel = "two.example"; }), epgUniqueID(programme()));
  EXPECT_EQ(idWith([](XMLTVProgramme& p) { p.start = Instant::fromUnixTime(0); }), epgUniqueID(programme()));
  EXPECT_EQ(idWith([](XMLTVProgramme& p) { p.stop.reset(); }), epgUniqueID(programme()));
  EXPECT_EQ(idWith([](XMLTVProgramme& p) { p.clumpIndex = "0/2"; }), epgUniqueID(programme()));
}

TEST(EPGUniqueID, DependsOnEverythingElse) {
  const std::function<void(XMLTVProgramme&)> changes[] = {
      [](XMLTVProgramme&) {},
      [](XMLTVProgramme& p) { p.title = "title"; },
      [](XMLTVProgramme& p) { p.description = "Other"; },
      [](XMLTVProgramme& p) { p.description.reset(); },
      [](XMLTVProgramme& p) { p.imageURL.reset(); },
      [](XMLTVProgramme& p) {
        p.categories = {"Live", "News"};
      },
      [](XMLTVProgramme& p) { p.categories = {"NewsLive"}; },
      [](XMLTVProgramme& p) { p.categories.clear(); },
      [](XMLTVProgramme& p) { p.subTitles.clear(); },
      [](XMLTVProgramme& p) { p.subTitles.emplace_back("Another"); },
      [](XMLTVProgramme& p) { p.episodeNumbers[0].text = "S1E3"; },
      [](XMLTVProgramme& p) { p.episodeNumbers[0].system = "xmltv_ns"; },
      [](XMLTVProgramme& p) { p.episodeNumbers.clear(); },
      // The same letters, divided otherwise.
      [](XMLTVProgramme& p) {
        p.title = "Title11:Description";
        p.description.reset();
      },
      [](XMLTVProgramme& p) {
        p.title = "TitleD";
        p.description = "escription";
      },
      [](XMLTVProgramme& p) {
        p.categories = {"News"};
        p.subTitles = {"Live", "Sub-title"};
      },
  };
  std::set<std::string> ids;
  for (const auto& change : changes) ids.insert(idWith(change));
  EXPECT_EQ(ids.size(), std::size(changes));
}

TEST(EPGUniqueID, IsSafeInEveryListing) {
  EXPECT_THAT(epgUniqueID(programme()), testing::MatchesRegex("xmltv-[0-9a-f]{32}"));
}

TEST(PlaybackUniqueID, NamesTheShowing) {
  EXPECT_EQ(playbackUniqueID(programme()), "20010829000500Z one.example");
  EXPECT_EQ(playbackWith([](XMLTVProgramme& p) { p.clumpIndex = "1/2"; }), "20010829000500Z#1/2 one.example");
  EXPECT_EQ(playbackWith([](XMLTVProgramme& p) { p.channel.clear(); }), "20010829000500Z");
}

TEST(PlaybackUniqueID, TellsShowingsApart) {
  const std::set<std::string> ids = {
      playbackUniqueID(programme()),
      playbackWith([](XMLTVProgramme& p) { p.channel = "two.example"; }),
      playbackWith([](XMLTVProgramme& p) { p.start = Instant::fromUnixTime(999043501); }),
      playbackWith([](XMLTVProgramme& p) { p.clumpIndex = "0/2"; }),
      playbackWith([](XMLTVProgramme& p) { p.clumpIndex = "1/2"; }),
      playbackWith([](XMLTVProgramme& p) { p.channel = "#1/2 one.example"; }),
  };
  EXPECT_EQ(ids.size(), 6U);
}

}  // namespace epg::test
