#include "host/guide/XMLTVGuide.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <future>
#include <memory>
#include <set>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "host/guide/Gzip.h"
#include "host/guide/InputFile.h"
#include "host/guide/XMLTVTime.h"
#include "host/terminal/LineText.h"
#include "host/terminal/Refusal.h"
#include "xml/XMLReader.h"

namespace epg {

namespace {

constexpr std::size_t largestGuide = std::size_t{1} << 30;

/// Why a programme cannot be used.
class Unusable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads what one element holds; throws `Unusable` where a reference stands for no character.
class ElementReader {
 public:
  explicit ElementReader(const XMLReader& document) : document_(document) {}

  /// Without the white space at the ends, and nothing where nothing else is left. Lives until the next is read.
  std::optional<std::string_view> text(pugi::xml_node element) {
    const std::optional<std::string_view> text = document_.text(element, &buffer_, &problem_);
    if (!text) throwProblem();
    return valueOf(*text);
  }
  std::optional<std::string_view> attribute(pugi::xml_node element, const char* name) {
    const std::optional<std::string_view> value = document_.attribute(element, name, &buffer_, &problem_);
    if (!value && !problem_.empty()) throwProblem();
    return value ? valueOf(*value) : std::nullopt;
  }

  std::string asItStands(pugi::xml_node element) const { return document_.asItStands(element); }
  std::string place(pugi::xml_node element) const { return document_.place(element); }

 private:
  static std::optional<std::string_view> valueOf(std::string_view text) {
    const std::string_view stripped = strippedOfWhiteSpace(text);
    if (stripped.empty()) return std::nullopt;
    return stripped;
  }

  [[noreturn]] void throwProblem() { throw Unusable(std::exchange(problem_, {})); }

  const XMLReader& document_;
  std::string buffer_;
  std::string problem_;
};

/// Whether the node is an element of that name. A processing instruction has a name too.
bool isNamed(pugi::xml_node node, const char* name) {
  return node.type() == pugi::node_element && std::strcmp(node.name(), name) == 0;
}

std::string withoutWhiteSpace(std::string_view value) {
  std::string text(value);
  text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return std::strchr(" \t\n\r", c) != nullptr; }),
             text.end());
  return text;
}

/// Takes over what one of a programme's elements holds.
void readElement(ElementReader& reader, pugi::xml_node element, std::string_view name, XMLTVProgramme* programme) {
  if (name == "title") {
    if (programme->title.empty()) programme->title = reader.text(element).value_or("");
  } else if (name == "desc") {
    if (!programme->description) programme->description = reader.text(element);
  } else if (name == "icon") {
    if (!programme->imageURL) programme->imageURL = reader.attribute(element, "src");
  } else if (name == "category") {
    if (const auto category = reader.text(element)) programme->categories.emplace_back(*category);
  } else if (name == "sub-title") {
    if (const auto subTitle = reader.text(element)) programme->subTitles.emplace_back(*subTitle);
  } else if (name == "episode-num") {
    if (const auto number = reader.text(element)) {
      XMLTVProgramme::EpisodeNumber episode;
      episode.text = *number;
      episode.system = reader.attribute(element, "system").value_or("onscreen");
      programme->episodeNumbers.push_back(std::move(episode));
    }
  }
}

/// Each text once, the first of its kind staying in its place.
void removeRepeated(std::vector<std::string>* texts) {
  constexpr std::size_t few = 16;
  std::set<std::string> seen;  // Only where there are more than any honest programme has.
  std::size_t kept = 0;
  for (std::size_t i = 0; i < texts->size(); ++i) {
    const auto end = texts->begin() + static_cast<std::ptrdiff_t>(kept);
    const bool isNew =
        texts->size() <= few ? std::find(texts->begin(), end, (*texts)[i]) == end : seen.insert((*texts)[i]).second;
    if (!isNew) continue;
    if (kept != i) (*texts)[kept] = std::move((*texts)[i]);
    ++kept;
  }
  texts->resize(kept);
}

/// Reads one guide.
class GuideReader {
 public:
  GuideReader(const XMLReader& document, const std::string& name, const ProgrammeTaker& take)
      : reader_(document), name_(name), take_(take) {}

  XMLTVGuide read(pugi::xml_node root) {
    for (const pugi::xml_node element : root.children()) {
      if (isNamed(element, "programme")) {
        readOrWarn(element, "programme skipped: ", [&] { readProgramme(element); });
      } else if (isNamed(element, "channel")) {
        readOrWarn(element, "channel name left out: ", [&] { readChannel(element); });
      }
    }
    return std::move(guide_);
  }

