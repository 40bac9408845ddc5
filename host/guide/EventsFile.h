#pragma once

#include <map>
#include <string>
#include <vector>

#include "model/EPGEvent.h"

namespace epg {

class Environment;

/// What a file tells about an event besides the event itself.
struct EventDetails {
  std::string channel;             ///< Empty in a property list, which knows no channels.
  std::string clumpIndex = "0/1";  ///< As in a guide's programme.
  std::string title;               ///< Empty in a property list, which knows no titles.
};

/// The events of a file, as the plug-in is given them.
struct Schedule {
  std::vector<EPGEvent> events;                     ///< In the file's order.
  std::vector<EventDetails> details;                ///< Of each event, at the same index.
  std::map<std::string, std::string> channelNames;  ///< Channel to its display name, where it has one.
  std::vector<std::string> warnings;  ///< One for each thing in the file that could not be used, with its place.
};

/// Reads events from a property list (an array of dictionaries with the keys of EPG events, in XML or binary form) or
/// from an XMLTV guide, whose programmes get the IDs that importing the same guide gives them. Either may be
/// compressed by gzip. Throws a `Refusal` that names the file, and the place in it, when it is neither, or when an
/// event holds a value of the wrong type.
Schedule readSchedule(Environment& environment, const std::string& path);

}  // namespace epg
