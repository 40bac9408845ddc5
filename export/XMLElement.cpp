#include "export/XMLElement.h"

#include "platform/XMLText.h"

namespace epg {

namespace {

constexpr std::size_t spacesPerLevel = 4;

void indent(std::string& document, int level) {
  document.append(static_cast<std::size_t>(level) * spacesPerLevel, ' ');
}

void appendEndTag(std::string& document, const XMLElement& element) {
  document += "</";
  document += element.name;
  document += ">\n";
}

}  // namespace

void XMLElement::addChild(std::optional<XMLElement> child) {
  if (child) children.push_back(std::move(*child));
}

bool appendXMLStartTag(std::string& document, const XMLElement& element) {
  document += '<';
  document += element.name;
  for (const auto& [name, value] : element.attributes) {
    document += ' ';
    document += name;
    document += "=\"";
    if (!appendXMLText(document, value, XMLContext::Attribute)) return false;
    document += '"';
  }
  document += '>';
  return true;
}

bool appendXMLElement(std::string& document, const XMLElement& element, int level) {
  indent(document, level);
  if (!appendXMLStartTag(document, element)) return false;
  if (element.children.empty()) {
    if (!appendXMLText(document, element.text, XMLContext::Text)) return false;
  } else {
    document += '\n';
    for (const XMLElement& child : element.children) {
      if (!appendXMLElement(document, child, level + 1)) return false;
    }
    indent(document, level);
  }
  appendEndTag(document, element);
  return true;
}

}  // namespace epg
