// The quick way to read the XML form against the thorough one.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "plist/PropertyListFile.h"
#include "plist/PropertyListForms.h"
#include "tests/plist/PropertyListPrinting.h"
#include "tests/support/HostileText.h"
#include "tests/support/Property.h"

namespace epg {
namespace {

std::string inDocument(const std::string& value) { return std::string(xmlPropertyListHeader) + value + "\n</plist>\n"; }

/// What the quick way must never take for something else than the thorough one does.
void expectTheSameOrNothing(const std::string& document) {
  test::tell("document", document);
  const auto plain = parseFastXMLPropertyList(document);
  if (plain) HOLDS(plain == parseAnyXMLPropertyList(document, nullptr));
}

// Pieces of documents, whole and broken, as they stand next to each other in good files and in bad ones.
std::string anyPiece() {
  static const std::vector<std::string> pieces = {"<dict>",
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
                                                  "<plist>"};
  return test::oneOf(pieces);
}

TEST(FastXMLPropertyList, NeverReadsAnythingElseThanTheThoroughReader) {
  test::expectForCases(test::usualCases, [] {
    expectTheSameOrNothing(inDocument(test::joined(test::upTo(test::sizeOfCase(), anyPiece))));
  });
}

/// A value as text, its elements on lines of their own or not.
std::string goodValue(int depth) {
  const std::string space = test::oneTextOf({"", "\n", "\n\t\t", " "});
  const auto textOfPieces = [] {
    std::string text;
    for (test::Times times(0, test::sizeOfCase()); times.next();) {
      text += test::oneTextOf(
          {"a", " ", "\n", "Fj\xC3\xA6rland", "&amp;", "&lt;", "&#39;", "&#xD83D;&#xDE00;", "&#xDC00;", "]]>", "\x01",
           "'\"", "longer than the texts that are remembered, which are those of at most sixty-four bytes"});
    }
    return text;
  };
  switch (test::below(depth > 3 ? 6 : 9)) {
    case 0:
      return "<integer>" + test::oneTextOf({"0", "-12", " 7 ", "18446744073709551615"}) + "</integer>";
    case 1:
      return test::oneTextOf({"<true/>", "<false/>", "<array/>", "<dict/>"});
    case 2:
      return "<real>" + test::oneTextOf({"1.5", "nan", "-infinity"}) + "</real>";
    case 3:
      return "<date>2012-03-04T18:00:00Z</date>";
    case 4:
      return "<data>\n\tAQID\n\t</data>";
    case 5:
      return "<string>" + textOfPieces() + "</string>";
    case 6: {
      std::string text = "<array>" + space;
      for (test::Times times(0, 3); times.next();) text += goodValue(depth + 1) + space;
      return text + "</array>";
    }
    default: {
      std::string text = "<dict>" + space;
      for (test::Times times(0, 3); times.next();) {
        text += "<key>" + textOfPieces() + "</key>" + space + goodValue(depth + 1) + space;
      }
      return text + "</dict>";
    }
  }
}

TEST(FastXMLPropertyList, IsReadAsTheThoroughReaderReadsIt) {
  test::expectForCases(test::usualCases, [] {
    const std::string document = inDocument(goodValue(0));
    test::tell("document", document);
    const auto plain = parseFastXMLPropertyList(document);
    HOLDS(plain);
    HOLDS(plain == parseAnyXMLPropertyList(document, nullptr));
  });
}

TEST(FastXMLPropertyList, CutOffAnywhereIsNone) {
  test::expectForCases(test::usualCases, [] {
    const std::string document = inDocument(goodValue(0));
    test::tell("document", document);
    const auto length = test::below(document.size() - 1);
    HOLDS(!parseFastXMLPropertyList(document.substr(0, length)));
  });
}

TEST(FastXMLPropertyList, IsWhatIsWritten) {
  PropertyListDictionary item;
  item.set("title", "Kids' & <Family>");
  item.set("tags", PropertyList::Array{"Live", "", "Arts"});
  item.set("empty", PropertyListDictionary());
  item.set("number", PropertyList::fromReal(0.1));
  item.set("when", PropertyList::fromDate(Instant{0}));
  item.set("data", PropertyList::fromData(std::string(200, 'x')));
  const PropertyList value(item);
  EXPECT_EQ(parseFastXMLPropertyList(*propertyListXML(value)), value);
}

TEST(FastXMLPropertyList, IsNotReadBeyondTheDepthThatIsAllowed) {
  std::string nested;
  for (int i = 0; i < PropertyList::maximumDepth; ++i) nested = "<array>" + nested + "</array>";
  EXPECT_TRUE(parseFastXMLPropertyList(inDocument(nested)));
  EXPECT_FALSE(parseFastXMLPropertyList(inDocument("<array>" + nested + "</array>")));
}

TEST(FastXMLPropertyList, LeavesDocumentsOfAnotherLayoutToTheThoroughReader) {
  for (const std::string& document :
       {std::string(), std::string("<plist><string>a</string></plist>"),
        inDocument("<string>a</string><!-- by hand -->"), inDocument("<string>a</string>") + "x",
        inDocument("<string>a\r\n</string>"), inDocument("<string>\xC3</string>"), inDocument("")}) {
    EXPECT_FALSE(parseFastXMLPropertyList(document)) << document;
  }
}

}  // namespace
}  // namespace epg
