#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "model/EPGEvent.h"

namespace epg::test {

/// An event of the entry between two moments, both in seconds since 1970.
inline EPGEvent eventFromTo(const std::string& uniqueID, double start, double end) {
  EPGEvent event;
  event.eventEPGUniqueID = uniqueID;
  event.eventEPGStartDateTime = Instant::fromUnixTime(start);
  event.eventEPGEndDateTime = Instant::fromUnixTime(end);
  return event;
}

/// An event of the entry that begins at this moment, in seconds since 1970, and has no end.
inline EPGEvent eventAt(const std::string& uniqueID, double start) {
  EPGEvent event;
  event.eventEPGUniqueID = uniqueID;
  event.eventEPGStartDateTime = Instant::fromUnixTime(start);
  return event;
}

inline EPGEvent eventWithoutTimes(const std::string& uniqueID) {
  EPGEvent event;
  event.eventEPGUniqueID = uniqueID;
  return event;
}

inline EPGEvent withPlaybackID(EPGEvent event, const std::string& playbackID) {
  event.eventEPGPlaybackUniqueID = playbackID;
  return event;
}

/// A number that depends on the machine's word width, as the day file writes it.
inline std::string byWordWidth(const char* in64Bits, const char* in32Bits) {
  return sizeof(std::size_t) == 8 ? in64Bits : in32Bits;
}

constexpr double minutes = 60;
constexpr double hours = 3600;
constexpr double days = 86400;

}  // namespace epg::test
