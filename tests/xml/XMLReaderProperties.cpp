// Random documents, whole and broken, read by the reader and by one that takes its time.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/Property.h"
#include "tests/support/RandomText.h"
#include "tests/xml/NaiveXMLReader.h"
#include "xml/UTF8.h"
#include "xml/XMLReader.h"

namespace epg::test {
namespace {

const char* const pieces[] = {" ",
                              "\n",
                              "\t ",
                              "\r\n",
                              "x",
                              "text with an é and 節",
                              "&amp;",
                              "&#233;",
                              "&#xD83D;&#xDE00;",
                              "&#xD83D;",
                              "&unknown;",
                              "& ;",
                              "]]>",
                              "\x01",
                              "<!-- c -->",
                              "<!---->",
                              "<![CDATA[]]>",
                              "<![CDATA[ \r\n<b>&amp; ]]>",
                              "<?title p?>",
                              "<?xml version='1.0'?>",
                              "<b/>",
                              "<b  a='1'\n />",
                              "<c a=\"x\ty\r\nz\" b='&lt;&quot;&#10;'/>",
                              "<d a='&unknown;'> </d>",
                              "<d> </d >"};

const char* const broken[] = {"<",          "</b>",    "<!-- ", "<![CDATA[", "<?p", "<!DOCTYPE x>",
                              "<b a='<'/>", "<?xml x", "<b a>", "<b a='",    "]]>", "<b a='' a=''/>",
                              "</",         "<b"};

const char* const unreadable[] = {"\xFF", "\xC3", "\xED\xA0\x80", "\xE7\xAF"};

/// Most of it are pieces of content, some open an element and some close the last one.
std::string document() {
  static const char* const tags[] = {"<a>", "<b c='1' d='2'>", "<title>", "<b>\n  "};
  static const char* const ends[] = {"</a>", "</b>", "</title>", "</b>"};
  std::string document = oneTextOf({"", "<?xml version=\"1.0\"?>\n", "<!-- c -->\r\n", "<?p?>",
                                    "<?xml version='1' version='2'?><!DOCTYPE a>", "\n\n"});
  document += "<a>";
  std::vector<std::string> open = {"</a>"};
  for (Times content(0, sizeOfCase()); content.next();) {
    const std::size_t kind = below(8);
    if (kind == 7) {
      const std::size_t which = below(std::size(tags));
      document += tags[which];
      open.emplace_back(ends[which]);
    } else if (kind == 6 && open.size() > 1) {
      document += open.back();
      open.pop_back();
    } else {
      document += pieces[below(std::size(pieces))];
    }
  }
  for (; !open.empty(); open.pop_back()) document += open.back();
  return document + oneTextOf({"", "\n", "<!-- c --> ", " x", "<b/>", "<![CDATA[]]>", "<?p?>"});
}

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

template <typename Value>
void assertSame(const Value& value, const Value& expected, const std::string& problem,
                const std::string& expectedProblem) {
  HOLDS(value == expected);
  HOLDS(problem == expectedProblem);
}

void assertReadAlike(const std::string& document, XMLReader::Halves halves) {
  tell("document", document);
  std::string problem;
  std::string expectedProblem;
  const auto reader = XMLReader::parse(document, &problem, halves);
  const auto plain = NaiveXMLReader::parse(document, &expectedProblem, halves);
  HOLDS(problem == expectedProblem);
  HOLDS((reader == nullptr) == (plain == nullptr));
  if (!reader) return;
  pugi::xml_node element = reader->root();
  pugi::xml_node expected = plain->root();
  while (expected) {
    HOLDS(std::string(element.name()) == expected.name());
    HOLDS(reader->place(element) == plain->place(expected));
    HOLDS(XMLReader::holdsNoText(element) == NaiveXMLReader::holdsNoText(expected));
    HOLDS(reader->asItStands(element) == NaiveXMLReader::asItStands(expected));
    problem.clear();
    expectedProblem.clear();
    const auto text = reader->text(element, &problem);
    assertSame(text, plain->text(expected, &expectedProblem), problem, expectedProblem);
    for (const char* const name : {"a", "b", "c", "e"}) {
      const auto attribute = reader->attribute(element, name, &problem);
      assertSame(attribute, plain->attribute(expected, name, &expectedProblem), problem, expectedProblem);
    }
    element = followingElement(element);
    expected = followingElement(expected);
  }
  HOLDS(!element);
}

TEST(XMLReaderProperties, DocumentIsReadAsByTheNaiveReader) {
  expectForCases(2000, [] {
    const std::string text = document();
    assertReadAlike(text, oneOf({XMLReader::Halves::Refused, XMLReader::Halves::Replaced}));
  });
}

TEST(XMLReaderProperties, BrokenDocumentIsRefusedAsByTheNaiveReader) {
  expectForCases(2000, [] {
    std::string text = document();
    const std::size_t at = below(text.size() + 1);
    const std::size_t kind = below(8);
    if (kind == 0) {
      // Among the first two bytes it would make UTF-16 of the document.
      text.insert(std::max<std::size_t>(at, 2), 1, '\0');
    } else if (kind == 1) {
      text.insert(at, unreadable[below(std::size(unreadable))]);
    } else if (kind < 4) {
      text.erase(at, 1 + below(7));
    } else {
      text.insert(at, broken[below(std::size(broken))]);
    }
    assertReadAlike(text, XMLReader::Halves::Refused);
  });
}

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
