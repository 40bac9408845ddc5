#pragma once

#include <map>
#include <string>
#include <vector>

namespace epg::test {

/// An element as libxml2 reads it.
struct LibXMLElement {
  std::string name;
  std::string text;  ///< Its own, without that of its children.
  bool holdsNoText = true;
  std::map<std::string, std::string> attributes;
};

struct LibXMLDocument {
  std::vector<LibXMLElement> elements;  ///< In the document's order; none where it is refused.
  std::vector<int> errors;              ///< Codes of libxml2's; none where the document is accepted.
};

/// Reads a document in UTF-8 by libxml2, which keeps to the letter of XML 1.0.
LibXMLDocument readByLibXML(const std::string& document);

}  // namespace epg::test
