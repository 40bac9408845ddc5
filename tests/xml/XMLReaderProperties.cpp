// Random documents, whole and broken, read by the reader and by libxml2, which keeps to the letter of XML 1.0.

#include <gtest/gtest.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/Property.h"
#include "tests/support/RandomText.h"
#include "tests/xml/LibXMLReader.h"
#include "tests/xml/RandomXMLDocument.h"
#include "xml/UTF8.h"
#include "xml/XMLReader.h"

namespace epg::test {
namespace {

using Halves = XMLReader::Halves;

pugi::xml_node followingElement(pugi::xml_node node) {
  do {
    if (node.first_child()) {
      node = node.first_child();
    } else {
      while (node && !node.next_sibling()) node = node.parent();
      node = node.next_sibling();
    }
  } while (node && node.type() != pugi::node_element);
  return node;
}

std::vector<pugi::xml_node> elementsOf(pugi::xml_node root) {
  std::vector<pugi::xml_node> elements;
  for (pugi::xml_node element = root; element; element = followingElement(element)) elements.push_back(element);
  return elements;
}

/// The text that libxml2's document has; nothing where a reference in it stands for no character.
std::optional<std::string> expectedText(std::string text) {
  if (text.find(noText) != std::string::npos) return std::nullopt;
  const std::string control = controlCharacter;
  for (std::size_t at = text.find(control); at != std::string::npos; at = text.find(control, at)) {
    text.replace(at, control.size(), "\x01");
  }
  return text;
}

std::optional<std::string> expectedAttribute(const LibXMLElement& element, const char* name) {
  const auto found = element.attributes.find(name);
  return found == element.attributes.end() ? std::nullopt : expectedText(found->second);
}

void assertReadAs(const XMLReader& reader, const std::vector<LibXMLElement>& expected) {
  const auto elements = elementsOf(reader.root());
  HOLDS(elements.size() == expected.size());
  for (std::size_t i = 0; i < elements.size(); ++i) {
    HOLDS(elements[i].name() == expected[i].name);
    HOLDS(XMLReader::holdsNoText(elements[i]) == expected[i].holdsNoText);
    HOLDS(reader.text(elements[i], nullptr) == expectedText(expected[i].text));
    for (const char* const name : {"a", "b", "c", "e"}) {
      HOLDS(reader.attribute(elements[i], name, nullptr) == expectedAttribute(expected[i], name));
    }
  }
}

std::size_t occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST(XMLReaderProperties, DocumentIsReadAsByLibXMLSaveForWhatTheReaderTakesBesides) {
  expectForCases(2000, [] {
    const Halves halves = oneOf({Halves::Refused, Halves::Replaced});
    const RandomXMLDocument document(halves, true);
    tell("document", document.text);
    tell("document for libxml2", document.strict);
    const LibXMLDocument expected = readByLibXML(document.strict);
    HOLDS(expected.errors.empty());
    std::string problem;
    const auto reader = XMLReader::parse(document.text, &problem, halves);
    HOLDS(problem.empty());
    HOLDS(reader != nullptr);
    assertReadAs(*reader, expected.elements);
  });
}

TEST(XMLReaderProperties, PlacesAndProblemsAreThoseOfTheElementsAndTextsAsWritten) {
  expectForCases(1000, [] {
    const Halves halves = oneOf({Halves::Refused, Halves::Replaced});
    const RandomXMLDocument document(halves, true);
    tell("document", document.text);
    const auto reader = XMLReader::parse(document.text, nullptr, halves);
    HOLDS(reader != nullptr);
    const auto elements = elementsOf(reader->root());
    HOLDS(elements.size() == document.elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i) {
      const RandomXMLDocument::Element& written = document.elements[i];
      const std::string place = placeIn(document.text, written.offset);
      HOLDS(reader->place(elements[i]) == place);
      std::string problem;
      HOLDS(reader->text(elements[i], &problem).has_value() != written.textWithFault.has_value());
      HOLDS(problem == (written.textWithFault ? placeIn(document.text, *written.textWithFault) + ": the reference " +
                                                    written.unresolved + " stands for no character"
                                              : ""));
      problem.clear();
      const bool refused = !reader->attribute(elements[i], "a", &problem) && elements[i].attribute("a");
      HOLDS(problem ==
            (refused ? place + ": the reference &unknown; in the attribute \"a\" stands for no character" : ""));
    }
  });
}

TEST(XMLReaderProperties, ElementAsItStandsIsReadAsInTheDocument) {
  expectForCases(300, [] {
    const RandomXMLDocument document(Halves::Replaced, true);
    tell("document", document.text);
    const auto reader = XMLReader::parse(document.text, nullptr, Halves::Replaced);
    HOLDS(reader != nullptr);
    for (const pugi::xml_node element : elementsOf(reader->root())) {
      const std::string piece = reader->asItStands(element);
      tell("element", piece);
      const auto again = XMLReader::parse(piece, nullptr, Halves::Replaced);
      HOLDS(again != nullptr);
      // A comment or an instruction is left out, and what is left of it is no text.
      for (const char* const leftOut : {"<!--", "<?"}) HOLDS(piece.find(leftOut) == std::string::npos);
      pugi::xml_node there = element;
      for (const pugi::xml_node here : elementsOf(again->root())) {
        HOLDS(std::string(here.name()) == there.name());
        HOLDS(again->text(here, nullptr) == reader->text(there, nullptr));
        HOLDS(XMLReader::holdsNoText(here) == XMLReader::holdsNoText(there));
        for (const char* const name : {"a", "b", "c", "d"}) {
          HOLDS(again->attribute(here, name, nullptr) == reader->attribute(there, name, nullptr));
        }
        there = followingElement(there);
      }
      const bool isRoot = element == reader->root();
      HOLDS(!isRoot || !there);
      for (const char* const reference : {"&#233;", "&unknown;", "&#xD83D;", "&quot;&#10;"}) {
        HOLDS(!isRoot || occurrences(piece, reference) == occurrences(document.text, reference));
      }
    }
  });
}

TEST(XMLReaderProperties, AnythingBesidesTheOneRootElementIsRefusedWithItsPlace) {
  expectForCases(200, [] {
    const RandomXMLDocument document(Halves::Refused, false);
    const std::string surplus = oneTextOf({"<b/>", "<![CDATA[]]>", "<a>x</a>"});
    const std::string text = document.text + surplus;
    tell("document", text);
    std::string problem;
    HOLDS(!XMLReader::parse(text, &problem));
    HOLDS(problem ==
          placeIn(text, document.text.size()) + ": not well-formed XML (something besides the one root element)");
    HOLDS(!XMLReader::parse(document.text + " x", &problem));
  });
}

/// What libxml2 says of a document that the reader takes all the same: see what is said of the lax pieces above.
const std::set<int> laxErrors = {
    // Comments with hyphens, the end of a CDATA section in a text, control characters.
    XML_ERR_HYPHEN_IN_COMMENT, XML_ERR_MISPLACED_CDATA_END, XML_ERR_INVALID_CHAR,
    // References that stand for no character, which matter to who asks for their text.
    XML_ERR_INVALID_CHARREF, XML_ERR_INVALID_DEC_CHARREF, XML_ERR_INVALID_HEX_CHARREF, XML_ERR_NAME_REQUIRED,
    XML_ERR_ENTITYREF_SEMICOL_MISSING, XML_ERR_UNDECLARED_ENTITY,
    // Instructions, which are passed over unread.
    XML_ERR_RESERVED_XML_NAME, XML_ERR_SPACE_REQUIRED};

/// The document without its declaration and its document types, which the reader passes over unread.
std::string withoutWhatIsNotRead(std::string text) {
  for (const char* const type : {"<!DOCTYPE x>", "<!DOCTYPE a>"}) {
    const std::size_t at = text.find(type);
    if (at != std::string::npos) text.erase(at, std::strlen(type));
  }
  if (text.compare(0, 5, "<?xml") == 0) text.erase(0, text.find("?>") + 2);
  return text;
}

const char* const broken[] = {"<",          "</b>",    "<!-- ", "<![CDATA[", "<?p", "<!DOCTYPE x>",
                              "<b a='<'/>", "<?xml x", "<b a>", "<b a='",    "]]>", "<b a='' a=''/>",
                              "</",         "<b"};

const char* const unreadable[] = {"\xFF", "\xC3", "\xED\xA0\x80", "\xE7\xAF"};

/// The length of the UTF-8 character at the start of the bytes, 0 where there is none: table 3-7 of the Unicode
/// standard, byte by byte.
std::size_t characterLength(const std::string& bytes, std::size_t at) {
  const auto byteAt = [&](std::size_t i) {
    return at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U;
  };
  const auto isIn = [&](std::size_t i, unsigned lowest, unsigned highest) {
    return byteAt(i) >= lowest && byteAt(i) <= highest;
  };
  const auto follows = [&](std::size_t i) { return isIn(i, 0x80, 0xBF); };
  if (byteAt(0) < 0x80) return 1;
  if (isIn(0, 0xC2, 0xDF)) return follows(1) ? 2 : 0;
  const bool three = (byteAt(0) == 0xE0 && isIn(1, 0xA0, 0xBF)) || (byteAt(0) == 0xED && isIn(1, 0x80, 0x9F)) ||
                     (isIn(0, 0xE1, 0xEF) && byteAt(0) != 0xED && follows(1));
  if (three) return follows(2) ? 3 : 0;
  const bool four = (byteAt(0) == 0xF0 && isIn(1, 0x90, 0xBF)) || (byteAt(0) == 0xF4 && isIn(1, 0x80, 0x8F)) ||
                    (isIn(0, 0xF1, 0xF3) && follows(1));
  return four && follows(2) && follows(3) ? 4 : 0;
}

TEST(XMLReaderProperties, BrokenDocumentIsRefusedAsByLibXMLSaveForWhatTheReaderTakesBesides) {
  expectForCases(4000, [] {
    const RandomXMLDocument document(Halves::Refused, false);
    std::string text = document.text;
    const std::size_t at = onceIn(8) ? text.size() : below(text.size() + 1);
    const bool isInRoot = at > document.elements[0].offset && at < document.rootEnd;
    if (onceIn(3)) {
      text.erase(at, 1 + below(7));
    } else {
      text.insert(at, broken[below(std::size(broken))]);
    }
    tell("document", text);
    const LibXMLDocument expected = readByLibXML(text);
    std::string problem;
    const auto reader = XMLReader::parse(text, &problem);
    HOLDS((reader == nullptr) == !problem.empty());
    if (expected.errors.empty()) {
      HOLDS(reader != nullptr);
      assertReadAs(*reader, expected.elements);
    } else if (reader) {
      const auto errors = isInRoot ? expected.errors : readByLibXML(withoutWhatIsNotRead(text)).errors;
      tell("errors", errors);
      // The others may be consequences of the first.
      HOLDS(errors.empty() || laxErrors.count(errors.front()) == 1);
    }
  });
}

TEST(XMLReaderProperties, FirstByteThatIsNoTextIsToldWithItsPlace) {
  expectForCases(1000, [] {
    std::string text = RandomXMLDocument(Halves::Refused, true).text;
    const bool zero = onceIn(2);
    // Among the first two bytes a zero would make UTF-16 of the document.
    const std::size_t at = std::max<std::size_t>(below(text.size() + 1), zero ? 2 : 0);
    text.insert(at, zero ? std::string(1, '\0') : unreadable[below(std::size(unreadable))]);
    tell("document", text);
    std::size_t readable = 0;
    while (readable < text.size() && characterLength(text, readable) != 0) readable += characterLength(text, readable);
    std::string problem;
    HOLDS(!XMLReader::parse(text, &problem));
    HOLDS(problem ==
          (readable < text.size() ? placeIn(text, readable) + ": not UTF-8" : placeIn(text, at) + ": a zero byte"));
  });
}

TEST(UTF8Properties, LengthIsThatOfTheCharactersBeforeTheFirstFaultyByte) {
  expectForCases(5000, [] {
    std::string text;
    for (Times parts(0, sizeOfCase()); parts.next();) {
      text += onceIn(4) ? characterFrom(static_cast<std::uint32_t>(numberOfAnyLength())) : std::string(below(11), 'a');
    }
    if (!onceIn(3) && !text.empty()) {
      const std::size_t at = below(text.size());
      text[at] = static_cast<char>(below(256));
      if (onceIn(3)) text.insert(at, unreadable[below(std::size(unreadable))]);
    }
    if (onceIn(3)) text.resize(below(text.size() + 1));
    tell("text", text);
    std::size_t expected = 0;
    while (expected < text.size() && characterLength(text, expected) != 0) {
      expected += characterLength(text, expected);
    }
    HOLDS(lengthOfUTF8(text) == expected);
  });
}

}  // namespace
}  // namespace epg::test
