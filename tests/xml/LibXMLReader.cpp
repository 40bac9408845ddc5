#include "tests/xml/LibXMLReader.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>

namespace epg::test {

namespace {

std::string stringOf(const xmlChar* text) { return text ? reinterpret_cast<const char*>(text) : std::string(); }

bool isWhiteSpaceAlone(const std::string& text) { return text.find_first_not_of(" \t\r\n") == std::string::npos; }

LibXMLElement elementOf(const xmlNode* node) {
  LibXMLElement element;
  element.name = stringOf(node->name);
  for (const xmlNode* child = node->children; child; child = child->next) {
    const bool isText = child->type == XML_TEXT_NODE;
    if (!isText && child->type != XML_CDATA_SECTION_NODE) continue;
    element.text += stringOf(child->content);
    if (!isText || !isWhiteSpaceAlone(stringOf(child->content))) element.holdsNoText = false;
  }
  for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
    std::string& value = element.attributes[stringOf(attribute->name)];
    for (const xmlNode* part = attribute->children; part; part = part->next) value += stringOf(part->content);
  }
  return element;
}

}  // namespace

LibXMLDocument readByLibXML(const std::string& document) {
  LibXMLDocument read;
  const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(xmlNewParserCtxt(), &xmlFreeParserCtxt);
  parser->_private = &read.errors;
  // The error is constant in some versions of libxml2 only.
  parser->sax->serror = [](void* context, auto* error) {
    if (error->level < XML_ERR_ERROR) return;
    static_cast<std::vector<int>*>(static_cast<xmlParserCtxt*>(context)->_private)->push_back(error->code);
  };
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> tree(
      xmlCtxtReadMemory(parser.get(), document.data(), static_cast<int>(document.size()), nullptr, "UTF-8",
                        XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_NOENT),
      &xmlFreeDoc);
  if (!tree) return read;
  const xmlNode* node = xmlDocGetRootElement(tree.get());
  while (node) {
    if (node->type == XML_ELEMENT_NODE) read.elements.push_back(elementOf(node));
    if (node->type == XML_ELEMENT_NODE && node->children) {
      node = node->children;
      continue;
    }
    while (node && !node->next) node = node->parent;
    if (node) node = node->next;
  }
  return read;
}

}  // namespace epg::test
