#include "host/guide/EPGUniqueID.h"

#include <cstddef>
#include <vector>

#include "host/guide/SHA256.h"
#include "host/guide/XMLTVGuide.h"
#include "host/guide/XMLTVTime.h"

namespace epg {

namespace {

/// Writes each text behind its length, so that different programmes never give the same bytes.
class Serialisation {
 public:
  Serialisation() {
    constexpr std::size_t usualProgramme = 1000;
    bytes_.reserve(usualProgramme);
  }

  void count(std::size_t size) {
    bytes_ += std::to_string(size);
    bytes_ += ':';
  }
  void text(const std::string& text) {
    count(text.size());
    bytes_ += text;
  }
  void texts(const std::vector<std::string>& texts) {
    count(texts.size());
    for (const std::string& each : texts) text(each);
  }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

}  // namespace

std::string epgUniqueID(const XMLTVProgramme& programme) {
  Serialisation content;
  content.text(programme.title);
  // A text that is there is never empty, so an empty one can stand for an absent one.
  content.text(programme.description.value_or(""));
  content.text(programme.imageURL.value_or(""));
  content.texts(programme.categories);
  content.texts(programme.subTitles);
  content.count(programme.episodeNumbers.size());
  for (const XMLTVProgramme::EpisodeNumber& number : programme.episodeNumbers) {
    content.text(number.system);
    content.text(number.text);
  }
  // Nothing is written without any: the programmes in existing stores must keep their IDs.
  if (!programme.unusableElements.empty()) content.texts(programme.unusableElements);
  constexpr std::size_t digits = 32;
  return "xmltv-" + sha256(content.bytes()).substr(0, digits);
}

std::string playbackUniqueID(const XMLTVProgramme& programme) {
  std::string id = xmltvTimeInUTC(programme.start) + "Z";
  if (programme.clumpIndex != "0/1") id += "#" + programme.clumpIndex;
  if (!programme.channel.empty()) id += " " + programme.channel;
  return id;
}

}  // namespace epg
