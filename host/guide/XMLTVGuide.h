#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/Instant.h"

namespace epg {

class XMLReader;

/// One programme of a guide. Texts have lost the white space at their ends and are never empty; what the guide does
/// not tell is absent.
struct XMLTVProgramme {
  struct EpisodeNumber {
    std::string system;
    std::string text;
  };

  std::string channel;  ///< Empty where the guide names none.
  Instant start;
  std::optional<Instant> stop;
  std::string clumpIndex = "0/1";  ///< Position among the programmes that share one slot, without white space.
  std::string title;               ///< The first, as the ones below.
  std::optional<std::string> description;
  std::optional<std::string> imageURL;
  std::vector<std::string> categories;  ///< Each text once, in the guide's order.
  std::vector<std::string> subTitles;
  std::vector<EpisodeNumber> episodeNumbers;
  /// The elements that could not be used, as they stand in the guide. They count in the EPG unique ID, so that
  /// programmes that differ only there stay apart.
  std::vector<std::string> unusableElements;
};

/// What reading a guide gives besides its programmes.
struct GuideSummary {
  std::map<std::string, std::string> channelNames;  ///< Channel to its first display name, where it has one.
  std::vector<std::string> warnings;  ///< "guide.xml: line 3, column 5: …", one for each thing left out.
};

/// Is given one programme after another, in the guide's order.
using ProgrammeTaker = std::function<void(XMLTVProgramme&&)>;

/// Whether the document's root is that of a guide.
bool isGuide(const XMLReader& document);

/// Reads the guide in a document. `name` stands before each place in messages. A programme is left out with a
/// warning when it has no title or valid start, or when a reference in one of these or in its channel stands for no
/// character; any other value with such a reference, and an unusable stop, counts as absent, with a warning too. Throws
/// a `Refusal` when the document is no guide.
GuideSummary readGuide(const XMLReader& document, const std::string& name, const ProgrammeTaker& take);

/// The same for the guide in the bytes. Throws a `Refusal` that names the place also when they are no document.
GuideSummary parseGuide(std::string bytes, const std::string& name, const ProgrammeTaker& take);

}  // namespace epg
