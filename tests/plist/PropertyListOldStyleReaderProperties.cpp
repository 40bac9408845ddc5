// Random values in the old-style form, written in every way that the form allows.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "plist/PropertyListFile.h"
#include "tests/plist/PropertyListPrinting.h"
#include "tests/support/Property.h"
#include "tests/support/RandomText.h"
#include "xml/Surrogates.h"

namespace epg::test {
namespace {

std::string space() {
  std::string made;
  for (Times pieces(0, 2); pieces.next();) {
    made += oneOf<std::string>({" ", "\t", "\n", "\r\n", "/* ; } */", "// = \"\n"});
  }
  return made;
}

std::string escapedUnit(std::uint32_t unit) {
  char text[16];
  std::snprintf(text, sizeof text, onceIn(2) ? "\\U%04X" : "\\u%04x", unit);
  return text;
}

std::string escaped(std::uint32_t character) {
  if (character < 0x10000) return escapedUnit(character);
  const std::uint32_t beyond = character - 0x10000;
  return escapedUnit(0xD800 + (beyond >> 10)) + escapedUnit(0xDC00 + (beyond & 0x3FF));
}

std::uint32_t anyCharacter() {
  return static_cast<std::uint32_t>(
      onceIn(2) ? below(0x80) : oneOf<std::uint32_t>({0xC4, 0x7FF, 0x800, 0xD7FF, 0xE000, 0xFFFF, 0x10000, 0x10FFFF}));
}

/// A text and one of the ways to write it.
struct WrittenText {
  std::string text;
  std::string form;
};

WrittenText quoted() {
  const char quote = onceIn(2) ? '"' : '\'';
  WrittenText made{"", std::string(1, quote)};
  for (Times characters(0, sizeOfCase()); characters.next();) {
    const std::uint32_t drawn = anyCharacter();
    made.text += utf8(drawn);
    const bool needsEscape = drawn == '\\' || drawn == static_cast<unsigned char>(quote);
    const bool letsEscape = drawn >= 0x80 || std::string_view("abfnrtvuUxq01234567").find(static_cast<char>(drawn)) ==
                                                 std::string_view::npos;
    if (needsEscape || onceIn(4)) {
      made.form += letsEscape && onceIn(2) ? "\\" + utf8(drawn) : escaped(drawn);
    } else {
      made.form += utf8(drawn);
    }
  }
  made.form += quote;
  return made;
}

WrittenText text() {
  if (onceIn(2)) return quoted();
  const auto bare = oneOf<std::string>({"a", "title", "0", "a.b-c_d/e:f$g", "Live", "50%"});
  return {bare, bare + " "};  // A comment right behind it would be part of it.
}

struct WrittenList {
  PropertyList list;
  std::string form;
};

WrittenList writtenValue(int levels) {
  const std::size_t kind = levels == 0 ? 0 : below(4);
  if (kind < 2) {
    const WrittenText written = text();
    return {written.text, written.form};
  }
  if (kind == 2) {
    PropertyList::Array elements;
    std::string form = "(" + space();
    for (Times times(0, 4); times.next();) {
      if (!elements.empty()) form += "," + space();
      const WrittenList element = writtenValue(levels - 1);
      elements.push_back(element.list);
      form += element.form + space();
    }
    if (!elements.empty() && onceIn(2)) form += "," + space();
    return {arrayOf(elements), form + ")"};
  }
  PropertyListDictionary entries;
  std::string form = "{" + space();
  bool isFirst = true;
  for (Times times(0, 4); times.next();) {
    if (!isFirst) form += ";" + space();
    isFirst = false;
    const WrittenText key = text();
    const WrittenList under = writtenValue(levels - 1);
    entries.set(key.text, under.list);
    form.append(key.form).append(space()).append("=").append(space()).append(under.form).append(space());
  }
  if (!isFirst && onceIn(2)) form += ";" + space();
  return {PropertyList(entries), form + "}"};
}

TEST(OldStylePropertyListRoundTrip, EveryWayToWriteAValueReadsBackAsIt) {
  expectForCases(usualCases, [] {
    const WrittenList written = writtenValue(3);
    const std::string document = space() + written.form + space();
    tell("document", document);
    std::string problem;
    const auto list = parsePropertyList(document, &problem);
    HOLDS(problem == "");
    HOLDS(list == written.list);
  });
}

TEST(OldStylePropertyListRoundTrip, AFileWithAnyBytesInsertedIsReadOrRefusedWithAReason) {
  expectForCases(usualCases, [] {
    std::string file = writtenValue(3).form;
    file.insert(below(file.size()),
                onceIn(2) ? anyBytes(sizeOfCase()) : oneOf<std::string>({"<*", "\"", "{", ")", "\\"}));
    tell("file", file);
    std::string problem;
    const auto list = parsePropertyList(file, &problem);
    HOLDS(list.has_value() == problem.empty());
  });
}

}  // namespace
}  // namespace epg::test
