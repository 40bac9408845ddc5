// A guide of several thousand programmes, exported in several zones, arrives at an XML reader with every text, time
// and tag as it was.

#include <time.h>

#include <algorithm>

#include "tests/support/PluginTest.h"
#include "tests/support/RandomText.h"

namespace epg::test {
namespace {

struct Programme {
  std::string title, description, imageURL;
  std::vector<std::string> tags;
  double start = 0;
};

/// The start as the system's own clock arithmetic has it in the zone of the moment.
std::string localStart(double secondsSince1970) {
  const auto seconds = static_cast<time_t>(secondsSince1970);
  struct tm local {};
  EXPECT_TRUE(::localtime_r(&seconds, &local));
  return std::to_string(local.tm_mday) + "." + std::to_string(local.tm_mon + 1) + "." +
         std::to_string(local.tm_year - 100) + " " + std::to_string(local.tm_hour) + ":" + std::to_string(local.tm_min);
}

class GuideTest : public PluginTest, public testing::WithParamInterface<const char*> {
 protected:
  static constexpr int count = 4000;

  GuideTest() {
    std::mt19937 random(4711);
    double start = 1332460800;  // 23 March 2012: the guide goes over both changes of the clocks.
    for (int i = 0; i < count; ++i) {
      Programme programme;
      programme.title = randomText(random, 40);
      programme.description = randomText(random, 400);
      programme.imageURL = randomText(random, 60);
      for (auto tags = random() % 6; tags > 0; --tags) programme.tags.push_back(randomText(random, 12));
      programme.start = start;
      start += 60 * static_cast<double>(1 + random() % 180);
      if (i % 500 == 0) start += 20 * days;
      programmes.push_back(programme);
      const std::string id = "programme " + std::to_string(i);
      put(id, {{ZRLEPGDSTitleKey, programme.title},
               {ZRLEPGDSDescriptionKey, programme.description},
               {ZRLEPGDSImageURLKey, programme.imageURL},
               {ZRLEPGDSTagsKey, listOfNames(programme.tags)}});
      EPGEvent event = eventFromTo(id, programme.start, start);
      if (i % 10 != 0) event.eventEPGPlaybackUniqueID = "playback " + std::to_string(i);
      events.push_back(event);
      if (i % 7 == 0) events.push_back(eventAt("no item " + std::to_string(i), programme.start));
    }
    std::shuffle(events.begin(), events.end(), random);
  }

  std::vector<Programme> programmes;
  std::vector<EPGEvent> events;
};

TEST_P(GuideTest, ArrivesAsItWas) {
  // Through the store's file, as after a restart of the host.
  save();
  start();
  const TimeZone local(GetParam());
  exportAndWait(events);
  ASSERT_EQ(std::vector<std::string>{"YES"}, delegate.outcomes());
  const std::vector<std::string> files = namesIn(exportFolder);
  ASSERT_EQ(1U, files.size());
  const DayFile file = dayFileFrom(contentOf(exportFolder + "/" + files[0]));
  ASSERT_EQ(programmes.size(), file.programs.size());
  std::size_t withoutID = 0;
  for (std::size_t i = 0; i < programmes.size(); ++i) {
    const Programme& expected = programmes[i];
    const DayFileProgram& read = file.programs[i];
    std::vector<std::string> tags;
    for (const std::string& tag : expected.tags) tags.push_back(asXMLCarries(tag));
    ASSERT_EQ(asXMLCarries(expected.title), read.title) << i;
    ASSERT_EQ(asXMLCarries(expected.description), read.description) << i;
    ASSERT_EQ(asXMLCarries(expected.imageURL), read.imgUrl) << i;
    ASSERT_EQ(tags, read.tags) << i;
    ASSERT_EQ(localStart(expected.start), read.start()) << i;
    if (!read.id) ++withoutID;
  }
  EXPECT_EQ(static_cast<std::size_t>(count / 10), withoutID);
}

INSTANTIATE_TEST_SUITE_P(Zones, GuideTest,
                         testing::Values("UTC", "Europe/Berlin", "America/New_York", "Asia/Kolkata",
                                         "Australia/Lord_Howe", "America/St_Johns", "Pacific/Chatham",
                                         "CET-1CEST,M3.5.0,M10.5.0/3"));

}  // namespace
}  // namespace epg::test
