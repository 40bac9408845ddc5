#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "plist/PropertyListFile.h"
#include "tests/plist/PropertyListPrinting.h"

namespace epg::test {
namespace {

struct OldStyleDocument {
  const char* behaviour;
  std::string document;
  PropertyList expected;
};

void expectDocumentRead(const std::vector<OldStyleDocument>& rows) {
  for (const OldStyleDocument& row : rows) {
    std::string problem;
    EXPECT_EQ(parsePropertyList(row.document, &problem), row.expected) << row.behaviour;
    EXPECT_EQ(problem, "") << row.behaviour;
  }
}

/// The same for documents that are dictionaries with one value, under "a".
void expectValueRead(const std::vector<OldStyleDocument>& rows) {
  for (const OldStyleDocument& row : rows) {
    std::string problem;
    EXPECT_EQ(parsePropertyList("{ a = " + row.document + "; }", &problem), dictionaryOf({{"a", row.expected}}))
        << row.behaviour;
    EXPECT_EQ(problem, "") << row.behaviour;
  }
}

std::string problemOf(const std::string& document) {
  std::string problem;
  const auto list = parsePropertyList(document, &problem);
  EXPECT_FALSE(list) << document;
  EXPECT_FALSE(parsePropertyList(document)) << "must not need somewhere to put the problem";
  return problem;
}

std::string inUTF16(const std::string& ascii, bool isBigEndian) {
  std::string bytes;
  for (const char c : ascii) bytes += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  return bytes;
}

TEST(OldStylePropertyList, IsReadAsGNUstepWritesIt) {
  const std::string file =
      "{\n    \"E 1\" = {\n\ttags = (\n\t    Live,\n\t    \"A b\"\n\t);\n\ttitle = \"Q\\U00C4\\\"\\\\\";\n    };\n"
      "    empty = {\n    };\n    none = (\n    );\n    n = <*I-5>;\n    y = <*BY>;\n    r = <*R1.5>;\n"
      "    d = <*D2001-09-09 01:46:40 +0000>;\n    data = <[YWJj/w==]>;\n}";
  EXPECT_EQ(parsePropertyList(file),
            dictionaryOf({{"E 1", dictionaryOf({{"tags", arrayOf({"Live", "A b"})}, {"title", "QÄ\"\\"}})},
                          {"empty", dictionaryOf({})},
                          {"none", arrayOf({})},
                          {"n", PropertyList::fromInteger(-5)},
                          {"y", PropertyList::fromBoolean(true)},
                          {"r", PropertyList::fromReal(1.5)},
                          {"d", dateAt(1000000000)},
                          {"data", data("abc\xFF")}}));
}

TEST(OldStylePropertyList, HasContainersOfEveryShape) {
  const PropertyList pair = dictionaryOf({{"a", "b"}, {"c", "d"}});
  expectDocumentRead(
      {{"without spaces", "{a=b;c=d;}", pair},
       {"without the last semicolon", "{ a = b; c = d }", pair},
       {"with a comma behind the last element", "{ a = (b, c,); }", dictionaryOf({{"a", arrayOf({"b", "c"})}})},
       {"an array on top", "( a, (b), {} )", arrayOf({"a", arrayOf({"b"}), dictionaryOf({})})},
       {"without braces, as files of strings are", "a = b;\n\"c\" = d;\n", pair},
       {"a key twice, of which the last counts", "{ a = x; a = b; c = d; }", pair},
       {"a text alone", "hello", "hello"},
       {"a text alone in quotes", " \"hel lo\" ", "hel lo"},
       {"comments wherever space may be", "// one\n/* two */{/**/a /* = */ =//\rb; c = d; /* ; */ } // end", pair},
       {"tabs, returns, vertical tabs and form feeds", "\v\f{\ta\r=\nb;c=d;}\r\n", pair}});
}

TEST(OldStylePropertyList, HasTextsWithAndWithoutQuotes) {
  const std::string bare = "x-y.z_w/q:r$s+t@u~v*c#d!e%f^g&h|i?j[k]09";
  expectValueRead({{"all that needs no quotes", bare, bare},
                   {"slashes inside are no comment", "a//b/*c", "a//b/*c"},
                   {"single quotes", "'it is \"so\"'", "it is \"so\""},
                   {"an apostrophe in double quotes", "\"Kids' Corner\"", "Kids' Corner"},
                   {"nothing", "\"\"", ""},
                   {"several lines", "\"one\ntwo\r\nthree\"", "one\ntwo\r\nthree"},
                   {"characters of every length", "\"ä節🎬\"", "ä節🎬"},
                   {"what looks like the rest of the form", "\"; } // /* < > = ,\"", "; } // /* < > = ,"},
                   {"what looks like markup", "\"<p>\"", "<p>"}});
}

TEST(OldStylePropertyList, HasEscapedCharacters) {
  expectValueRead({{"controls", R"("\a\b\f\n\r\t\v")", "\a\b\f\n\r\t\v"},
                   {"quotes and backslashes", R"("\"\'\\")", "\"'\\"},
                   {"what has no meaning, as itself", R"("\q\e\;\ ")", "qe; "},
                   {"a character of several bytes behind a backslash", "\"\\ä\\🎬\"", "ä🎬"},
                   {"a line that is continued", "\"a\\\nb\"", "a\nb"},
                   {"octal numbers", R"("\1\12\101\1234\08\377\777")", "\x01\nAS4" + std::string(1, '\0') + "8ÿǿ"},
                   {"numbers of UTF-16", R"("\U00C4\u00e4\U41g\U20AC1")", "ÄäAg€1"},
                   {"a pair of surrogates", R"("\UD83C\UDFAC\Ud83c\udfac")", "🎬🎬"},
                   {"a U without a number", R"("\U\ug")", "Uug"}});
}

TEST(OldStylePropertyList, HasTheReplacementCharacterForHalfASurrogatePair) {
  const std::string one = "\xEF\xBF\xBD";
  expectValueRead({{"the first half, at the end", R"("\UD83C")", one},
                   {"the first half, before text", R"("\UD83Cx")", one + "x"},
                   {"the first half, before an escape", R"("\UD83C\n")", one + "\n"},
                   {"the first half twice", R"("\UD83C\UD83C\UDFAC")", one + "🎬"},
                   {"the second half", R"("x\UDFAC")", "x" + one}});
}

TEST(OldStylePropertyList, HasData) {
  expectValueRead({{"none", "<>", data("")},
                   {"hexadecimal in either case", "<61fF>", data("a\xFF")},
                   {"with spaces anywhere", "< 6 1\n62\t>", data("ab")},
                   {"base 64", "<[ YW\nJj ]>", data("abc")},
                   {"no base 64", "<[]>", data("")}});
}

TEST(OldStylePropertyList, HasTypedValues) {
  const double infinity = std::numeric_limits<double>::infinity();
  expectValueRead({{"the largest integer", "<*I18446744073709551615>", PropertyList::fromUnsigned(UINT64_MAX)},
                   {"the smallest integer", "<*I-9223372036854775808>", PropertyList::fromInteger(INT64_MIN)},
                   {"with quotes and spaces", "<*I \"5\" >", PropertyList::fromInteger(5)},
                   {"no", "<*BN>", PropertyList::fromBoolean(false)},
                   {"a real", "<*R-1.5e-3>", PropertyList::fromReal(-0.0015)},
                   {"infinity", "<*Rinf>", PropertyList::fromReal(infinity)},
                   {"not a number", "<*Rnan>", PropertyList::fromReal(std::nan(""))},
                   {"a date", "<*D2012-03-04 18:00:00 +0000>", dateAt(1330884000)},
                   {"a date east of Greenwich", "<*D2012-03-04 18:00:00 +0130>", dateAt(1330884000 - 5400)},
                   {"a date west of Greenwich", "<*D2012-03-04 18:00:00 -0130>", dateAt(1330884000 + 5400)},
                   {"a date with a fraction", "<*D2012-03-04 18:00:00.25 +0000>", dateAt(1330884000.25)}});
}

TEST(OldStylePropertyList, IsReadInEveryEncoding) {
  const PropertyList expected = dictionaryOf({{"a", "b"}});
  const std::string document = "\n{ a = b; }";
  for (const bool isBigEndian : {false, true}) {
    const std::string bytes = inUTF16(document, isBigEndian);
    EXPECT_EQ(parsePropertyList((isBigEndian ? "\xFE\xFF" : "\xFF\xFE") + bytes), expected) << isBigEndian;
    EXPECT_EQ(parsePropertyList(bytes), expected) << isBigEndian;
  }
  EXPECT_EQ(parsePropertyList("\xEF\xBB\xBF" + document), expected);
}

TEST(OldStylePropertyList, LeavesTheXMLFormToItsReader) {
  const PropertyList expected = dictionaryOf({{"a", "b"}});
  const std::string document = "<dict><key>a</key><string>b</string></dict>";
  for (const char* const before : {"", " \n", "<!-- { a = c; } -->", "<?xml version=\"1.0\"?>", "<!DOCTYPE plist>"}) {
    EXPECT_EQ(parsePropertyList(before + document), expected) << before;
  }
  EXPECT_EQ(parsePropertyList("\xFF\xFE" + inUTF16(document, false)), expected);
  EXPECT_EQ(parsePropertyList("<plist>" + document + "</plist>"), expected);
}

TEST(OldStylePropertyListRefusal, SaysWhatIsWrongAndWhere) {
  const struct {
    const char* document;
    const char* problem;
  } rows[] = {{"{", "line 1, column 2: the file ends too early"},
              {"{ a = b;\n  c", "line 2, column 4: '=' is missing"},
              {"{ a = b;\n  c = ", "line 2, column 7: the file ends too early"},
              {"{ a = b c = d; }", "line 1, column 9: ';' or '}' is missing"},
              {"{ = b; }", "line 1, column 3: neither a value nor a key begins here"},
              {"{ a = ; }", "line 1, column 7: neither a value nor a key begins here"},
              {"{ a = b;; }", "line 1, column 9: neither a value nor a key begins here"},
              {"{ (a) = b; }", "line 1, column 3: neither a value nor a key begins here"},
              {"{ ä = b; }", "line 1, column 3: neither a value nor a key begins here"},
              {"{ \"ä\" = é; }", "line 1, column 9: neither a value nor a key begins here"},
              {"{ a = (b c); }", "line 1, column 10: ',' or ')' is missing"},
              {"{ a = (,); }", "line 1, column 8: neither a value nor a key begins here"},
              {"{ a = (b; }", "line 1, column 9: ',' or ')' is missing"},
              {"{ a = b; } c", "line 1, column 12: something after the end of the property list"},
              {"{ a = b; }\n{ a = b; }", "line 2, column 1: something after the end of the property list"},
              {"{ a = \"b; }", "line 1, column 7: the text has no end"},
              {"{ a = \"b\\\"; }", "line 1, column 7: the text has no end"},
              {"{ a = \"b\\", "line 1, column 7: the text has no end"},
              {"{ a = 'b\"; }", "line 1, column 7: the text has no end"},
              {"{ /* a = b; }", "line 1, column 3: the comment has no end"},
              {"{ a /*", "line 1, column 5: the comment has no end"},
              {"{ a = <616>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <6g>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <61; }", "line 1, column 7: '>' is missing"},
              {"{ a = <[YWJ!]>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*Z5>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*BX>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*I>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*I1.5>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*I18446744073709551616>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*R>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*D2001-09-09>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*D2001-13-09 01:46:40 +0000>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*D2001-09-09T01:46:40 +0000>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*D2001-09-09 01:46:40.x +0000>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*D2001-09-09 01:46:4012 +0000>; }", "line 1, column 7: no value between '<' and '>'"},
              {"{ a = <*D2001-09-09 01:46:40 +00x0>; }", "line 1, column 7: no value between '<' and '>'"},
              {"a = b; c", "line 1, column 9: '=' is missing"},
              {"a = b", "line 1, column 6: ';' is missing"},
              {"a b", "line 1, column 3: '=' is missing"},
              {"{ a = \"\xFF\"; }", "line 1, column 8: no UTF-8"},
              {"{ a = \"\xC3\"; }", "line 1, column 8: no UTF-8"}};
  for (const auto& row : rows) EXPECT_EQ(problemOf(row.document), row.problem) << row.document;
}

TEST(OldStylePropertyListRefusal, IsOfZeroBytesOutsideOfTexts) {
  EXPECT_EQ(problemOf(std::string("{ a = b;  \0 }", 13)), "line 1, column 11: neither a value nor a key begins here");
  EXPECT_EQ(problemOf(std::string("{ a = b\0; }", 11)), "line 1, column 8: ';' or '}' is missing");
  EXPECT_EQ(parsePropertyList(std::string("{ a = \"b\0\"; }", 13)), dictionaryOf({{"a", std::string("b\0", 2)}}));
}

TEST(OldStylePropertyListRefusal, IsOfUTF16ThatIsCutOff) {
  EXPECT_EQ(problemOf("\xFF\xFE" + inUTF16("{ a = b; }", false) + " "),
            "byte 23: not UTF-16 (the last character is cut off)");
  EXPECT_EQ(problemOf("\xFF\xFE" + inUTF16("{ a = b; ", false)), "line 1, column 10: the file ends too early");
}

std::string nestedOldStyle(const std::string& open, const std::string& close, int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += open;
  for (int i = 0; i < depth; ++i) text += close;
  return text;
}

TEST(OldStylePropertyListRefusal, IsOfContainersNestedTooDeep) {
  EXPECT_EQ(parsePropertyList(nestedOldStyle("(", ")", 512)), arraysNested(512));
  EXPECT_EQ(problemOf(nestedOldStyle("(", ")", 513)), "line 1, column 513: nested too deep");
  EXPECT_EQ(problemOf(nestedOldStyle("{a=", "}", 513)), "line 1, column 1537: nested too deep");
  EXPECT_EQ(problemOf(nestedOldStyle("(", ")", 1000000)), "line 1, column 513: nested too deep");
  EXPECT_EQ(problemOf(std::string(1000000, '{')), "line 1, column 2: neither a value nor a key begins here");
}

}  // namespace
}  // namespace epg::test
