#include "tests/xml/NaiveXMLReader.h"

#include <utf8.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <set>
#include <sstream>

#include "xml/Surrogates.h"
#include "xml/XMLText.h"

namespace epg::test {

namespace {

using Halves = XMLReader::Halves;

bool isWhiteSpace(const char* text) { return std::strspn(text, " \t\r\n") == std::strlen(text); }

/// The number in "#65" or "#x41"; 0 where there is none or no character can have it.
std::uint32_t numberInReference(const std::string& reference) {
  const bool hexadecimal = reference.size() > 1 && reference[1] == 'x';
  const std::size_t start = hexadecimal ? 2 : 1;
  if (reference.size() <= start || reference[0] != '#') return 0;
  std::uint32_t point = 0;
  for (std::size_t i = start; i < reference.size(); ++i) {
    const char c = reference[i];
    std::uint32_t digit = 0;
    if (c >= '0' && c <= '9') {
      digit = static_cast<std::uint32_t>(c - '0');
    } else if (hexadecimal && std::isxdigit(static_cast<unsigned char>(c))) {
      digit = static_cast<std::uint32_t>(std::tolower(static_cast<unsigned char>(c)) - 'a' + 10);
    } else {
      return 0;
    }
    point = point * (hexadecimal ? 16 : 10) + digit;
    if (point > 0x10FFFF) return 0;
  }
  return point;
}

/// What stands between "&" and ";" at the start of `raw`; empty where no reference stands there.
std::string referenceAt(const char* raw) {
  // Longer than any reference that can be resolved, so that a stray ampersand does not quote a page.
  constexpr std::size_t longest = 32;
  if (*raw != '&') return {};
  const char* const semicolon = std::strchr(raw, ';');
  if (!semicolon || static_cast<std::size_t>(semicolon - raw) >= longest) return {};
  return std::string(raw + 1, semicolon);
}

/// The character of one of the five names; 0 for any other.
char namedCharacter(const std::string& reference) {
  static const struct {
    const char* name;
    char character;
  } named[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
  for (const auto& entity : named) {
    if (reference == entity.name) return entity.character;
  }
  return 0;
}

/// Appends `raw` with its references resolved; the reference that cannot be, or an empty string.
std::string appendResolved(std::string& text, const char* raw, Halves halves) {
  while (const char* const ampersand = std::strchr(raw, '&')) {
    text.append(raw, ampersand);
    const std::string reference = referenceAt(ampersand);
    if (reference.empty()) return ampersand[1] == ';' ? "&;" : "&";
    raw = ampersand + reference.size() + 2;
    std::uint32_t point = numberInReference(reference);
    if (const char character = namedCharacter(reference)) point = static_cast<unsigned char>(character);
    if (halves == Halves::Replaced && isHighSurrogate(point)) {
      const std::string following = referenceAt(raw);
      const std::uint32_t low = numberInReference(following);
      if (isLowSurrogate(low)) {
        raw += following.size() + 2;
        point = characterOfSurrogates(point, low);
      }
    }
    if (isHighSurrogate(point) || isLowSurrogate(point)) {
      if (halves == Halves::Refused) return "&" + reference + ";";
      text += replacementCharacter;
      continue;
    }
    if (point == 0) return "&" + reference + ";";
    utf8::append(point, std::back_inserter(text));
  }
  text += raw;
  return {};
}

/// The node behind this one in document order, none at the end. A loop takes any depth; recursion would not.
pugi::xml_node followingNode(pugi::xml_node node) {
  if (node.first_child()) return node.first_child();
  while (node && !node.next_sibling()) node = node.parent();
  return node.next_sibling();
}

/// What the parser lets pass although nobody can say what it means; empty where all is well.
std::string problemOfAttributes(pugi::xml_node element) {
  std::set<std::string> seen;
  for (const pugi::xml_attribute attribute : element.attributes()) {
    if (std::strchr(attribute.value(), '<')) {
      return "a \"<\" in the attribute \"" + std::string(attribute.name()) + "\"";
    }
    if (attribute.next_attribute() || !seen.empty()) {
      if (!seen.insert(attribute.name()).second) {
        return "the attribute \"" + std::string(attribute.name()) + "\" twice";
      }
    }
  }
  return {};
}

}  // namespace

std::unique_ptr<NaiveXMLReader> NaiveXMLReader::parse(const std::string& bytes, std::string* problem, Halves halves) {
  std::unique_ptr<NaiveXMLReader> reader(new NaiveXMLReader);
  reader->halves_ = halves;
  reader->text_ = bytes;
  const std::string& document = reader->text_;
  const auto invalid = utf8::find_invalid(document.begin(), document.end());
  if (invalid != document.end()) {
    *problem = reader->placeOfOffset(static_cast<std::size_t>(invalid - document.begin())) + ": not UTF-8";
    return nullptr;
  }
  const std::size_t zero = document.find('\0');
  if (zero != std::string::npos) {
    *problem = reader->placeOfOffset(zero) + ": a zero byte";
    return nullptr;
  }

  // References are resolved here, not by the parser, which lets unknown ones pass as text.
  const unsigned int options =
      pugi::parse_cdata | pugi::parse_eol | pugi::parse_ws_pcdata | pugi::parse_wconv_attribute | pugi::parse_fragment;
  const pugi::xml_parse_result result =
      reader->document_.load_buffer(document.data(), document.size(), options, pugi::encoding_utf8);
  if (!result) {
    const std::size_t offset = std::min(static_cast<std::size_t>(result.offset), document.size());
    *problem = reader->placeOfOffset(offset) + ": not well-formed XML (" + result.description() + ")";
    return nullptr;
  }
  // The parser lets one tag that begins with the last byte of all pass.
  if (!document.empty() && document.back() == '<') {
    *problem = reader->placeOfOffset(document.size() - 1) + ": not well-formed XML (a tag without an end)";
    return nullptr;
  }
  pugi::xml_node root;
  for (const pugi::xml_node node : reader->document_.children()) {
    const bool surplus = node.type() == pugi::node_element
                             ? !root.empty()
                             : node.type() == pugi::node_cdata || !isWhiteSpace(node.value());
    if (surplus) {
      *problem = reader->place(node) + ": not well-formed XML (something besides the one root element)";
      return nullptr;
    }
    if (node.type() == pugi::node_element) root = node;
  }
  if (!root) {
    *problem = "line 1, column 1: no XML element in the file";
    return nullptr;
  }
  for (pugi::xml_node node = root; node; node = followingNode(node)) {
    const std::string inAttributes = problemOfAttributes(node);
    if (!inAttributes.empty()) {
      *problem = reader->place(node) + ": not well-formed XML (" + inAttributes + ")";
      return nullptr;
    }
  }
  return reader;
}

pugi::xml_node NaiveXMLReader::root() const {
  return document_.find_child([](pugi::xml_node node) { return node.type() == pugi::node_element; });
}

std::string NaiveXMLReader::placeOfOffset(std::size_t offset) const {
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

std::string NaiveXMLReader::place(pugi::xml_node node) const {
  const std::ptrdiff_t offset = node.offset_debug();
  if (offset < 0) return "line 1, column 1";
  // The parser points behind what opens the node.
  std::size_t opening = 0;
  if (node.type() == pugi::node_element) opening = std::strlen("<");
  if (node.type() == pugi::node_cdata) opening = std::strlen("<![CDATA[");
  return placeOfOffset(static_cast<std::size_t>(offset) - std::min(opening, static_cast<std::size_t>(offset)));
}

std::optional<std::string> NaiveXMLReader::text(pugi::xml_node element, std::string* problem) const {
  std::string text;
  for (const pugi::xml_node node : element.children()) {
    if (node.type() == pugi::node_cdata) {
      text += node.value();
    } else if (node.type() == pugi::node_pcdata) {
      const std::string unresolved = appendResolved(text, node.value(), halves_);
      if (!unresolved.empty()) {
        *problem = place(node) + ": the reference " + unresolved + " stands for no character";
        return std::nullopt;
      }
    }
  }
  return text;
}

std::optional<std::string> NaiveXMLReader::attribute(pugi::xml_node element, const char* name,
                                                     std::string* problem) const {
  const pugi::xml_attribute attribute = element.attribute(name);
  if (!attribute) return std::nullopt;
  std::string value;
  const std::string unresolved = appendResolved(value, attribute.value(), halves_);
  if (!unresolved.empty()) {
    *problem =
        place(element) + ": the reference " + unresolved + " in the attribute \"" + name + "\" stands for no character";
    return std::nullopt;
  }
  return value;
}

std::string NaiveXMLReader::asItStands(pugi::xml_node element) {
  std::ostringstream stream;
  element.print(stream, "", pugi::format_raw | pugi::format_no_escapes, pugi::encoding_utf8);
  return stream.str();
}

bool NaiveXMLReader::holdsNoText(pugi::xml_node element) {
  for (const pugi::xml_node node : element.children()) {
    if (node.type() == pugi::node_cdata) return false;
    if (node.type() == pugi::node_pcdata && !isWhiteSpace(node.value())) return false;
  }
  return true;
}

}  // namespace epg::test