 private:
  /// Where `read` cannot use what it was to read, a warning tells so of the element.
  template <typename Read>
  void readOrWarn(pugi::xml_node element, const char* what, const Read& read) {
    try {
      read();
    } catch (const Unusable& unusable) {
      warn(element, what, unusable);
    }
  }

  /// Only here are places asked for: finding one out of a hundred thousand costs more than reading the programme.
  void warn(pugi::xml_node element, const std::string& what, const Unusable& unusable) {
    guide_.warnings.push_back(name_ + ": " + reader_.place(element) + ": " + what + unusable.what());
  }

  /// Gives the programme away, with a warning for each value that cannot be used; throws `Unusable` when it cannot do
  /// without one.
  void readProgramme(pugi::xml_node element) {
    programme_ = freshProgramme();
    XMLTVProgramme& programme = programme_;
    const std::optional<std::string_view> start = reader_.attribute(element, "start");
    if (!start) throw Unusable("it has no start");
    std::string problem;
    const std::optional<Instant> startInstant = instantFromXMLTVTime(*start, &problem);
    if (!startInstant) throw Unusable("its start cannot be used: " + problem);
    programme.start = *startInstant;
    for (const pugi::xml_node child : element.children()) {
      if (child.type() != pugi::node_element) continue;
      const std::string_view name = child.name();
      if (name == "title") {
        readElement(reader_, child, name, &programme);
      } else {
        readOptional(element, child, name, &programme);
      }
    }
    if (programme.title.empty()) throw Unusable("it has no title");
    removeRepeated(&programme.categories);
    programme.channel = reader_.attribute(element, "channel").value_or("");
    readOrWarn(element, "clumpidx left out: ", [&] {
      const auto clumpIndex = reader_.attribute(element, "clumpidx");
      if (clumpIndex) programme.clumpIndex = withoutWhiteSpace(*clumpIndex);
    });
    readOrWarn(element, "stop left out: ", [&] {
      if (!element.attribute("stop")) return;
      programme.stop = instantFromXMLTVTime(reader_.attribute(element, "stop").value_or(""), &problem);
      if (!programme.stop) throw Unusable(problem);
    });
    take_(std::move(programme));
  }

  /// Takes over what a programme's element holds that the programme can do without.
  void readOptional(pugi::xml_node element, pugi::xml_node child, std::string_view name, XMLTVProgramme* programme) {
    try {
      readElement(reader_, child, name, programme);
    } catch (const Unusable& unusable) {
      warn(element, std::string(name) + " left out: ", unusable);
      programme->unusableElements.push_back(reader_.asItStands(child));
    }
  }

  void readChannel(pugi::xml_node element) {
    const std::optional<std::string_view> found = reader_.attribute(element, "id");
    if (!found) return;
    const std::string channel(*found);
    for (const pugi::xml_node name : element.children()) {
      if (!isNamed(name, "display-name")) continue;
      if (const std::optional<std::string_view> text = reader_.text(name)) {
        guide_.channelNames.emplace(channel, *text);
        return;
      }
    }
  }

  /// A new one with the memory of the last one, which does not have to be given back and got again.
  XMLTVProgramme freshProgramme() {
    XMLTVProgramme programme;
    const auto takeMemory = [](auto& place, auto& last) {
      place.swap(last);
      place.clear();
    };
    takeMemory(programme.channel, programme_.channel);
    takeMemory(programme.title, programme_.title);
    takeMemory(programme.categories, programme_.categories);
    takeMemory(programme.subTitles, programme_.subTitles);
    takeMemory(programme.episodeNumbers, programme_.episodeNumbers);
    return programme;
  }

  ElementReader reader_;
  const std::string& name_;
  const ProgrammeTaker& take_;
  XMLTVProgramme programme_;  ///< The one that is being read.
  XMLTVGuide guide_;
};

}  // namespace

XMLTVGuide readGuide(const XMLReader& document, const std::string& name, const ProgrammeTaker& take) {
  const pugi::xml_node root = document.root();
  if (!isNamed(root, "tv")) {
    throw Refusal(name + ": " + document.place(root) + ": not an XMLTV guide, the root element is <" + root.name() +
                  "> instead of <tv>");
  }
  return GuideReader(document, name, take).read(root);
}

