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

}  // namespace epg
