#include "host/XMLTVGuide.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <utility>

#include "host/Gzip.h"
#include "host/InputFile.h"
#include "host/LineText.h"
#include "host/Refusal.h"
#include "host/XMLTVTime.h"
#include "platform/XMLReader.h"

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

  std::optional<std::string> text(pugi::xml_node element) const {
    std::string problem;
    std::optional<std::string> text = document_.text(element, &problem);
    if (!text) throw Unusable(problem);
    return valueOf(*text);
  }

  std::optional<std::string> attribute(pugi::xml_node element, const char* name) const {
    std::string problem;
    const std::optional<std::string> value = document_.attribute(element, name, &problem);
    if (!value && !problem.empty()) throw Unusable(problem);
    return value ? valueOf(*value) : std::nullopt;
  }

  std::string asItStands(pugi::xml_node element) const { return document_.asItStands(element); }

 private:
  static std::optional<std::string> valueOf(const std::string& text) {
    std::string stripped = strippedOfWhiteSpace(text);
    if (stripped.empty()) return std::nullopt;
    return stripped;
  }

  const XMLReader& document_;
};

/// Whether the node is an element of that name. A processing instruction has a name too.
bool isNamed(pugi::xml_node node, const char* name) {
  return node.type() == pugi::node_element && std::strcmp(node.name(), name) == 0;
}

std::string withoutWhiteSpace(std::string text) {
  text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return std::strchr(" \t\n\r", c) != nullptr; }),
             text.end());
  return text;
}

/// Takes over what one of a programme's elements holds.
void readElement(const ElementReader& reader, pugi::xml_node element, XMLTVProgramme* programme) {
  if (isNamed(element, "title")) {
    if (programme->title.empty()) programme->title = reader.text(element).value_or("");
  } else if (isNamed(element, "desc")) {
    if (!programme->description) programme->description = reader.text(element);
  } else if (isNamed(element, "icon")) {
    if (!programme->imageURL) programme->imageURL = reader.attribute(element, "src");
  } else if (isNamed(element, "category")) {
    if (std::optional<std::string> category = reader.text(element)) programme->categories.push_back(*category);
  } else if (isNamed(element, "sub-title")) {
    if (std::optional<std::string> subTitle = reader.text(element)) programme->subTitles.push_back(*subTitle);
  } else if (isNamed(element, "episode-num")) {
    if (std::optional<std::string> number = reader.text(element)) {
      programme->episodeNumbers.push_back({reader.attribute(element, "system").value_or("onscreen"), *number});
    }
  }
}

/// Whether `read` could use what it was to read. Where it could not, a warning tells that `what` was left out of the
/// programme that stands at `place`.
template <typename Read>
bool readIfUsable(const Read& read, const char* what, const std::string& place, XMLTVGuide* guide) {
  try {
    read();
    return true;
  } catch (const Unusable& unusable) {
    guide->warnings.push_back(place + ": " + what + " left out: " + unusable.what());
    return false;
  }
}

/// Each text once, the first of its kind staying in its place.
void removeRepeated(std::vector<std::string>* texts) {
  std::vector<const std::string*> sorted;
  for (const std::string& text : *texts) sorted.push_back(&text);
  std::stable_sort(sorted.begin(), sorted.end(), [](const std::string* a, const std::string* b) { return *a < *b; });
  std::vector<bool> repeated(texts->size());
  for (std::size_t i = 1; i < sorted.size(); ++i) {
    if (*sorted[i] == *sorted[i - 1]) repeated[static_cast<std::size_t>(sorted[i] - texts->data())] = true;
  }
  std::vector<std::string> once;
  for (std::size_t i = 0; i < texts->size(); ++i) {
    if (!repeated[i]) once.push_back(std::move((*texts)[i]));
  }
  *texts = std::move(once);
}

/// Adds the programme to the guide, with a warning for each value that cannot be used; throws `Unusable` when it cannot
/// do without one. `place` is where the programme stands.
void readProgramme(const ElementReader& reader, pugi::xml_node element, const std::string& place, XMLTVGuide* guide) {
  XMLTVProgramme programme;
  const std::optional<std::string> start = reader.attribute(element, "start");
  if (!start) throw Unusable("it has no start");
  std::string problem;
  const std::optional<Instant> startInstant = instantFromXMLTVTime(*start, &problem);
  if (!startInstant) throw Unusable("its start cannot be used: " + problem);
  programme.start = *startInstant;
  for (const pugi::xml_node child : element.children()) {
    const auto read = [&] { readElement(reader, child, &programme); };
    if (isNamed(child, "title")) {
      read();
    } else if (!readIfUsable(read, child.name(), place, guide)) {
      programme.unusableElements.push_back(reader.asItStands(child));
    }
  }
  if (programme.title.empty()) throw Unusable("it has no title");
  removeRepeated(&programme.categories);
  programme.channel = reader.attribute(element, "channel").value_or("");
  const auto readClumpIndex = [&] {
    const auto clumpIndex = reader.attribute(element, "clumpidx");
    if (clumpIndex) programme.clumpIndex = withoutWhiteSpace(*clumpIndex);
  };
  readIfUsable(readClumpIndex, "clumpidx", place, guide);
  const auto readStop = [&] {
    if (!element.attribute("stop")) return;
    programme.stop = instantFromXMLTVTime(reader.attribute(element, "stop").value_or(""), &problem);
    if (!programme.stop) throw Unusable(problem);
  };
  readIfUsable(readStop, "stop", place, guide);
  guide->programmes.push_back(std::move(programme));
}

void readChannel(const ElementReader& reader, pugi::xml_node element, XMLTVGuide* guide) {
  const std::optional<std::string> channel = reader.attribute(element, "id");
  if (!channel) return;
  for (const pugi::xml_node name : element.children()) {
    if (!isNamed(name, "display-name")) continue;
    if (const std::optional<std::string> text = reader.text(name)) {
      guide->channelNames.emplace(*channel, *text);
      return;
    }
  }
}

}  // namespace

XMLTVGuide guideInDocument(const XMLReader& document, const std::string& name) {
  const pugi::xml_node root = document.root();
  if (!isNamed(root, "tv")) {
    throw Refusal(name + ": " + document.place(root) + ": not an XMLTV guide, the root element is <" + root.name() +
                  "> instead of <tv>");
  }
  const ElementReader reader(document);
  XMLTVGuide guide;
  for (const pugi::xml_node element : root.children()) {
    const bool isProgramme = isNamed(element, "programme");
    if (!isProgramme && !isNamed(element, "channel")) continue;
    const std::string place = name + ": " + document.place(element);
    try {
      if (isProgramme) {
        readProgramme(reader, element, place, &guide);
      } else {
        readChannel(reader, element, &guide);
      }
    } catch (const Unusable& unusable) {
      guide.warnings.push_back(place + ": " + (isProgramme ? "programme skipped: " : "channel name left out: ") +
                               unusable.what());
    }
  }
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

XMLTVGuide parseGuide(const std::string& bytes, const std::string& name) {
  std::string problem;
  const std::unique_ptr<XMLReader> document = XMLReader::parse(bytes, &problem);
  if (!document) throw Refusal(name + ": " + problem);
  return guideInDocument(*document, name);
}

}  // namespace epg