XMLTVGuide guideInDocument(const XMLReader& document, const std::string& name) {
  std::vector<XMLTVProgramme> programmes;
  XMLTVGuide guide =
      readGuide(document, name, [&](XMLTVProgramme&& programme) { programmes.push_back(std::move(programme)); });
  guide.programmes = std::move(programmes);
  return guide;
}

std::string readGuideBytes(Environment& environment, const std::string& path) {
  std::string bytes = readInputFile(environment, path);
  if (!isGzip(bytes)) return bytes;
  std::string problem;
  std::optional<std::string> text = decompressedGzip(bytes, largestGuide, &problem);
  if (!text) throw Refusal(path + ": " + problem);
  return std::move(*text);
}

namespace {

std::unique_ptr<XMLReader> documentOf(std::string bytes, const std::string& name) {
  std::string problem;
  std::unique_ptr<XMLReader> document = XMLReader::parse(std::move(bytes), &problem);
  if (!document) throw Refusal(name + ": " + problem);
  return document;
}

}  // namespace

XMLTVGuide parseGuide(std::string bytes, const std::string& name) {
  return guideInDocument(*documentOf(std::move(bytes), name), name);
}

XMLTVGuide parseGuide(std::string bytes, const std::string& name, const ProgrammeTaker& take) {
  return readGuide(*documentOf(std::move(bytes), name), name, take);
}

namespace {

/// Behind the first programme that ends there or later; the end of the guide where none does.
std::size_t endOfProgramme(const std::string& bytes, std::size_t from) {
  static constexpr std::string_view endTag = "</programme>";
  const std::size_t at = bytes.find(endTag, std::min(from, bytes.size()));
  return at == std::string::npos ? bytes.size() : at + endTag.size();
}

/// Reads a guide's parts, several of them at once, until one of them cannot be read.
class PartReader {
 public:
  PartReader(const std::string& bytes, std::size_t pieceSize) : bytes_(bytes), pieceSize_(pieceSize) {}

  /// Reads from one end of a programme to another, piece by piece. False when that was given up.
  bool read(std::size_t from, std::size_t to, const ProgrammeTaker& take) {
    while (from < to && !isGivenUp_) {
      const std::size_t end = std::min(endOfProgramme(bytes_, from + pieceSize_), to);
      // With few ends of programmes the pieces would be no smaller than the guide.
      constexpr std::size_t tooLarge = 16;
      if ((end - from) / tooLarge > pieceSize_ || !readPiece(from, end, take)) isGivenUp_ = true;
      from = end;
    }
    return !isGivenUp_;
  }

 private:
  /// Each piece is made a document of its own by the root's tags. Being well-formed so, it cannot have ended inside of
  /// anything but the root: a comment, say, that goes on in the next piece would have no end.
  bool readPiece(std::size_t from, std::size_t end, const ProgrammeTaker& take) const {
    static constexpr std::string_view startTag = "<tv>";
    static constexpr std::string_view endTag = "</tv>";
    std::string piece;
    piece.reserve(startTag.size() + (end - from) + endTag.size());
    if (from > 0) piece += startTag;
    piece.append(bytes_, from, end - from);
    if (end < bytes_.size()) piece += endTag;
    const std::unique_ptr<XMLReader> document = XMLReader::parse(std::move(piece), nullptr);
    return document && isNamed(document->root(), "tv") && readGuide(*document, {}, take).warnings.empty();
  }

  const std::string& bytes_;
  const std::size_t pieceSize_;
  std::atomic<bool> isGivenUp_{false};
};

}  // namespace

bool parseFaultlessGuide(const std::string& bytes, const std::vector<ProgrammeTaker>& takers, std::size_t pieceSize) {
  if (bytes.empty() || takers.empty() || !XMLReader::isInUTF8(bytes)) return false;
  PartReader reader(bytes, pieceSize);
  std::vector<std::future<bool>> parts;
  std::size_t from = 0;
  for (std::size_t i = 0; i < takers.size(); ++i) {
    const bool isLast = i + 1 == takers.size();
    const std::size_t to = isLast ? bytes.size() : endOfProgramme(bytes, bytes.size() / takers.size() * (i + 1));
    // Where the system has no thread to give, this one does the work.
    const auto policy = i == 0 ? std::launch::deferred : std::launch::async | std::launch::deferred;
    parts.push_back(std::async(policy, [&reader, from, to, &take = takers[i]] { return reader.read(from, to, take); }));
    from = to;
  }
  bool isWhole = true;
  for (auto& part : parts) isWhole = part.get() && isWhole;
  return isWhole;
}

}  // namespace epg
