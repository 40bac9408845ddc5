#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace epg {

/// An element of the day file: attributes in order, and either child elements or text. Values are UTF-8, unescaped.
struct XMLElement {
  std::string name;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<XMLElement> children;
  std::string text;  ///< Only where there are no children.

  /// Appends the child; an absent child adds nothing.
  void addChild(std::optional<XMLElement> child);
};

/// Appends the element on lines of its own, `level` steps of four spaces deep, line feeds between. An element that
/// holds only text stands on one line with it, an empty one as start tag and end tag. Attribute values stand between
/// double quotes, apostrophes stay as they are. Characters that XML 1.0 cannot carry become U+FFFD, a carriage return
/// a character reference. False, with an undefined rest appended, when a value is not UTF-8.
bool appendXMLElement(std::string& document, const XMLElement& element, int level);

/// Appends only the start tag, without indentation or line end.
bool appendXMLStartTag(std::string& document, const XMLElement& element);

}  // namespace epg
