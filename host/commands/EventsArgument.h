#pragma once

#include <string>

#include "host/guide/EventsFile.h"

namespace epg {

struct CommandContext;

/// The schedule of a command's EVENTS argument. A terminal shows the progress, and the warnings are told.
Schedule readEventsArgument(CommandContext& context, const std::string& path);

}  // namespace epg
