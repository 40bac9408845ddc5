#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <time.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <random>

#include "tests/host/CommandTest.h"
#include "tests/host/GzipData.h"
#include "tests/support/DayFileReader.h"
#include "tests/support/RandomText.h"
#include "tests/support/TimeZone.h"

namespace epg::test {

namespace {

/// A programme as the guide tells it and as the day file must.
struct Programme {
  std::int64_t start = 0;  ///< Unix time, as the stop.
  std::int64_t stop = 0;
  int minutesEast = 0;  ///< Of the zone that the guide writes its times in.
  std::string channel;
  std::string title;
  std::string description;
  std::string image;
  std::vector<std::string> tags;
};

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '&') {
      result += "&amp;";
    } else if (c == '<') {
      result += "&lt;";
    } else if (c == '>') {
      result += "&gt;";
    } else if (c == '"') {
      result += "&quot;";
    } else if (c == '\r' || c == '\n' || c == '\t') {
      result += "&#" + std::to_string(static_cast<int>(c)) + ";";
    } else {
      result += c;
    }
  }
  return result;
}

std::string guideTime(std::int64_t unixTime, int minutesEast) {
  const auto shifted = static_cast<time_t>(unixTime + minutesEast * 60);
  struct tm parts {};
  gmtime_r(&shifted, &parts);
  char text[80];
  std::snprintf(text, sizeof text, "%04d%02d%02d%02d%02d%02d %c%02d%02d", parts.tm_year + 1900, parts.tm_mon + 1,
                parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec, minutesEast < 0 ? '-' : '+',
                std::abs(minutesEast) / 60, std::abs(minutesEast) % 60);
  return text;
}

std::string guideElement(const Programme& programme) {
  std::string text = "<programme start=\"" + guideTime(programme.start, programme.minutesEast) + "\" stop=\"" +
                     guideTime(programme.stop, programme.minutesEast) + "\" channel=\"" + programme.channel +
                     "\"><title>" + escaped(programme.title) + "</title>";
  if (!programme.description.empty()) text += "<desc>" + escaped(programme.description) + "</desc>";
  for (const std::string& tag : programme.tags) text += "<category>" + escaped(tag) + "</category>";
  if (!programme.image.empty()) text += "<icon src=\"" + escaped(programme.image) + "\"/>";
  return text + "</programme>\n";
}

/// Random text that a guide can carry and that white space does not begin or end.
std::string text(std::mt19937& random, std::size_t longest) {
  return "(" + asXMLCarries(randomText(random, longest)) + ")";
}

/// Half a year of two channels, with repeats, across both changes of the clocks on either half of the globe.
std::vector<Programme> programmes(std::size_t count) {
  std::mt19937 random(20261114);
  const int zones[] = {0, 60, 120, -150, 345, 780};
  std::vector<Programme> all;
  std::int64_t next[2] = {1790000000, 1790000000};
  while (all.size() < count) {
    Programme programme;
    if (!all.empty() && random() % 5 == 0) {
      programme = all[random() % all.size()];
    } else {
      programme.title = text(random, 60);
      if (random() % 8 != 0) programme.description = text(random, 300);
      if (random() % 8 != 0) programme.image = text(random, 40);
      const std::size_t tags = random() % 4;
      for (std::size_t i = 0; i < tags; ++i) programme.tags.push_back(std::to_string(i) + text(random, 10));
    }
    const std::size_t channel = random() % 2;
    programme.channel = channel == 0 ? "one.example" : "two.example";
    programme.minutesEast = zones[random() % std::size(zones)];
    programme.start = next[channel];
    programme.stop = programme.start + 60 * static_cast<std::int64_t>(5 + random() % 200);
    next[channel] = programme.stop;
    all.push_back(programme);
  }
  std::shuffle(all.begin(), all.end(), random);
  return all;
}

struct tm localTime(std::int64_t unixTime) {
  const auto seconds = static_cast<time_t>(unixTime);
  struct tm parts {};
  localtime_r(&seconds, &parts);
  return parts;
}

std::string rootDate(std::int64_t unixTime) {
  const struct tm parts = localTime(unixTime);
  char date[64];
  std::snprintf(date, sizeof date, "%02d-%02d-%04d", parts.tm_mday, parts.tm_mon + 1, parts.tm_year + 1900);
  return date;
}

/// What a receiver must find, the "id" aside.
DayFileProgram expected(const Programme& programme) {
  const struct tm parts = localTime(programme.start);
  DayFileProgram program;
  program.day = std::to_string(parts.tm_mday);
  program.month = std::to_string(parts.tm_mon + 1);
  program.year = std::to_string(parts.tm_year - 100);
  program.hour = std::to_string(parts.tm_hour);
  program.minute = std::to_string(parts.tm_min);
  program.title = programme.title;
  program.description = programme.description;
  program.imgUrl = programme.image;
  program.tags = programme.tags;
  return program;
}

class LargeGuide : public CommandTest, public testing::WithParamInterface<const char*> {};

}  // namespace

TEST_P(LargeGuide, ReachesTheReceiverWhole) {
  const TimeZone zone(GetParam());
  std::vector<Programme> all = programmes(5000);
  std::string guide = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<tv>\n";
  for (const Programme& programme : all) guide += guideElement(programme);
  const std::string path = write("guide.xml.gz", gzipData(guide + "</tv>\n"));

  const std::string folder = configureExport("All");
  const CommandResult import = runWell({"import", path});
  EXPECT_EQ(import.output.substr(0, 17), "5000 programmes, ");
  EXPECT_EQ(import.messages, "");
  const CommandResult result = runWell({"export", path});
  EXPECT_EQ(result.messages, "");
  ASSERT_EQ(namesIn(folder).size(), 1U);

  std::stable_sort(all.begin(), all.end(), [](const Programme& a, const Programme& b) { return a.start < b.start; });
  const DayFile dayFile = dayFileFrom(contentOf(folder + "/" + namesIn(folder)[0]));
  EXPECT_EQ(dayFile.dateFrom, rootDate(all.front().start));
  EXPECT_EQ(dayFile.dateTo, rootDate(all.back().stop));
  ASSERT_EQ(dayFile.programs.size(), all.size());
  for (std::size_t i = 0; i < all.size(); ++i) {
    DayFileProgram wanted = expected(all[i]);
    wanted.id = dayFile.programs[i].id;
    ASSERT_EQ(dayFile.programs[i], wanted) << i;
    ASSERT_TRUE(wanted.id) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(InZones, LargeGuide,
                         testing::Values("UTC", "Europe/Berlin", "America/St_Johns", "Asia/Kathmandu",
                                         "Pacific/Auckland", "Australia/Lord_Howe"),
                         [](const testing::TestParamInfo<const char*>& zone) {
                           std::string name = zone.param;
                           name.erase(
                               std::remove_if(name.begin(), name.end(), [](char c) { return c == '/' || c == '_'; }),
                               name.end());
                           return name;
                         });

}  // namespace epg::test
