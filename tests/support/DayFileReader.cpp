#include "tests/support/DayFileReader.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/relaxng.h>
#include <libxml/tree.h>

#include <initializer_list>
#include <limits>
#include <memory>
#include <utility>

namespace epg::test {

namespace {

template <auto freeIt>
struct Freeing {
  template <typename T>
  void operator()(T* pointer) const {
    freeIt(pointer);
  }
};
using Document = std::unique_ptr<xmlDoc, Freeing<xmlFreeDoc>>;
using Schema = std::unique_ptr<xmlRelaxNG, Freeing<xmlRelaxNGFree>>;
using SchemaParser = std::unique_ptr<xmlRelaxNGParserCtxt, Freeing<xmlRelaxNGFreeParserCtxt>>;
using Validator = std::unique_ptr<xmlRelaxNGValidCtxt, Freeing<xmlRelaxNGFreeValidCtxt>>;

std::string stringFrom(const xmlChar* text) { return text ? reinterpret_cast<const char*>(text) : std::string(); }

std::string lastProblem() {
  const xmlError* const error = xmlGetLastError();
  if (!error) return "no message";
  return "line " + std::to_string(error->line) + ": " + (error->message ? error->message : "");
}

bool followsGrammar(xmlDoc* document) {
  static const Schema schema = [] {
    const SchemaParser parser(xmlRelaxNGNewParserCtxt(EPG_DAY_FILE_GRAMMAR));
    return Schema(parser ? xmlRelaxNGParse(parser.get()) : nullptr);
  }();
  if (!schema) {
    ADD_FAILURE() << EPG_DAY_FILE_GRAMMAR << " is no grammar: " << lastProblem();
    return false;
  }
  const Validator validator(xmlRelaxNGNewValidCtxt(schema.get()));
  std::string problems;
  xmlRelaxNGSetValidStructuredErrors(
      validator.get(),
      // The error is constant in some versions of libxml2 only.
      [](void* all, auto* error) {
        *static_cast<std::string*>(all) += std::to_string(error->line) + ": " + error->message;
      },
      &problems);
  const bool follows = xmlRelaxNGValidateDoc(validator.get(), document) == 0;
  EXPECT_TRUE(follows) << "against the grammar, line " << problems;
  return follows;
}

/// The child elements, which must have these names in this order, with nothing but white space between them.
std::vector<xmlNode*> childrenNamed(const xmlNode* element, std::initializer_list<const char*> names) {
  std::vector<xmlNode*> children;
  for (xmlNode* child = element->children; child; child = child->next) {
    if (child->type == XML_ELEMENT_NODE) {
      children.push_back(child);
    } else {
      EXPECT_TRUE(xmlIsBlankNode(child)) << "text in " << stringFrom(element->name);
    }
  }
  std::vector<std::string> expected(names.begin(), names.end());
  std::vector<std::string> found;
  for (const xmlNode* child : children) found.push_back(stringFrom(child->name));
  EXPECT_EQ(expected, found) << "in " << stringFrom(element->name);
  if (expected != found) children.clear();
  return children;
}

std::vector<xmlNode*> childrenAllNamed(const xmlNode* element, const char* name) {
  std::vector<xmlNode*> children;
  for (xmlNode* child = element->children; child; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) {
      EXPECT_TRUE(xmlIsBlankNode(child)) << "text in " << stringFrom(element->name);
      continue;
    }
    EXPECT_EQ(name, stringFrom(child->name));
    children.push_back(child);
  }
  return children;
}

using Attributes = std::vector<std::pair<std::string, std::string>>;

/// In the order in which they stand.
Attributes attributesOf(const xmlNode* element) {
  Attributes attributes;
  for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
    std::string value;
    for (const xmlNode* part = attribute->children; part; part = part->next) value += stringFrom(part->content);
    attributes.emplace_back(stringFrom(attribute->name), value);
  }
  return attributes;
}

