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
/// can lose it; a copy has it where files take no second name, and where none can be made either, it is moved. Answers
/// the second name's path; nothing when nothing had to be kept, or the folder lets nothing be done.
std::optional<std::string> keepUnreadableStoreFile(Environment& environment, const std::string& path,
                                                   const Environment::FileInfo& unreadable);
/// After a replacement that failed: the file stands at `path` alone, as before.
void putBackUnreadableStoreFile(Environment& environment, const std::string& kept, const std::string& path);

}  // namespace epg
