#pragma once

namespace epg {

// The exit statuses of the command line.

constexpr int exitDone = 0;
constexpr int exitRefused = 1;  ///< Refused or failed, or a command found something that is not as it should be.
constexpr int exitWrongUsage = 2;

}  // namespace epg
