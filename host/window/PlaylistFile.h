#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/guide/EventsFile.h"

namespace epg {

/// A schedule and what the window shows of it.
struct PlaylistFile {
  Schedule schedule;
  std::map<std::string, std::string> titles;  ///< EPG unique ID to the title that the guide gives the programme.
};

/// Reads a guide or a list of events. False when it is neither; `problem` then names the file and the place.
bool readPlaylistFile(const std::string& path, PlaylistFile* playlist, std::string* problem);

}  // namespace epg
