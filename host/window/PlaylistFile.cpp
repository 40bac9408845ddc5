#include "host/window/PlaylistFile.h"

#include <exception>

#include "host/guide/EPGUniqueID.h"
#include "host/guide/XMLTVGuide.h"
#include "host/terminal/Refusal.h"
#include "platform/Environment.h"

namespace epg {

namespace {

/// Empty for a list of events, which knows no titles.
std::map<std::string, std::string> titlesInGuide(const std::string& path) {
  std::map<std::string, std::string> titles;
  try {
    const XMLTVGuide guide = parseGuide(readGuideBytes(Environment::standard(), path), path);
    for (const XMLTVProgramme& programme : guide.programmes) titles.emplace(epgUniqueID(programme), programme.title);
  } catch (const Refusal&) {
    titles.clear();
  }
  return titles;
}

}  // namespace

bool readPlaylistFile(const std::string& path, PlaylistFile* playlist, std::string* problem) {
  try {
    playlist->schedule = readSchedule(Environment::standard(), path);
    playlist->titles = titlesInGuide(path);
    return true;
  } catch (const std::exception& exception) {
    *problem = exception.what();
    return false;
  }
}

}  // namespace epg
