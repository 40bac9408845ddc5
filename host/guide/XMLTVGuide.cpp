#include "host/guide/XMLTVGuide.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <set>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "host/guide/XMLTVTime.h"
#include "host/terminal/LineText.h"
#include "host/terminal/Refusal.h"
#include "xml/XMLReader.h"

namespace epg {

namespace {

/// Why a programme cannot be used.
class Unusable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads texts and attributes of elements. Throws `Unusable` where a reference stands for no character.
class ElementReader {
 public:
  explicit ElementReader(const XMLReader& document) : document_(document) {}

  /// The element's text without white space at its ends; nothing when it is empty then. Valid until the next call.
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

/// Puts what an element inside <programme> holds into the programme.
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

/// Keeps the first of equal texts. The order stays.
void removeRepeated(std::vector<std::string>* texts) {
  // Up to here comparing each with each takes less time than a set does. No honest programme has more.
  constexpr std::size_t mostComparedInPairs = 16;
  std::set<std::string> seen;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < texts->size(); ++i) {
    const auto end = texts->begin() + static_cast<std::ptrdiff_t>(kept);
    const bool isNew = texts->size() <= mostComparedInPairs ? std::find(texts->begin(), end, (*texts)[i]) == end
                                                            : seen.insert((*texts)[i]).second;
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

  GuideSummary read(pugi::xml_node root) {
    for (const pugi::xml_node element : root.children()) {
      if (isNamed(element, "programme")) {
        readOrWarn(element, "programme skipped: ", [&] { readProgramme(element); });
      } else if (isNamed(element, "channel")) {
        readOrWarn(element, "channel name left out: ", [&] { readChannel(element); });
      }
    }
    return std::move(summary_);
  }

 private:
  /// Runs `read`. What it cannot use becomes a warning with the place of `element`.
  template <typename Read>
  void readOrWarn(pugi::xml_node element, const char* what, const Read& read) {
    try {
      read();
    } catch (const Unusable& unusable) {
      warn(element, what, unusable);
    }
  }

  /// The only user of places: finding the place of one element takes longer than reading a programme.
  void warn(pugi::xml_node element, const std::string& what, const Unusable& unusable) {
    summary_.warnings.push_back(name_ + ": " + reader_.place(element) + ": " + what + unusable.what());
  }

  /// Gives the programme to the taker. Throws `Unusable` when it lacks a title or a start; any other value that cannot
  /// be used is left out with a warning.
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

  /// As `readElement`, for an element that the programme can do without.
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
        summary_.channelNames.emplace(channel, *text);
        return;
      }
    }
  }

  /// An empty programme that reuses the memory of the last one.
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
  GuideSummary summary_;
};

}  // namespace

bool isGuide(const XMLReader& document) { return isNamed(document.root(), "tv"); }

GuideSummary readGuide(const XMLReader& document, const std::string& name, const ProgrammeTaker& take) {
  const pugi::xml_node root = document.root();
  if (!isGuide(document)) {
    throw Refusal(name + ": " + document.place(root) + ": not an XMLTV guide, the root element is <" + root.name() +
                  "> instead of <tv>");
  }
  return GuideReader(document, name, take).read(root);
}

GuideSummary parseGuide(std::string bytes, const std::string& name, const ProgrammeTaker& take) {
  std::string problem;
  const std::unique_ptr<XMLReader> document = XMLReader::parse(std::move(bytes), &problem);
  if (!document) throw Refusal(name + ": " + problem);
  return readGuide(*document, name, take);
}

}  // namespace epg
