// The quick way to read the XML form against the thorough one.

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <vector>

#include "platform/PropertyListFile.h"
#include "platform/PropertyListForms.h"
#include "tests/platform/PropertyListPrinting.h"
#include "tests/support/HostileText.h"

namespace epg {
namespace {

std::string inDocument(const std::string& value) { return std::string(xmlPropertyListHeader) + value + "\n</plist>\n"; }

/// What the quick way must never take for something else than the thorough one does.
void expectTheSameOrNothing(const std::string& document) {
  const auto plain = parsePlainXMLPropertyList(document);
  if (plain) RC_ASSERT(plain == parseAnyXMLPropertyList(document, nullptr));
}

// Pieces of documents, whole and broken, as they stand next to each other in good files and in bad ones.
rc::Gen<std::string> anyPiece() {
  return rc::gen::elementOf(std::vector<std::string>{"<dict>",
                                                     "</dict>",
                                                     "<dict/>",
                                                     "<array>",
                                                     "</array>",
                                                     "<array/>",
                                                     "<key>",
                                                     "</key>",
                                                     "<string>",
                                                     "</string>",
                                                     "<string/>",
                                                     "<true/>",
                                                     "<false/>",
                                                     "<true></true>",
                                                     "<integer>",
                                                     "</integer>",
                                                     "<real>",
                                                     "</real>",
                                                     "<date>",
                                                     "</date>",
                                                     "<data>",
                                                     "</data>",
                                                     "12",
                                                     "-7",
                                                     " 0x1F ",
                                                     "1.5e3",
                                                     "nan",
                                                     "2012-03-04T18:00:00Z",
                                                     "AQID",
                                                     "=",
                                                     "a",
                                                     "Fj\xC3\xA6rland",
                                                     "\xEF\xBF\xBE",
                                                     "\xF0\x9F\x98\x80",
                                                     "\xC3",
                                                     "&amp;",
                                                     "&lt;",
                                                     "&#39;",
                                                     "&#xD83D;&#xDE00;",
                                                     "&#xD83D;",
                                                     "&#0;",
                                                     "&unknown;",
                                                     "&",
                                                     ";",
                                                     "]]>",
                                                     "<![CDATA[x]]>",
                                                     "<!-- c -->",
                                                     "<?p i?>",
                                                     "<",
                                                     ">",
                                                     "\"",
                                                     "'",
                                                     "\n",
                                                     "\t",
                                                     "  ",
                                                     "\r\n",
                                                     std::string(1, '\0'),
                                                     "<string >",
                                                     "<string a=\"b\">",
                                                     "</plist>",
                                                     "<plist>"});
}

RC_GTEST_PROP(PlainXMLPropertyList, NeverReadsAnythingElseThanTheThoroughReader, ()) {
  const auto pieces = *rc::gen::container<std::vector<std::string>>(anyPiece());
  expectTheSameOrNothing(inDocument(test::joined(pieces)));
}

/// A value as text, its elements on lines of their own or not.
std::string goodValue(int depth) {
  const std::string space = *rc::gen::element<std::string>("", "\n", "\n\t\t", " ");
  const auto textOfPieces = [] {
    std::string text;
    for (const std::string& piece : *rc::gen::container<std::vector<std::string>>(rc::gen::element<std::string>(
             "a", " ", "\n", "Fj\xC3\xA6rland", "&amp;", "&lt;", "&#39;", "&#xD83D;&#xDE00;", "&#xDC00;", "]]>", "\x01",
             "'\"", "longer than the texts that are remembered, which are those of at most sixty-four bytes"))) {
      text += piece;
    }
    return text;
  };
  switch (*rc::gen::inRange(0, depth > 3 ? 6 : 9)) {
    case 0:
      return "<integer>" + *rc::gen::element<std::string>("0", "-12", " 7 ", "18446744073709551615") + "</integer>";
    case 1:
      return *rc::gen::element<std::string>("<true/>", "<false/>", "<array/>", "<dict/>");
    case 2:
      return "<real>" + *rc::gen::element<std::string>("1.5", "nan", "-infinity") + "</real>";
    case 3:
      return "<date>2012-03-04T18:00:00Z</date>";
    case 4:
      return "<data>\n\tAQID\n\t</data>";
    case 5:
      return "<string>" + textOfPieces() + "</string>";
    case 6: {
      std::string text = "<array>" + space;
      for (int i = *rc::gen::inRange(0, 4); i > 0; --i) text += goodValue(depth + 1) + space;
      return text + "</array>";
    }
    default: {
      std::string text = "<dict>" + space;
      for (int i = *rc::gen::inRange(0, 4); i > 0; --i) {
        text += "<key>" + textOfPieces() + "</key>" + space + goodValue(depth + 1) + space;
      }
      return text + "</dict>";
    }
  }
}

RC_GTEST_PROP(PlainXMLPropertyList, IsReadAsTheThoroughReaderReadsIt, ()) {
  const std::string document = inDocument(goodValue(0));
  const auto plain = parsePlainXMLPropertyList(document);
  RC_ASSERT(plain);
  RC_ASSERT(plain == parseAnyXMLPropertyList(document, nullptr));
}

RC_GTEST_PROP(PlainXMLPropertyList, CutOffAnywhereIsNone, ()) {
  const std::string document = inDocument(goodValue(0));
  const auto length = *rc::gen::inRange<std::size_t>(0, document.size() - 1);
  RC_ASSERT(!parsePlainXMLPropertyList(document.substr(0, length)));
}

TEST(PlainXMLPropertyList, IsWhatIsWritten) {
  PropertyListDictionary item;
  item.set("title", "Kids' & <Family>");
  item.set("tags", PropertyList::Array{"Live", "", "Arts"});
  item.set("empty", PropertyListDictionary());
  item.set("number", PropertyList::fromReal(0.1));
  item.set("when", PropertyList::fromDate(Instant{0}));
  item.set("data", PropertyList::fromData(std::string(200, 'x')));
  const PropertyList value(item);
  EXPECT_EQ(parsePlainXMLPropertyList(*propertyListXML(value)), value);
}

TEST(PlainXMLPropertyList, IsNotReadBeyondTheDepthThatIsAllowed) {
  std::string nested;
  for (int i = 0; i < PropertyList::maximumDepth; ++i) nested = "<array>" + nested + "</array>";
  EXPECT_TRUE(parsePlainXMLPropertyList(inDocument(nested)));
  EXPECT_FALSE(parsePlainXMLPropertyList(inDocument("<array>" + nested + "</array>")));
}

TEST(PlainXMLPropertyList, LeavesDocumentsOfAnotherLayoutToTheThoroughReader) {
  for (const std::string& document :
       {std::string(), std::string("<plist><string>a</string></plist>"),
        inDocument("<string>a</string><!-- by hand -->"), inDocument("<string>a</string>") + "x",
        inDocument("<string>a\r\n</string>"), inDocument("<string>\xC3</string>"), inDocument("")}) {
    EXPECT_FALSE(parsePlainXMLPropertyList(document)) << document;
  }
}

}  // namespace
}  // namespace epg
