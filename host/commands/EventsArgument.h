#pragma once

#include <string>

#include "host/guide/EventsFile.h"

namespace epg {

struct CommandContext;

/// Reads the schedule of a command's EVENTS argument, shows the progress and writes the warnings.
Schedule readEventsArgument(CommandContext& context, const std::string& path);

}  // namespace epg
