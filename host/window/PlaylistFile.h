#pragma once

#include <string>

#include "host/guide/EventsFile.h"

namespace epg {

/// Reads a guide or a list of events. False when it is neither; `problem` then names the file and the place.
///
/// In a file of plain C++, because Objective-C++ that clang compiles for GCC's runtime catches no C++ exceptions.
bool readPlaylistFile(const std::string& path, Schedule* schedule, std::string* problem);

}  // namespace epg
