#include "xml/XMLReader.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <pugixml.hpp>
#include <string>

#include "tests/xml/Encodings.h"

namespace epg::test {
namespace {

/// The text of the root element; what is wrong, in brackets, where there is none.
std::string textOf(const std::string& bytes) {
  std::string problem;
  const auto reader = XMLReader::parse(bytes, &problem);
  if (!reader) return "(" + problem + ")";
  return reader->text(reader->root(), &problem).value_or("(" + problem + ")");
}

std::string declared(const std::string& encoding) { return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>\n"; }

class ParsedXML : public ::testing::Test {
 protected:
  void parse(const std::string& bytes) {
    reader = XMLReader::parse(bytes, &problem);
    ASSERT_TRUE(reader) << problem;
  }

  std::unique_ptr<XMLReader> reader;
  std::string problem;
};

TEST(XMLEncoding, IsUTF8WithoutADeclaration) { EXPECT_EQ(textOf("<a>é節🎬</a>"), "é節🎬"); }

TEST(XMLEncoding, TellsWhichDocumentsAreInUTF8) {
  EXPECT_TRUE(XMLReader::isInUTF8("<a/>"));
  EXPECT_TRUE(XMLReader::isInUTF8("\xEF\xBB\xBF<a/>"));
  EXPECT_TRUE(XMLReader::isInUTF8(declared("utf-8") + "<a/>"));
  EXPECT_FALSE(XMLReader::isInUTF8(declared("ISO-8859-1") + "<a/>"));
  EXPECT_FALSE(XMLReader::isInUTF8(declared("UTF-16") + "<a/>"));
  EXPECT_FALSE(XMLReader::isInUTF8(utf16("<a/>", ByteOrder::BigEndian)));
}

/// Has the parser underneath find no memory while it lives.
class NoMemoryForTheParser {
 public:
  NoMemoryForTheParser()
      : allocate_(pugi::get_memory_allocation_function()), free_(pugi::get_memory_deallocation_function()) {
    pugi::set_memory_management_functions([](std::size_t) -> void* { return nullptr; }, free_);
  }
  NoMemoryForTheParser(const NoMemoryForTheParser&) = delete;
  NoMemoryForTheParser& operator=(const NoMemoryForTheParser&) = delete;
  ~NoMemoryForTheParser() { pugi::set_memory_management_functions(allocate_, free_); }

 private:
  pugi::allocation_function allocate_;
  pugi::deallocation_function free_;
};

TEST(XMLMemory, RunningOutIsNoFaultOfTheDocument) {
  const NoMemoryForTheParser none;
  std::string problem;
  EXPECT_THROW(XMLReader::parse("<a>b</a>", &problem), std::bad_alloc);
  EXPECT_EQ(problem, "");
}

TEST(XMLEncoding, UTF8MayBeDeclaredInAnyLetters) {
  for (const char* name : {"UTF-8", "utf-8", "Utf-8", "US-ASCII"}) EXPECT_EQ(textOf(declared(name) + "<a>b</a>"), "b");
}

TEST(XMLEncoding, ASCIIUnderEitherName) {
  EXPECT_EQ(textOf(declared("US-ASCII") + "<a>b</a>"), "b");
  EXPECT_EQ(textOf(declared("ascii") + "<a>b</a>"), "b");
}

TEST(XMLEncoding, DeclarationMayUseSingleQuotes) {
  EXPECT_EQ(textOf("<?xml version='1.0' encoding='ISO-8859-1' standalone='yes'?><a>\xE9</a>"), "é");
}

TEST(XMLEncoding, ISO8859_1) {
  for (const char* name : {"ISO-8859-1", "iso-8859-1", "ISO8859-1", "latin1"}) {
    EXPECT_EQ(textOf(declared(name) + "<a>caf\xE9 \xA4 \x80</a>"), "café ¤ \xC2\x80") << name;
  }
}

TEST(XMLEncoding, Windows1252) {
  for (const char* name : {"Windows-1252", "windows-1252", "CP1252"}) {
    EXPECT_EQ(textOf(declared(name) + "<a>\x93"
                                      "caf\xE9\x94 \x80 \x96</a>"),
              "“café” € –")
        << name;
  }
}

TEST(XMLEncoding, ByteThatWindows1252DoesNotHaveIsRefusedWithItsPlace) {
  EXPECT_EQ(textOf("<?xml version=\"1.0\" encoding=\"Windows-1252\"?><a>\x81</a>"),
            "(byte 49: no character of the encoding WINDOWS-1252)");
}

TEST(XMLEncoding, LongTextsAreConvertedWhole) {
  std::string expected;
  for (int i = 0; i < 10000; ++i) expected += "é";
  EXPECT_EQ(textOf(declared("ISO-8859-1") + "<a>" + std::string(10000, '\xE9') + "</a>"), expected);
}

TEST(XMLEncoding, UTF16InAllFourForms) {
  const std::string document = declared("UTF-16") + "<a>é節🎬</a>";
  EXPECT_EQ(textOf("\xFE\xFF" + utf16(document, ByteOrder::BigEndian)), "é節🎬");
  EXPECT_EQ(textOf("\xFF\xFE" + utf16(document, ByteOrder::LittleEndian)), "é節🎬");
  EXPECT_EQ(textOf(utf16(document, ByteOrder::BigEndian)), "é節🎬");
  EXPECT_EQ(textOf(utf16(document, ByteOrder::LittleEndian)), "é節🎬");
}

TEST(XMLEncoding, HalfOfASurrogatePairIsRefusedWithItsPlace) {
  const std::string start = utf16("<a>", ByteOrder::BigEndian);
  const std::string end = utf16("</a>", ByteOrder::BigEndian);
  EXPECT_EQ(textOf(start + "\xD8\x3D" + end), "(byte 9: not UTF-16 (half of a surrogate pair))");
  EXPECT_EQ(textOf(start + "\xDC\x3D" + end), "(byte 7: not UTF-16 (half of a surrogate pair))");
  EXPECT_EQ(textOf(start + "\xD8\x3D\xD8\x3D" + end), "(byte 9: not UTF-16 (half of a surrogate pair))");
  EXPECT_EQ(textOf(start + end + "\xD8\x3D"), "(byte 16: not UTF-16 (the last character is cut off))");
}

TEST(XMLEncoding, ByteOrderMarkBeatsTheDeclaration) {
  EXPECT_EQ(textOf("\xEF\xBB\xBF" + declared("ISO-8859-1") + "<a>é</a>"), "é");
  EXPECT_EQ(textOf("\xFE\xFF" + utf16(declared("UTF-8") + "<a>é</a>", ByteOrder::BigEndian)), "é");
}

TEST(XMLEncoding, AnyOtherIsRefusedByName) {
  EXPECT_EQ(textOf(declared("Shift_JIS") + "<a/>"),
            "(line 1: the encoding SHIFT_JIS is not supported (UTF-8, UTF-16, ISO-8859-1, Windows-1252))");
  EXPECT_EQ(textOf(declared("ISO-8859-15") + "<a/>"),
            "(line 1: the encoding ISO-8859-15 is not supported (UTF-8, UTF-16, ISO-8859-1, Windows-1252))");
}

TEST(XMLEncoding, UTF16DeclaredInAFileThatIsNoneIsRefusedAsSuch) {
  EXPECT_EQ(textOf(declared("utf-16") + "<a/>"), "(line 1: the file says that it is in UTF-16 and is not)");
}

TEST(XMLEncoding, InvalidUTF8IsRefusedWithItsPlace) {
  EXPECT_EQ(textOf("<a>\n\n\xE9t\xE9</a>"), "(line 3, column 1: not UTF-8)");
}

TEST(XMLWellFormedness, SeveralRootsAreRefused) {
  EXPECT_EQ(textOf("<a/>\n <b/>"), "(line 2, column 2: not well-formed XML (something besides the one root element))");
}

TEST(XMLWellFormedness, TextAroundTheRootIsRefused) {
  EXPECT_EQ(textOf("<a/> b").find("(line 1, column "), 0U);
  EXPECT_EQ(textOf("b <a/>"), "(line 1, column 1: not well-formed XML (something besides the one root element))");
  EXPECT_EQ(textOf("<a/>\n<![CDATA[]]>"),
            "(line 2, column 1: not well-formed XML (something besides the one root element))");
}

TEST(XMLWellFormedness, WhiteSpaceCommentsAndInstructionsAroundTheRootAreNot) {
  EXPECT_EQ(textOf("<?xml version=\"1.0\"?>\n<!-- c -->\n<?p i?>\n<!DOCTYPE a>\n<a>b</a>\n<!-- c -->\n<?p i?>\n"), "b");
}

TEST(XMLWellFormedness, NoRootIsRefused) {
  for (const char* bytes : {"", " \n", "<!-- a -->", "<?xml version=\"1.0\"?>"}) {
    EXPECT_EQ(textOf(bytes), "(line 1, column 1: no XML element in the file)");
  }
}

TEST(XMLWellFormedness, TagsThatDoNotMatchAreRefusedWithTheirPlace) {
  EXPECT_EQ(textOf("<a>\n<b>\n</a>").find("(line 3, column "), 0U);
  EXPECT_NE(textOf("<a>").find("not well-formed XML"), std::string::npos);
  EXPECT_NE(textOf("</a>").find("not well-formed XML"), std::string::npos);
  EXPECT_NE(textOf("<a b=c/>").find("not well-formed XML"), std::string::npos);
}

TEST(XMLWellFormedness, AttributeThatStandsTwiceIsRefusedWithItsPlace) {
  EXPECT_EQ(textOf("<a>\n <b x='1' y='2' x='1'/></a>"),
            "(line 2, column 2: not well-formed XML (the attribute \"x\" twice))");
  EXPECT_EQ(textOf("<a x='1' x='2'/>"), "(line 1, column 1: not well-formed XML (the attribute \"x\" twice))");
  EXPECT_EQ(textOf("<a x='1'>t<b x='1'/></a>"), "t");
}

TEST(XMLWellFormedness, TagThatAnUnclosedAttributeSwallowedIsRefused) {
  EXPECT_EQ(textOf("<a><b>c</b>\n<b x=\"1><c y=\"/></a>"),
            "(line 2, column 1: not well-formed XML (a \"<\" in the attribute \"x\"))");
  EXPECT_EQ(textOf("<a x=\"&lt;\">t</a>"), "t");
}

TEST(XMLWellFormedness, ManyAttributesAndDeepNestingTakeLinearTimeAndNoStack) {
  std::string document;
  for (int i = 0; i < 100000; ++i) document += "<a>";
  document += "<b";
  for (int i = 0; i < 100000; ++i) document += " x" + std::to_string(i) + "=''";
  document += "/>";
  for (int i = 0; i < 100000; ++i) document += "</a>";
  EXPECT_EQ(textOf(document), "");
}

TEST(XMLWellFormedness, WhatCannotBeMisunderstoodPasses) {
  EXPECT_EQ(textOf("<a>b<!-- -- -->\x01]]></a>"), "b\x01]]>");
}

TEST(XMLWellFormedness, ProblemMayGoUnasked) {
  EXPECT_FALSE(XMLReader::parse("<a>", nullptr));
  EXPECT_FALSE(XMLReader::parse("\xFF", nullptr));
  EXPECT_TRUE(XMLReader::parse("<a/>", nullptr));
}

TEST_F(ParsedXML, TextLeavesOutWhatChildrenHold) {
  parse("<a>b<c>d</c>e<!-- f -->g<![CDATA[&h]]></a>");
  EXPECT_EQ(reader->text(reader->root(), &problem), "beg&h");
}

TEST_F(ParsedXML, TextOfAnEmptyElementIsEmpty) {
  parse("<a/>");
  EXPECT_EQ(reader->text(reader->root(), &problem), "");
}

TEST_F(ParsedXML, TextWithAnUnknownReferenceIsNoneAndTheProblemNamesIt) {
  parse("<a>\n<b>x &eacute; y</b></a>");
  EXPECT_FALSE(reader->text(reader->root().child("b"), &problem));
  EXPECT_EQ(problem, "line 2, column 4: the reference &eacute; stands for no character");
  EXPECT_FALSE(reader->text(reader->root().child("b"), nullptr));
}

TEST_F(ParsedXML, LooseAmpersandIsNotQuotedWithThePageBehindIt) {
  parse("<a>Tom & Jerry and whatever else they say on the page behind them;</a>");
  EXPECT_FALSE(reader->text(reader->root(), &problem));
  EXPECT_EQ(problem, "line 1, column 4: the reference & stands for no character");
}

TEST_F(ParsedXML, AttributeIsResolved) {
  parse("<a b='x &amp;&#x26; \"y\" &apos;&#233;'/>");
  EXPECT_EQ(reader->attribute(reader->root(), "b", &problem), "x && \"y\" 'é");
}

TEST_F(ParsedXML, WhiteSpaceInAnAttributeIsSpacesUnlessGivenByNumber) {
  parse("<a b='x\ty\nz\r\n&#10;&#9;'/>");
  EXPECT_EQ(reader->attribute(reader->root(), "b", &problem), "x y z \n\t");
}

TEST_F(ParsedXML, MissingAttributeIsNoneWithoutAProblem) {
  parse("<a b=''/>");
  EXPECT_FALSE(reader->attribute(reader->root(), "c", &problem));
  EXPECT_EQ(problem, "");
  EXPECT_EQ(reader->attribute(reader->root(), "b", &problem), "");
}

TEST_F(ParsedXML, AttributeWithAnUnknownReferenceIsNoneAndTheProblemNamesIt) {
  parse("<a>\n  <b c='&d;'/></a>");
  EXPECT_FALSE(reader->attribute(reader->root().child("b"), "c", &problem));
  EXPECT_EQ(problem, "line 2, column 3: the reference &d; in the attribute \"c\" stands for no character");
  EXPECT_FALSE(reader->attribute(reader->root().child("b"), "c", nullptr));
}

TEST_F(ParsedXML, PlacesPointAtTheStartOfATag) {
  parse("<?xml version=\"1.0\"?>\n<a><b/>\n\t<c>é節🎬<d/></c></a>");
  EXPECT_EQ(reader->place(reader->root()), "line 2, column 1");
  EXPECT_EQ(reader->place(reader->root().child("b")), "line 2, column 4");
  EXPECT_EQ(reader->place(reader->root().child("c")), "line 3, column 2");
  EXPECT_EQ(reader->place(reader->root().child("c").child("d")), "line 3, column 8");
}

TEST_F(ParsedXML, PlacesMayBeAskedForInAnyOrder) {
  parse("<a>\n<b/>\n<c/>\n</a>");
  EXPECT_EQ(reader->place(reader->root().child("c")), "line 3, column 1");
  EXPECT_EQ(reader->place(reader->root().child("b")), "line 2, column 1");
  EXPECT_EQ(reader->place(reader->root()), "line 1, column 1");
  EXPECT_EQ(reader->place(reader->root().child("c")), "line 3, column 1");
}

TEST_F(ParsedXML, LinesAreCountedWithEitherLineEnd) {
  parse("<a>\r\n<b/>\r\n<c/></a>");
  EXPECT_EQ(reader->place(reader->root().child("c")), "line 3, column 1");
}

TEST_F(ParsedXML, LinesAreCountedInsideCommentsAndTexts) {
  parse("<a><!--\n\n-->x\ny<b/></a>");
  EXPECT_EQ(reader->place(reader->root().child("b")), "line 4, column 2");
}

TEST_F(ParsedXML, PlaceOfNoNodeIsTheStart) {
  parse("<a/>");
  EXPECT_EQ(reader->place(reader->root().child("b")), "line 1, column 1");
}

TEST_F(ParsedXML, PlacesOfManyElementsTakeLinearTime) {
  std::string document = "<a>\n";
  for (int i = 0; i < 200000; ++i) document += "<b/>\n";
  parse(document + "</a>");
  std::string place;
  for (const auto node : reader->root().children("b")) place = reader->place(node);
  EXPECT_EQ(place, "line 200001, column 1");
}

TEST_F(ParsedXML, PlacesToAndFroTakeLinearTimeAlsoInOneLine) {
  for (const char* const between : {"\n", ""}) {
    std::string document = "<a>";
    for (int i = 0; i < 100000; ++i) document += std::string("<b><c/>é</b>") + between;
    parse(document + "</a>");
    std::string inner;
    std::string outer;
    for (const auto node : reader->root().children("b")) {
      inner = reader->place(node.child("c"));
      outer = reader->place(node);
    }
    EXPECT_EQ(outer, *between ? "line 100000, column 1" : "line 1, column 1199992") << between;
    EXPECT_EQ(inner, *between ? "line 100000, column 4" : "line 1, column 1199995") << between;
  }
}

TEST_F(ParsedXML, ReferencesToHalvesAreRefusedUnlessTheyAreToBeReplaced) {
  parse("<a>&#xD83D;&#xDE00;</a>");
  EXPECT_FALSE(reader->text(reader->root(), &problem));
  EXPECT_EQ(problem, "line 1, column 4: the reference &#xD83D; stands for no character");
}

}  // namespace
}  // namespace epg::test
