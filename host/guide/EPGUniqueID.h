#pragma once

#include <string>

namespace epg {

struct XMLTVProgramme;

/// The EPG unique ID of a guide's programme: "xmltv-" and 32 hexadecimal digits, the first half of a SHA-256 over
/// everything that makes the programme what it is (title, description, image URL, tags, sub-titles, episode numbers).
/// When and where it is broadcast does not count, so a repeat has the ID of the first showing. 128 bits keep any two
/// programmes that ever meet in one store apart and still leave room for a title on the line.
std::string epgUniqueID(const XMLTVProgramme& programme);

/// The ID of one showing: its start in UTC, the position in its slot where several programmes share one, and its
/// channel, in an order in which no two showings give the same text.
std::string playbackUniqueID(const XMLTVProgramme& programme);

}  // namespace epg
