#include "xml/XMLReader.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <new>
#include <set>
#include <string_view>
#include <utility>

#include "xml/UTF8.h"
#include "xml/XMLEncoding.h"
#include "xml/XMLReferences.h"
#include "xml/XMLText.h"

namespace epg {

namespace {

// References are resolved here, not by the parser, which lets unknown ones pass as text.
constexpr unsigned int wholeText =
    pugi::parse_cdata | pugi::parse_eol | pugi::parse_ws_pcdata | pugi::parse_wconv_attribute | pugi::parse_fragment;

// Only white space that is all an element holds is kept. Whatever else may take some along (comments, instructions,
// child elements) is in the tree, so that one sees where text has to be read once more.
constexpr unsigned int leanText = (wholeText & ~pugi::parse_ws_pcdata) | pugi::parse_ws_pcdata_single |
                                  pugi::parse_embed_pcdata | pugi::parse_comments | pugi::parse_pi |
                                  pugi::parse_declaration;

pugi::xml_parse_result parseInto(pugi::xml_document* document, std::string_view text, unsigned int options) {
  const pugi::xml_parse_result result = document->load_buffer(text.data(), text.size(), options, pugi::encoding_utf8);
  // safeguard: the error of memory that runs out
  if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
  return result;
}

bool isWhiteSpace(const char* text) { return text[std::strspn(text, " \t\r\n")] == '\0'; }

bool holdsReference(std::string_view raw) { return raw.find('&') != std::string_view::npos; }

/// Whether an attribute in front of this one in its tag has the same name. `seen` is the caller's for one tag, filled
/// where the tag has more attributes than any honest one: there, comparing each with each would take for ever.
bool standsTwice(pugi::xml_node element, pugi::xml_attribute attribute, std::size_t number,
                 std::optional<std::set<std::string_view>>* seen) {
  constexpr std::size_t few = 16;
  if (number < few) {
    for (pugi::xml_attribute other = element.first_attribute(); other != attribute; other = other.next_attribute()) {
      if (std::strcmp(other.name(), attribute.name()) == 0) return true;
    }
    return false;
  }
  if (!*seen) {
    seen->emplace();
    for (pugi::xml_attribute other = element.first_attribute(); other != attribute; other = other.next_attribute()) {
      (*seen)->insert(other.name());
    }
  }
  return !(*seen)->insert(attribute.name()).second;
}

/// What the parser lets pass although nobody can say what it means; empty where all is well.
std::string problemOfAttributes(pugi::xml_node element) {
  std::optional<std::set<std::string_view>> seen;
  std::size_t number = 0;
  for (pugi::xml_attribute attribute = element.first_attribute(); attribute; attribute = attribute.next_attribute()) {
    if (std::strchr(attribute.value(), '<')) {
      return "a \"<\" in the attribute \"" + std::string(attribute.name()) + "\"";
    }
    if (standsTwice(element, attribute, number, &seen)) {
      return "the attribute \"" + std::string(attribute.name()) + "\" twice";
    }
    ++number;
  }
  return {};
}

/// Finds the first element, in the document's order, whose attributes are not as they must be.
class AttributeCheck : public pugi::xml_tree_walker {
 public:
  bool begin(pugi::xml_node& root) override { return isGood(root); }
  bool for_each(pugi::xml_node& node) override { return isGood(node); }

  pugi::xml_node faultyElement;
  std::string problem;

 private:
  bool isGood(pugi::xml_node node) {
    const pugi::xml_attribute first = node.first_attribute();
    // Most elements have one attribute or none.
    if (!first || (!first.next_attribute() && !std::strchr(first.value(), '<'))) return true;
    problem = problemOfAttributes(node);
    if (!problem.empty()) faultyElement = node;
    return problem.empty();
  }
};

struct StringWriter : pugi::xml_writer {
  void write(const void* data, std::size_t size) override { text.append(static_cast<const char*>(data), size); }

