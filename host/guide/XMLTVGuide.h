#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/Instant.h"

namespace epg {

class Environment;
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
  /// The elements that could not be used, as they stand in the guide: they tell programmes apart that are alike else.
  std::vector<std::string> unusableElements;
};

struct XMLTVGuide {
  std::map<std::string, std::string> channelNames;  ///< Channel to its first display name, where it has one.
  std::vector<XMLTVProgramme> programmes;           ///< In the guide's order.
  std::vector<std::string> warnings;  ///< "guide.xml: line 3, column 5: …", one for each thing left out.
};

/// Is given one programme after another, in the guide's order.
using ProgrammeTaker = std::function<void(XMLTVProgramme&&)>;

/// Takes the guide out of a document. `name` stands before each place in messages. A programme is left out with a
/// warning when it has no title or valid start, or when a reference in one of these or in its channel stands for no
/// character; any other value with such a reference, and an unusable stop, counts as absent, with a warning too. Throws
/// a `Refusal` when the document is no guide.
XMLTVGuide guideInDocument(const XMLReader& document, const std::string& name);

/// The same for a guide of any size: its programmes are given away as they are read, and the result has none.
XMLTVGuide readGuide(const XMLReader& document, const std::string& name, const ProgrammeTaker& take);

/// The bytes of a guide's file, decompressed where they are gzip. Throws a `Refusal` that names the file.
std::string readGuideBytes(Environment& environment, const std::string& path);

/// The guide in the bytes, as the two above give it; throws a `Refusal` that names the file and the place.
XMLTVGuide parseGuide(std::string bytes, const std::string& name);
XMLTVGuide parseGuide(std::string bytes, const std::string& name, const ProgrammeTaker& take);

/// The programmes of a guide with nothing wrong in it, in a fraction of the time: the parser gets one piece after the
/// other, of about so many bytes, which the processor has near at hand from the parsing to the reading. Each taker is
/// given its part of the guide, the first one the beginning; the parts are read on threads of their own where the
/// system has them to give, the first one on the caller's.
/// False when there is anything to warn of or to refuse, or when the guide cannot be read so; what has been given away
/// by then counts for nothing, and it takes one of the others to read it.
bool parseFaultlessGuide(const std::string& bytes, const std::vector<ProgrammeTaker>& takers,
                         std::size_t pieceSize = std::size_t{1} << 18);

}  // namespace epg
