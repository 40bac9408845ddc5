#include "host/LocalTimeZone.h"

#include <cstdlib>
#include <regex>
#include <string>

#include "host/Refusal.h"
#include "platform/Environment.h"
#include "platform/Paths.h"

namespace epg {

namespace {

/// The rules that POSIX describes, with the hours that zone files themselves use (-167 to 167) for the changes.
bool isRule(const std::string& text) {
  // No rule is longer, and the matcher needs stack for every character.
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

/// The names under which the system's answer to every unknown name, UTC, is right, also without the zones' files.
bool isUTC(const std::string& text) {
  return text.empty() || std::regex_match(text, std::regex("(?:Etc/)?(?:UTC|UCT|GMT|Zulu|Universal|Greenwich)"));
}

bool isZoneFile(Environment& environment, const std::string& path) {
  std::string content;
  return readWholeFile(environment, path, &content) == 0 && content.compare(0, 4, "TZif") == 0;
}

std::string zoneFolder() {
  const char* const folder = std::getenv("TZDIR");
  return folder && *folder != '\0' ? folder : "/usr/share/zoneinfo";
}

}  // namespace

void refuseUnknownTimeZone(Environment& environment) {
  const char* const variable = std::getenv("TZ");
  if (!variable) return;
  const std::string zone = *variable == ':' ? variable + 1 : variable;
  // The file that counts where TZ is not set; a system without it is in UTC.
  if (zone == "/etc/localtime") return;
  if (isUTC(zone) || isRule(zone)) return;
  const bool isPath = zone[0] == '/';
  if (isZoneFile(environment, isPath ? zone : appendPathComponent(zoneFolder(), zone))) return;
  throw Refusal("TZ=" + std::string(variable) + ": no such time zone" + (isPath ? "" : " in " + zoneFolder()) +
                ", and no rule like CET-1CEST,M3.5.0,M10.5.0/3; all times would be told in UTC");
}

}  // namespace epg