  std::string text;
};

}  // namespace

bool XMLReader::isInUTF8(const std::string& bytes) { return isXMLInUTF8(bytes); }

std::unique_ptr<XMLReader> XMLReader::parse(std::string bytes, std::string* problem, Halves halves) {
  std::string found;
  std::optional<std::string> converted = convertedToUTF8(bytes, &found);
  std::unique_ptr<XMLReader> reader(new XMLReader);
  reader->halves_ = halves;
  reader->text_ = converted ? std::move(*converted) : std::move(bytes);
  if (found.empty() && reader->parseText(&found)) return reader;
  if (problem) *problem = std::move(found);
  return nullptr;
}

bool XMLReader::parseText(std::string* problem) {
  const std::size_t valid = lengthOfUTF8(text_);
  if (valid != text_.size()) {
    *problem = placeOfOffset(valid) + ": not UTF-8";
    return false;
  }
  const std::size_t zero = text_.find('\0');
  if (zero != std::string::npos) {
    *problem = placeOfOffset(zero) + ": a zero byte";
    return false;
  }

  pugi::xml_parse_result result = parseInto(&document_, text_, leanText);
  // What is kept decides where in a broken part the parser stops; what it merely skips it takes as it is.
  if (!result) result = parseInto(&document_, text_, wholeText);
  if (!result) {
    const std::size_t offset = std::min(static_cast<std::size_t>(result.offset), text_.size());
    *problem = placeOfOffset(offset) + ": not well-formed XML (" + result.description() + ")";
    return false;
  }
  // The parser lets one tag that begins with the last byte of all pass.
  if (!text_.empty() && text_.back() == '<') {
    *problem = placeOfOffset(text_.size() - 1) + ": not well-formed XML (a tag without an end)";
    return false;
  }
  pugi::xml_node root;
  for (const pugi::xml_node node : document_.children()) {
    const pugi::xml_node_type type = node.type();
    const bool surplus = (type == pugi::node_element && root) || type == pugi::node_cdata ||
                         (type == pugi::node_pcdata && !isWhiteSpace(node.value()));
    if (surplus) {
      *problem = place(node) + ": not well-formed XML (something besides the one root element)";
      return false;
    }
    if (type == pugi::node_element) root = node;
  }
  if (!root) {
    *problem = "line 1, column 1: no XML element in the file";
    return false;
  }
  AttributeCheck check;
  root.traverse(check);
  if (check.faultyElement) {
    *problem = place(check.faultyElement) + ": not well-formed XML (" + check.problem + ")";
    return false;
  }
  return true;
}

pugi::xml_node XMLReader::root() const {
  return document_.find_child([](pugi::xml_node node) { return node.type() == pugi::node_element; });
}

std::string XMLReader::placeOfOffset(std::size_t offset) const {
  if (lineStarts_.empty()) {
    lineStarts_.push_back(0);
    for (std::size_t at = text_.find('\n'); at != std::string::npos; at = text_.find('\n', at + 1)) {
      lineStarts_.push_back(at + 1);
    }
  }
  const auto nextLine = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
  const auto line = static_cast<std::size_t>(nextLine - lineStarts_.begin());
  if (counted_.line != line) counted_ = Place{*std::prev(nextLine), line, 1};
  // From the place that was asked for last, in either direction: a whole file may stand in one line.
  const auto characters = [this](std::size_t from, std::size_t to) {
    return static_cast<std::size_t>(std::count_if(
        text_.begin() + static_cast<std::ptrdiff_t>(from), text_.begin() + static_cast<std::ptrdiff_t>(to),
        [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
  };
  if (offset >= counted_.offset) {
    counted_.column += characters(counted_.offset, offset);
  } else {
    counted_.column -= characters(offset, counted_.offset);
  }
  counted_.offset = offset;
  return "line " + std::to_string(counted_.line) + ", column " + std::to_string(counted_.column);
}

std::size_t XMLReader::offsetOf(pugi::xml_node node) const {
  const std::ptrdiff_t offset = node.offset_debug();
  if (offset < 0) return 0;
  // The parser points behind what opens the node.
  std::size_t opening = 0;
  if (node.type() == pugi::node_element) opening = std::strlen("<");
  if (node.type() == pugi::node_cdata) opening = std::strlen("<![CDATA[");
  return static_cast<std::size_t>(offset) - std::min(opening, static_cast<std::size_t>(offset));
}

std::string XMLReader::place(pugi::xml_node node) const {
  return node.offset_debug() < 0 ? "line 1, column 1" : placeOfOffset(offsetOf(node));
}

/// Reads the element once more, with all its white space and without comments, as the first child of `piece`; the
/// offset at which that begins. The document is known to be well-formed: what is wrong with the piece is only that the
/// parents' tags may end in it.
std::size_t XMLReader::parseAgain(pugi::xml_node element, pugi::xml_document* piece) const {
  pugi::xml_node behind = element;
  while (behind && !behind.next_sibling()) behind = behind.parent();
  behind = behind.next_sibling();
  const std::size_t start = offsetOf(element);
  const std::size_t end = behind ? offsetOf(behind) : text_.size();
  parseInto(piece, std::string_view(text_).substr(start, end - start), wholeText);
  return start;
}

std::optional<std::string_view> XMLReader::text(pugi::xml_node element, std::string* buffer,
                                                std::string* problem) const {
  const auto failure = [problem](const std::string& place, const std::string& unresolved) {
    if (problem) *problem = place + ": the reference " + unresolved + " stands for no character";
    return std::nullopt;
  };
  if (!element.first_child()) {
    const std::string_view whole = element.value();
    if (!holdsReference(whole)) return whole;
    buffer->clear();
    const std::string unresolved = appendResolvedXML(*buffer, whole, halves_);
    if (unresolved.empty()) return *buffer;
    // Name and text stand in one buffer of the parser's.
    const auto offset = element.offset_debug() + (element.value() - element.name());
    return failure(placeOfOffset(static_cast<std::size_t>(offset)), unresolved);
  }
  pugi::xml_document piece;
  const std::size_t start = parseAgain(element, &piece);
  buffer->clear();
  for (const pugi::xml_node node : piece.first_child().children()) {
    if (node.type() == pugi::node_cdata) {
      *buffer += node.value();
    } else if (node.type() == pugi::node_pcdata) {
      const std::string unresolved = appendResolvedXML(*buffer, node.value(), halves_);
      if (!unresolved.empty()) return failure(placeOfOffset(start + offsetOf(node)), unresolved);
    }
  }
  return *buffer;
}

std::optional<std::string_view> XMLReader::attribute(pugi::xml_node element, const char* name, std::string* buffer,
                                                     std::string* problem) const {
  const pugi::xml_attribute attribute = element.attribute(name);
  if (!attribute) return std::nullopt;
  const std::string_view whole = attribute.value();
  if (!holdsReference(whole)) return whole;
  buffer->clear();
  const std::string unresolved = appendResolvedXML(*buffer, whole, halves_);
  if (unresolved.empty()) return *buffer;
  if (problem) {
    *problem =
        place(element) + ": the reference " + unresolved + " in the attribute \"" + name + "\" stands for no character";
  }
  return std::nullopt;
}

std::optional<std::string> XMLReader::text(pugi::xml_node element, std::string* problem) const {
  std::string buffer;
  const std::optional<std::string_view> found = text(element, &buffer, problem);
  return found ? std::optional<std::string>(*found) : std::nullopt;
}

std::optional<std::string> XMLReader::attribute(pugi::xml_node element, const char* name, std::string* problem) const {
  std::string buffer;
  const std::optional<std::string_view> found = attribute(element, name, &buffer, problem);
  return found ? std::optional<std::string>(*found) : std::nullopt;
}

bool XMLReader::holdsNoText(pugi::xml_node element) {
  if (!isWhiteSpace(element.value())) return false;
  for (const pugi::xml_node node : element.children()) {
    if (node.type() == pugi::node_cdata) return false;
    if (node.type() == pugi::node_pcdata && !isWhiteSpace(node.value())) return false;
  }
  return true;
}

std::string XMLReader::asItStands(pugi::xml_node element) const {
  pugi::xml_document piece;
  parseAgain(element, &piece);
  StringWriter writer;
  piece.first_child().print(writer, "", pugi::format_raw | pugi::format_no_escapes, pugi::encoding_utf8);
  return std::move(writer.text);
}

}  // namespace epg
