#include "host/terminal/LocalTimeZone.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <regex>
#include <string>

#include "host/terminal/Refusal.h"
#include "platform/Environment.h"
#include "platform/Paths.h"

namespace epg {

namespace {

/// The file of the machine's own zone, which is used when TZ is not set.
const char* const machinesZone = "/etc/localtime";

/// Whether the text is a POSIX rule. The times of changes may be -167 to 167 hours, as in zone files.
bool isRule(const std::string& text) {
  // The regex matcher needs stack for every character.
  constexpr std::size_t longest = 200;
  if (text.size() > longest) return false;
  const std::string name = "(?:[A-Za-z]{3,}|<[A-Za-z0-9+-]{3,}>)";
  const std::string parts = "(?::[0-5]?[0-9](?::[0-5]?[0-9])?)?";
  const std::string offset = "[+-]?(?:2[0-4]|[01]?[0-9])" + parts;
  const std::string day =
      "(?:M(?:1[0-2]|0?[1-9])\\.[1-5]\\.[0-6]|J(?:[12][0-9]{2}|3[0-5][0-9]|36[0-5]|[1-9][0-9]?)|"
      "(?:[12][0-9]{2}|3[0-5][0-9]|36[0-5]|[1-9]?[0-9]))";
  const std::string change = "," + day + "(?:/[+-]?(?:1[0-5][0-9]|16[0-7]|[0-9]{1,2})" + parts + ")?";
  const std::string summer = name + "(?:" + offset + ")?(?:" + change + change + ")?";
  return std::regex_match(text, std::regex(name + offset + "(?:" + summer + ")?"));
}

/// Names of UTC. The system takes unknown names for UTC, so these are right also without zone files.
bool isUTC(const std::string& text) {
  return text.empty() || std::regex_match(text, std::regex("(?:Etc/)?(?:UTC|UCT|GMT|Zulu|Universal|Greenwich)"));
}

enum class ZoneFile { None, Usable, WithLeapSeconds };

/// One of the two parts of a zone file. The first has 32-bit times; the second, if present, is the one that is used.
struct ZoneFilePart {
  static constexpr std::size_t headerSize = 44;

  /// `at` is where the part's header starts, with all of it inside the content.
  ZoneFilePart(const std::string& content, std::size_t at) : content_(content), at_(at) {}

  bool isPart() const { return content_.compare(at_, 4, "TZif") == 0; }
  bool isFollowed() const { return content_[at_ + 4] != '\0'; }
  std::uint32_t leapSeconds() const { return count(2); }
  /// The offset behind this part, of the first part.
  std::uint64_t end() const {
    return at_ + headerSize + std::uint64_t{count(0)} + count(1) + std::uint64_t{8} * count(2) +
           std::uint64_t{5} * count(3) + std::uint64_t{6} * count(4) + count(5);
  }

 private:
  /// The header's counts: UTC marks, standard time marks, leap seconds, changes, kinds of time, characters of names.
  std::uint32_t count(std::size_t index) const {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      number = number << 8 | static_cast<unsigned char>(content_[at_ + 20 + 4 * index + i]);
    }
    return number;
  }

  const std::string& content_;
  const std::size_t at_;
};

ZoneFile zoneFile(Environment& environment, const std::string& path) {
  std::string content;
  if (readWholeFile(environment, path, &content) != 0 || content.size() < ZoneFilePart::headerSize) {
    return ZoneFile::None;
  }
  const ZoneFilePart first(content, 0);
  if (!first.isPart()) return ZoneFile::None;
  std::uint32_t leapSeconds = first.leapSeconds();
  if (first.isFollowed()) {
    if (first.end() + ZoneFilePart::headerSize > content.size()) return ZoneFile::None;
    const ZoneFilePart second(content, static_cast<std::size_t>(first.end()));
    if (!second.isPart()) return ZoneFile::None;
    leapSeconds |= second.leapSeconds();
  }
  return leapSeconds == 0 ? ZoneFile::Usable : ZoneFile::WithLeapSeconds;
}

/// Such a zone needs a clock that counts leap seconds, which system clocks do not: times would be off by nearly half a
/// minute, and changes to and from summer time would end in some year.
[[noreturn]] void refuseLeapSeconds(const std::string& zone) {
  throw Refusal(zone + ": a time zone that counts leap seconds, as the system's clock does not; times would be wrong");
}

std::string zoneFolder() {
  const char* const folder = std::getenv("TZDIR");
  return folder && *folder != '\0' ? folder : "/usr/share/zoneinfo";
}

}  // namespace

void refuseUnknownTimeZone(Environment& environment) {
  const char* const variable = std::getenv("TZ");
  const std::string zone = !variable ? machinesZone : *variable == ':' ? variable + 1 : variable;
  if (isUTC(zone) || isRule(zone)) return;
  const bool isPath = zone[0] == '/';
  const ZoneFile file = zoneFile(environment, isPath ? zone : appendPathComponent(zoneFolder(), zone));
  if (file == ZoneFile::WithLeapSeconds) refuseLeapSeconds(variable ? "TZ=" + std::string(variable) : zone);
  // A system without this file is in UTC on purpose.
  if (file == ZoneFile::Usable || zone == machinesZone) return;
  throw Refusal("TZ=" + std::string(variable) + ": no such time zone" + (isPath ? "" : " in " + zoneFolder()) +
                ", and no rule like CET-1CEST,M3.5.0,M10.5.0/3; all times would be told in UTC");
}

}  // namespace epg
