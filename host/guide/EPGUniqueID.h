#pragma once

#include <string>

namespace epg {

struct XMLTVProgramme;

/// The EPG unique ID of a guide's programme: "xmltv-" and 32 hexadecimal digits, the first half of a SHA-256 over
/// everything that makes the programme what it is (title, description, image URL, tags, sub-titles, episode numbers).
/// When and where it is broadcast does not count, so a repeat has the ID of the first showing. 128 bits are
/// enough to keep the programmes of any store apart, and leave room for a title on the line of a listing.
std::string epgUniqueID(const XMLTVProgramme& programme);

/// The ID of one showing: its start in UTC, its position when several programmes share one slot, and its channel.
/// Different showings have different IDs.
std::string playbackUniqueID(const XMLTVProgramme& programme);

}  // namespace epg
