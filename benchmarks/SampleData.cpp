#include "benchmarks/SampleData.h"

#include <time.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <numeric>
#include <random>
#include <utility>

namespace epg::benchmarks {

namespace {

constexpr std::size_t channels = 10;
constexpr double firstStart = 1330880400;
constexpr double halfAnHour = 1800;

double startOf(std::size_t number) { return firstStart + static_cast<double>(number / channels) * halfAnHour; }

/// Spreads numbers that follow one another over all the numbers that there are, without two becoming one.
std::uint64_t spread(std::uint64_t number) {
  number += 0x9e3779b97f4a7c15u;
  number = (number ^ (number >> 30)) * 0xbf58476d1ce4e5b9u;
  number = (number ^ (number >> 27)) * 0x94d049bb133111ebu;
  return number ^ (number >> 31);
}

/// Of what has to be escaped, the sample's texts have ampersands only.
std::string escaped(const std::string& text) {
  std::string document;
  for (const char c : text) {
    if (c == '&') {
      document += "&amp;";
    } else {
      document += c;
    }
  }
  return document;
}

void appendElement(std::string& document, const char* indentation, const char* name, const std::string& text) {
  document += indentation;
  document += '<';
  document += name;
  document += '>';
  document += escaped(text);
  document += "</";
  document += name;
  document += ">\n";
}

void appendItem(std::string& document, const std::string& id, const SampleItem& item) {
  const auto entry = [&](const char* key, const std::string& text) {
    appendElement(document, "\t\t", "key", key);
    appendElement(document, "\t\t", "string", text);
  };
  appendElement(document, "\t", "key", id);
  document += "\t<dict>\n";
  entry("description", item.description);
  entry("imageURL", item.imageURL);
  appendElement(document, "\t\t", "key", "tags");
  document += "\t\t<array>\n";
  for (const std::string& tag : item.tags) appendElement(document, "\t\t\t", "string", tag);
  document += "\t\t</array>\n";
  entry("title", item.title);
  entry("uniqueID", id);
  document += "\t</dict>\n";
}

/// "20120304172000 +0000"
std::string guideTime(double time) {
  const auto seconds = static_cast<time_t>(time);
  struct tm parts {};
  ::gmtime_r(&seconds, &parts);
  char text[40];
  ::strftime(text, sizeof text, "%Y%m%d%H%M%S +0000", &parts);
  return text;
}

}  // namespace

std::string sampleTag(std::size_t number) { return "Tag " + std::to_string(number); }

std::string sampleID(std::size_t number) {
  const std::uint64_t high = spread(number);
  const std::uint64_t low = spread(~high);
  char text[40];
  std::snprintf(text, sizeof text, "%08X-%04X-%04X-%04X-%012llX", static_cast<unsigned>(high >> 32),
                static_cast<unsigned>(high >> 16 & 0xffff), static_cast<unsigned>(high & 0xffff),
                static_cast<unsigned>(low >> 48), static_cast<unsigned long long>(low & 0xffffffffffffu));
  return text;
}

SampleItem sampleItem(std::size_t number, std::size_t tags) {
  const std::string digits = std::to_string(number);
  SampleItem item;
  item.title = "The Harbour's Evening, Part " + digits;
  item.description =
      "What the tide brings in & whom it takes: three families between Fj\xC3\xA6rland and the open sea. Part " +
      digits + " of the series follows the boats out, and those who wait for them at the caf\xC3\xA9 home.";
  item.imageURL = "https://images.quillmere.example/harbour/" + digits + ".jpg?width=640&height=360";
  // Different entries carry different tags; the step has no common divisor with the size of the catalogue.
  for (std::size_t i = 0; i < tags; ++i) item.tags.push_back(sampleTag((number * 7 + i * 37) % sampleCatalogueSize));
  return item;
}

std::string sampleStoreFile(std::size_t items, std::size_t tags) {
  std::vector<std::pair<std::string, std::size_t>> ids;
  for (std::size_t i = 0; i < items; ++i) ids.emplace_back(sampleID(i), i);
  std::sort(ids.begin(), ids.end());
  std::string document =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n<dict>\n";
  for (const auto& [id, number] : ids) appendItem(document, id, sampleItem(number, tags));
  document += "</dict>\n</plist>\n";
  return document;
}

std::vector<EPGEvent> sampleEvents(std::size_t count) {
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::mt19937 chance;  // NOLINT: the same every time is what is wanted
  std::shuffle(order.begin(), order.end(), chance);
  std::vector<EPGEvent> events(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double start = startOf(order[i]);
    events[i].eventEPGUniqueID = sampleID(order[i]);
    events[i].eventEPGPlaybackUniqueID = "playback-" + std::to_string(order[i]);
    events[i].eventEPGStartDateTime = Instant::fromUnixTime(start);
    events[i].eventEPGEndDateTime = Instant::fromUnixTime(start + halfAnHour);
  }
  return events;
}

std::string sampleGuide(std::size_t programmes) {
  std::string document =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE tv SYSTEM \"xmltv.dtd\">\n"
      "<tv source-info-name=\"Quillmere Television (fictional)\">\n";
  for (std::size_t i = 0; i < channels; ++i) {
    const std::string number = std::to_string(i);
    document += "  <channel id=\"" + number + ".quillmere.example\">\n    <display-name lang=\"en\">Quillmere " +
                number + "</display-name>\n  </channel>\n";
  }
  const auto element = [&document](const char* tag, const std::string& text, const char* name) {
    document += "    <" + std::string(tag) + ">";
    document += escaped(text);
    document += "</" + std::string(name) + ">\n";
  };
  for (std::size_t i = 0; i < programmes; ++i) {
    const SampleItem item = sampleItem(i);
    document += "  <programme start=\"" + guideTime(startOf(i)) + "\" stop=\"" + guideTime(startOf(i) + halfAnHour) +
                "\" channel=\"" + std::to_string(i % channels) + ".quillmere.example\">\n";
    element("title lang=\"en\"", item.title, "title");
    element("sub-title lang=\"en\"", "Low water " + std::to_string(i % 400), "sub-title");
    element("desc lang=\"en\"", item.description, "desc");
    for (const std::string& tag : item.tags) element("category lang=\"en\"", tag, "category");
    document += "    <icon src=\"";
    document += escaped(item.imageURL);
    document += "\"/>\n";
    element("episode-num system=\"xmltv_ns\"", std::to_string(i / 20) + "." + std::to_string(i % 20) + ".",
            "episode-num");
    document += "  </programme>\n";
  }
  document += "</tv>\n";
  return document;
}

}  // namespace epg::benchmarks
