// The XML form of property lists, read.

#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "plist/PropertyListForms.h"
#include "plist/PropertyListScalars.h"
#include "plist/SharedText.h"
#include "xml/XMLReader.h"

namespace epg {

namespace {

bool isNamed(pugi::xml_node element, const char* name) { return std::strcmp(element.name(), name) == 0; }

std::optional<PropertyListScalar> scalarOf(pugi::xml_node element) {
  static const struct {
    const char* name;
    PropertyListScalar scalar;
  } scalars[] = {{"integer", PropertyListScalar::Integer}, {"real", PropertyListScalar::Real},
                 {"true", PropertyListScalar::True},       {"false", PropertyListScalar::False},
                 {"date", PropertyListScalar::Date},       {"data", PropertyListScalar::Data}};
  for (const auto& each : scalars) {
    if (isNamed(element, each.name)) return each.scalar;
  }
  return std::nullopt;
}

bool isElement(pugi::xml_node node) { return node.type() == pugi::node_element; }

/// Reads one value after another out of a parsed document; the first problem ends the reading.
class XMLValueReader {
 public:
  XMLValueReader(const XMLReader& document, std::string* problem) : document_(document), problem_(problem) {}

  std::optional<PropertyList> value(pugi::xml_node element, int depth) {
    const bool isArray = isNamed(element, "array");
    if (!isArray && !isNamed(element, "dict")) return scalar(element);
    // safeguard: the limit on depth
    if (depth > PropertyList::maximumDepth) return failure(element, "nested too deep");
    if (!XMLReader::holdsNoText(element)) return failure(element, "text between the values of a container");
    return isArray ? array(element, depth) : dictionary(element, depth);
  }

  [[gnu::noinline]] std::optional<PropertyList> failure(pugi::xml_node node, std::string_view what) {
    if (problem_) problem_->assign(document_.place(node)).append(": ").append(what);
    return std::nullopt;
  }

 private:
  /// By itself, so that what it needs is not on the stack once for each container around it.
  [[gnu::noinline]] std::optional<PropertyList> scalar(pugi::xml_node element) {
    const std::string name = element.name();
    const std::optional<PropertyListScalar> scalar = scalarOf(element);
    if (!scalar && name != "string") return failure(element, "<" + name + "> is no property-list value");
    const auto text = textOf(element);
    if (!text) return std::nullopt;
    if (!scalar) return PropertyList(texts_.shared(*text));
    std::optional<PropertyList> read = propertyListFromText(*scalar, *text);
    if (read) return read;
    const bool isBoolean = scalar == PropertyListScalar::True || scalar == PropertyListScalar::False;
    return failure(element, isBoolean ? "text inside <" + name + ">" : "the content is no " + name);
  }

  /// The text of an element that must hold nothing else. Lives until the next is asked for.
  [[gnu::noinline]] std::optional<std::string_view> textOf(pugi::xml_node element) {
    if (element.find_child(isElement)) {
      failure(element, "an element inside <" + std::string(element.name()) + ">");
      return std::nullopt;
    }
    return document_.text(element, &buffer_, problem_);
  }

  std::optional<PropertyList> array(pugi::xml_node element, int depth) {
    PropertyList::Array elements;
    for (const pugi::xml_node child : element.children()) {
      if (!isElement(child)) continue;
      std::optional<PropertyList> read = value(child, depth + 1);
      if (!read) return std::nullopt;
      elements.push_back(std::move(*read));
    }
    return PropertyList(std::move(elements));
  }

  std::optional<PropertyList> dictionary(pugi::xml_node element, int depth) {
    std::vector<PropertyListDictionary::Entry> entries;
    std::optional<SharedText> key;
    for (const pugi::xml_node child : element.children()) {
      if (!isElement(child)) continue;
      const bool isKey = isNamed(child, "key");
      if (isKey != !key) return failure(child, isKey ? "a key without a value" : "a value without a key");
      if (isKey) {
        const auto text = textOf(child);
        if (!text) return std::nullopt;
        key = texts_.shared(*text);
        continue;
      }
      std::optional<PropertyList> read = value(child, depth + 1);
      if (!read) return std::nullopt;
      entries.emplace_back(std::move(*key), std::move(*read));
      key.reset();
    }
    if (key) return failure(element, "a key without a value");
    return PropertyList(PropertyListDictionary(std::move(entries)));
  }

  const XMLReader& document_;
  std::string* problem_;
  std::string buffer_;
  SharedTextPool texts_;
};

}  // namespace

std::optional<PropertyList> parseXMLPropertyList(std::string bytes, std::string* problem) {
  std::optional<PropertyList> plain = parseFastXMLPropertyList(bytes);
  return plain ? plain : parseAnyXMLPropertyList(std::move(bytes), problem);
}

std::optional<PropertyList> parseAnyXMLPropertyList(std::string bytes, std::string* problem) {
  // A store would be lost for one character that somebody's tool wrote by halves.
  const std::unique_ptr<XMLReader> document = XMLReader::parse(std::move(bytes), problem, XMLReader::Halves::Replaced);
  if (!document) return std::nullopt;
  XMLValueReader reader(*document, problem);
  const pugi::xml_node root = document->root();
  if (std::strcmp(root.name(), "plist") != 0) return reader.value(root, 1);

  if (!XMLReader::holdsNoText(root)) return reader.failure(root, "text between the values of a container");
  pugi::xml_node top;
  for (const pugi::xml_node child : root.children()) {
    if (!isElement(child)) continue;
    if (top) return reader.failure(child, "a second value in <plist>");
    top = child;
  }
  if (!top) return reader.failure(root, "no value in <plist>");
  return reader.value(top, 1);
}

}  // namespace epg
