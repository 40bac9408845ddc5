#include "host/window/PlaylistFile.h"

#include <exception>

#include "platform/Environment.h"

namespace epg {

bool readPlaylistFile(const std::string& path, Schedule* schedule, std::string* problem) {
  try {
    *schedule = readSchedule(Environment::standard(), path);
    return true;
  } catch (const std::exception& exception) {
    *problem = exception.what();
    return false;
  }
}

}  // namespace epg
