#pragma once

#include <optional>
#include <string>

#include "platform/Environment.h"

namespace epg {

// A store file that cannot be read gives an empty store, whose first save takes the file's place. What stood there may
// be all that somebody has, so it is kept beside the new file, as "EPGItems (unreadable, 2026-11-22 10.15.00).plist".

/// The file as it stands there now; nothing when there is none or it is empty.
std::optional<Environment::FileInfo> unreadableStoreFile(Environment& environment, const std::string& path);

/// Before the file at `path` is replaced: gives it a second name when it is still the unreadable one, so that no crash
/// can lose it. Answers the second name's path, to be removed again if the replacement fails; nothing when nothing had
/// to be kept or the folder takes no second file.
std::optional<std::string> keepUnreadableStoreFile(Environment& environment, const std::string& path,
                                                   const Environment::FileInfo& unreadable);

}  // namespace epg
