#pragma once

#include <optional>
#include <string>

#include "platform/Instant.h"

namespace epg {

/// One thing that would embarrass a channel on air.
struct Finding {
  std::optional<Instant> time;          ///< When viewers would notice; absent when the event has no start.
  std::optional<std::string> uniqueID;  ///< The EPG unique ID of the event.
  std::string text;
};

}  // namespace epg
