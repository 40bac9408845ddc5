#pragma once

namespace epg {

/// What --version prints: the program's name and version.
extern const char* const programVersion;

/// The day of that version, as "2026-11-22".
extern const char* const programVersionDate;

}  // namespace epg
