// Property lists in XML as whole files: their encodings, and what is none.

#include <gtest/gtest.h>

#include <string>

#include "plist/PropertyListFile.h"
#include "tests/plist/PropertyListPrinting.h"
#include "tests/plist/XMLPropertyLists.h"
#include "tests/xml/Encodings.h"

namespace epg::test {
namespace {

const char* const declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

const char* const manyScripts = "<plist><string>Žluťoučký 節目 🎬 é</string></plist>";

TEST(XMLPropertyListEncoding, IsFoundByMarkOrDeclarationOrFirstBytes) {
  const std::string declared = std::string("<?xml version=\"1.0\" encoding=\"UTF-16\"?>") + manyScripts;
  const struct {
    const char* behaviour;
    std::string bytes;
  } rows[] = {{"UTF-8 without declaration", manyScripts},
              {"UTF-8 with byte-order mark", std::string("\xEF\xBB\xBF") + declaration + manyScripts},
              {"UTF-16, high byte first, marked", "\xFE\xFF" + utf16(declared, ByteOrder::BigEndian)},
              {"UTF-16, low byte first, marked", "\xFF\xFE" + utf16(declared, ByteOrder::LittleEndian)},
              {"UTF-16, high byte first", utf16(manyScripts, ByteOrder::BigEndian)},
              {"UTF-16, low byte first", utf16(manyScripts, ByteOrder::LittleEndian)}};
  for (const auto& row : rows) {
    EXPECT_EQ(parsePropertyList(row.bytes), PropertyList("Žluťoučký 節目 🎬 é")) << row.behaviour;
  }
}

TEST(XMLPropertyListEncoding, UTF16CutOffInTheLastCharacterIsRefused) {
  const std::string whole = "\xFE\xFF" + utf16(manyScripts, ByteOrder::BigEndian);
  EXPECT_EQ(problemOfXML(whole.substr(0, whole.size() - 1)),
            "byte " + std::to_string(whole.size() - 1) + ": not UTF-16 (the last character is cut off)");
}

TEST(XMLPropertyListEncoding, WhatIsNoTextIsRefusedWithItsPlace) {
  EXPECT_EQ(problemOfXML(plist("\n<string>a\xFF</string>")), "line 2, column 10: not UTF-8");
  EXPECT_EQ(problemOfXML(plist("<string>\xED\xA0\x80</string>")), "line 1, column 30: not UTF-8") << "a surrogate";
  EXPECT_EQ(problemOfXML(plist("<string>\xC0\xBC</string>")), "line 1, column 30: not UTF-8") << "an overlong form";
  EXPECT_EQ(problemOfXML(plist(std::string("\n<string>a\0b</string>", 21))), "line 2, column 10: a zero byte");
}

TEST(XMLPropertyListRefusal, NamesWhatIsWrongWithItsPlace) {
  const std::string besides = "line 2, column 1: not well-formed XML (something besides the one root element)";
  const struct {
    const char* behaviour;
    std::string bytes;
    std::string problem;
  } rows[] = {
      {"empty file", "", "line 1, column 1: no XML element in the file"},
      {"file of white space", " \n\n", "line 1, column 1: no XML element in the file"},
      {"file of zero bytes", std::string(4096, '\0'), "line 1, column 1: a zero byte"},
      {"two values", plist("<true/>\n<false/>"), "line 2, column 1: a second value in <plist>"},
      {"no value", plist(""), "line 1, column 1: no value in <plist>"},
      {"text besides the value", plist("<true/>a"), "line 1, column 1: text between the values of a container"},
      {"a second root", plist("<true/>") + "\n<plist/>", besides},
      {"CDATA behind the root", plist("<true/>") + "\n<![CDATA[]]>", besides},
      {"unknown element", plist("<array>\n\t<text>a</text></array>"),
       "line 2, column 2: <text> is no property-list value"},
      {"unknown container", plist("<dictionary><key>a</key><true/></dictionary>"),
       "line 1, column 22: <dictionary> is no property-list value"},
      {"name in other letters", plist("<String>a</String>"), "line 1, column 22: <String> is no property-list value"},
      {"entity of the document's own", "<!DOCTYPE plist [<!ENTITY a \"b\">]>" + plist("<string>&a;</string>"),
       "line 1, column 64: the reference &a; stands for no character"},
      {"external entity", "<!DOCTYPE plist [<!ENTITY a SYSTEM \"secret.txt\">]>\n" + plist("<string>&a;</string>"),
       "line 2, column 30: the reference &a; stands for no character"}};
  for (const auto& row : rows) EXPECT_EQ(problemOfXML(row.bytes), row.problem) << row.behaviour;
}

TEST(XMLPropertyListRefusal, IsOfWhateverIsNoDocument) {
  const std::string good = plist("<true/>");
  for (const std::string& bytes :
       {good + "\ngarbage", good + "\n&amp;", good + "\n<", good + "\n</plist>", "a" + good}) {
    EXPECT_NE(problemOfXML(bytes), "") << bytes;
  }
  EXPECT_NE(problemOfXML("<plist>\n<array><true/></dict></plist>").find("line 2, column "), std::string::npos);
}

TEST(XMLPropertyListRefusal, EntityBomb) {
  std::string bomb = "<!DOCTYPE plist [<!ENTITY a0 \"ha\">\n";
  for (int i = 1; i < 60; ++i) {
    const std::string previous = "&a" + std::to_string(i - 1) + ";";
    bomb += "<!ENTITY a" + std::to_string(i) + " \"" + previous + previous + "\">\n";
  }
  EXPECT_EQ(problemOfXML(bomb + "]>\n" + plist("<string>&a59;</string>")),
            "line 62, column 30: the reference &a59; stands for no character");
}

TEST(XMLPropertyListRefusal, NestingBombOfAMillion) {
  EXPECT_NE(problemOfXML(nested("<array>", "</array>", 1000000)).find("nested too deep"), std::string::npos);
  EXPECT_NE(problemOfXML(nested("<string>", "</string>", 1000000)).find("an element inside <string>"),
            std::string::npos);
  EXPECT_NE(problemOfXML(std::string(1000000, '<')), "");
}

TEST(XMLPropertyListRefusal, FileCutOffAtAnyByte) {
  const std::string file =
      std::string(declaration) + "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"x\">\n" +
      plist(
          "<dict><!-- é --><key>節&amp;</key><array><string>a<![CDATA[<]]></string><integer>1</integer>"
          "<real>1.5</real><true/><date>2001-01-01T00:00:00Z</date><data>YQ==</data></array></dict>");
  ASSERT_EQ(problemOfXML(file), "");
  for (std::size_t size = 0; size < file.size(); ++size) {
    EXPECT_NE(problemOfXML(file.substr(0, size)), "") << "cut off behind " << file.substr(0, size);
  }
}

TEST(XMLPropertyListRefusal, UTF16FileCutOffAtAnyByte) {
  const std::string file = "\xFF\xFE" + utf16(plist("<array><string>🎬</string></array>"), ByteOrder::LittleEndian);
  ASSERT_EQ(problemOfXML(file), "");
  for (std::size_t size = 0; size < file.size(); ++size) EXPECT_NE(problemOfXML(file.substr(0, size)), "") << size;
}

TEST(XMLPropertyListRefusal, AnyByteChangedToAnyOtherNeverCrashes) {
  const std::string file = plist("<dict><key>a</key><data>YQ==</data><key>b</key><string>&lt;é</string></dict>");
  for (std::size_t i = 0; i < file.size(); ++i) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string changed = file;
      changed[i] = static_cast<char>(byte);
      std::string problem;
      const auto list = parsePropertyList(changed, &problem);
      ASSERT_NE(list.has_value(), !problem.empty()) << "byte " << byte << " at " << i;
    }
  }
}

TEST(XMLPropertyListPlace, CountsTheCharactersOfTheDecodedTextWithoutItsMark) {
  const std::string file = "<plist><array>\n<string>日本 🎬</string><nix/></array></plist>";
  const std::string problem = "line 2, column 22: <nix> is no property-list value";
  EXPECT_EQ(problemOfXML(file), problem);
  EXPECT_EQ(problemOfXML("\xFE\xFF" + utf16(file, ByteOrder::BigEndian)), problem);
  EXPECT_EQ(problemOfXML("\xEF\xBB\xBF<nix/>"), "line 1, column 1: <nix> is no property-list value");
}

}  // namespace
}  // namespace epg::test
