#pragma once

#include <optional>
#include <string>

#include "platform/Instant.h"

namespace epg {

/// One scheduled playback, handed in by the host for export. Any part may be absent.
struct EPGEvent {
  std::optional<std::string> eventEPGUniqueID;          ///< The entry that is played; finds its EPG item.
  std::optional<std::string> eventEPGPlaybackUniqueID;  ///< This one playback.
  std::optional<Instant> eventEPGStartDateTime;
  std::optional<Instant> eventEPGEndDateTime;
};

}  // namespace epg