/// The text of an element that holds nothing else.
std::string textOnly(const xmlNode* element) {
  EXPECT_TRUE(attributesOf(element).empty()) << "attributes of " << stringFrom(element->name);
  std::string text;
  for (const xmlNode* child = element->children; child; child = child->next) {
    EXPECT_EQ(XML_TEXT_NODE, child->type) << "in " << stringFrom(element->name);
    text += stringFrom(child->content);
  }
  return text;
}

void readDate(const xmlNode* element, DayFileProgram& program) {
  const auto parts = childrenNamed(element, {"day", "month", "year"});
  if (parts.empty()) return;
  program.day = textOnly(parts[0]);
  program.month = textOnly(parts[1]);
  program.year = textOnly(parts[2]);
}

void readTime(const xmlNode* element, DayFileProgram& program) {
  const auto parts = childrenNamed(element, {"hour", "minute"});
  if (parts.empty()) return;
  program.hour = textOnly(parts[0]);
  program.minute = textOnly(parts[1]);
}

DayFileProgram programFrom(const xmlNode* element) {
  DayFileProgram program;
  const Attributes attributes = attributesOf(element);
  if (!attributes.empty()) {
    EXPECT_EQ("id", attributes.front().first);
    EXPECT_EQ(1U, attributes.size());
    program.id = attributes.front().second;
  }
  const auto parts = childrenNamed(element, {"date", "time", "title", "description", "imgUrl", "tags"});
  if (parts.empty()) return program;
  readDate(parts[0], program);
  readTime(parts[1], program);
  program.title = textOnly(parts[2]);
  program.description = textOnly(parts[3]);
  program.imgUrl = textOnly(parts[4]);
  for (const xmlNode* tag : childrenAllNamed(parts[5], "tag")) program.tags.push_back(textOnly(tag));
  return program;
}

}  // namespace

bool operator==(const DayFileProgram& a, const DayFileProgram& b) {
  return a.id == b.id && a.start() == b.start() && a.title == b.title && a.description == b.description &&
         a.imgUrl == b.imgUrl && a.tags == b.tags;
}

std::ostream& operator<<(std::ostream& stream, const DayFileProgram& program) {
  stream << "program " << (program.id ? *program.id : "without id") << " at " << program.start() << ": "
         << testing::PrintToString(program.title) << ", " << testing::PrintToString(program.description) << ", "
         << testing::PrintToString(program.imgUrl) << ", tags " << testing::PrintToString(program.tags);
  return stream;
}

std::vector<std::string> DayFile::titles() const {
  std::vector<std::string> titles;
  for (const DayFileProgram& program : programs) titles.push_back(program.title);
  return titles;
}

std::vector<std::string> DayFile::starts() const {
  std::vector<std::string> starts;
  for (const DayFileProgram& program : programs) starts.push_back(program.start());
  return starts;
}

DayFile dayFileFrom(const std::string& bytes) {
  DayFile file;
  if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    ADD_FAILURE() << "too long to be read";
    return file;
  }
  const Document document(xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                                        XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE));
  if (!document) {
    ADD_FAILURE() << "no XML: " << lastProblem();
    return file;
  }
  EXPECT_EQ("1.0", stringFrom(document->version));
  EXPECT_EQ("UTF-8", stringFrom(document->encoding));
  if (!followsGrammar(document.get())) return file;

  const xmlNode* const root = xmlDocGetRootElement(document.get());
  EXPECT_EQ(root, document->children) << "something stands beside the root";
  const Attributes attributes = attributesOf(root);
  if (attributes.size() != 2 || attributes[0].first != "dateFrom" || attributes[1].first != "dateTo") {
    ADD_FAILURE() << "attributes of the root: " << testing::PrintToString(attributes);
    return file;
  }
  file.dateFrom = attributes[0].second;
  file.dateTo = attributes[1].second;
  for (const xmlNode* program : childrenAllNamed(root, "program")) file.programs.push_back(programFrom(program));
  return file;
}

}  // namespace epg::test
