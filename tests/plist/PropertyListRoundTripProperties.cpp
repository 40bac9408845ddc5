// Random values, written and read again.

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "plist/PropertyListFile.h"
#include "tests/plist/PropertyListPrinting.h"
#include "tests/support/NaivePropertyListXML.h"
#include "tests/support/Property.h"
#include "tests/support/RandomText.h"
#include "xml/XMLReader.h"
#include "xml/XMLText.h"

namespace epg::test {
namespace {

/// A character that XML 1.0 has; those that it treats specially come often.
std::uint32_t character() {
  const auto in = [](std::uint32_t first, std::uint32_t end) {
    return first + static_cast<std::uint32_t>(below(end - first));
  };
  switch (below(5)) {
    case 0:
      return in(0x20, 0x7F);
    case 1:
      return oneOf<std::uint32_t>({'&', '<', '>', '"', '\'', ';', '\t', '\n', '\r', ' ', ']', '#'});
    case 2:
      return in(0x7F, 0xD800);
    case 3:
      return in(0xE000, 0xFFFE);
    default:
      return in(0x10000, 0x110000);
  }
}

std::string textUpTo(std::size_t longest) {
  std::string made;
  for (Times characters(0, longest); characters.next();) made += utf8(character());
  return made;
}

double anyReal() {
  const auto whole = static_cast<double>(numberOfAnyLength());
  const auto fraction = static_cast<double>(below(1000000)) / 1e6;
  return onceIn(2) ? -whole - fraction : whole + fraction;
}

PropertyList scalar(std::size_t size) {
  switch (below(7)) {
    case 0:
      return PropertyList(textUpTo(size));
    case 1:
      return PropertyList::fromInteger(static_cast<std::int64_t>(numberOfAnyLength()));
    case 2:
      return PropertyList::fromUnsigned(numberOfAnyLength());
    case 3:
      return PropertyList::fromReal(anyReal());
    case 4:
      return PropertyList::fromBoolean(onceIn(2));
    case 5:
      // Of seconds, because the file has no place for their fractions.
      return PropertyList::fromDate(Instant::fromUnixTime(static_cast<double>(between(-62135596800, 253402300799))));
    default:
      return PropertyList::fromData(anyBytes(size));
  }
}

/// Each level has half as much in it as the one around it.
PropertyList value(int levels, std::size_t size) {
  const std::size_t kind = levels == 0 ? 0 : below(5);
  if (kind < 3) return scalar(size);
  const auto inner = [&] { return value(levels - 1, size / 2); };
  if (kind == 3) return arrayOf(upTo(size, inner));
  return dictionaryOf(upTo(size, [&] {
    std::string key = textUpTo(size);
    return PropertyListDictionary::Entry(std::move(key), inner());
  }));
}

PropertyList anyValue(int levels) {
  PropertyList made = value(levels, sizeOfCase());
  tell("value", made);
  return made;
}

TEST(PropertyListRoundTrip, WhatIsWrittenReadsBackEqual) {
  expectForCases(usualCases, [] {
    const PropertyList list = anyValue(3);
    const auto file = propertyListXML(list);
    HOLDS(file.has_value());
    std::string problem;
    const auto back = parsePropertyList(*file, &problem);
    HOLDS(problem == "");
    HOLDS(back.has_value());
    HOLDS(*back == list);
  });
}

TEST(PropertyListRoundTrip, TheFileIsThatOfTheNaiveWay) {
  expectForCases(usualCases, [] {
    const PropertyList list = anyValue(3);
    HOLDS(propertyListXML(list) == naivePropertyListXML(list));
  });
}

TEST(PropertyListRoundTrip, EqualValuesGiveTheSameBytes) {
  expectForCases(usualCases, [] {
    const PropertyList list = anyValue(2);
    const auto file = propertyListXML(list);
    HOLDS(file.has_value());
    const auto back = parsePropertyList(*file);
    HOLDS(back.has_value());
    HOLDS(propertyListXML(*back) == file);
  });
}

TEST(PropertyListRoundTrip, AFileWithAnyBytesInsertedIsReadOrRefusedWithAReason) {
  expectForCases(usualCases, [] {
    std::string file = propertyListXML(anyValue(2)).value_or("");
    const std::size_t at = below(file.size());
    file.insert(at, anyBytes(sizeOfCase()));
    tell("file", file);
    std::string problem;
    const auto list = parsePropertyList(file, &problem);
    HOLDS(list.has_value() == problem.empty());
  });
}

TEST(PropertyListRoundTrip, AnyBytesBehindTheBinaryHeaderAreReadOrRefusedWithAReason) {
  expectForCases(usualCases, [] {
    const std::string bytes = anyBytes(sizeOfCase());
    std::string trailer;
    for (int i = 0; i < 32; ++i) trailer += static_cast<char>(below(9));
    tell("bytes", bytes);
    tell("trailer", trailer);
    std::string problem;
    const auto list = parsePropertyList("bplist00" + bytes + trailer, &problem);
    HOLDS(list.has_value() == problem.empty());
  });
}

TEST(PropertyListRoundTrip, NoEntryIsLostWhateverCharactersItsKeyHolds) {
  expectForCases(usualCases, [] {
    const std::vector<std::string> keys = upTo(sizeOfCase(), [] {
      std::string key;
      for (Times characters(0, sizeOfCase()); characters.next();) {
        key += utf8(oneOf<std::uint32_t>({'a', 1, 2, 0xFFFD, 0xFFFE, 0xFFFF}));
      }
      return key;
    });
    tell("keys", keys);
    PropertyListDictionary dictionary;
    for (const std::string& name : keys) dictionary.set(name, name);
    const auto file = propertyListXML(PropertyList(dictionary));
    HOLDS(file.has_value());
    const auto back = parsePropertyList(*file);
    HOLDS(back.has_value());
    HOLDS(back->asDictionary()->size() == dictionary.size());
    HOLDS(naivePropertyListXML(PropertyList(dictionary)) == file);
  });
}

TEST(XMLTextRoundTrip, TextAndAttributeReadBackExactly) {
  expectForCases(usualCases, [] {
    const std::string content = textUpTo(sizeOfCase());
    std::string document;
    StringSink sink(document);
    sink.append("<a b=\"");
    HOLDS(appendXMLText(sink, content, XMLContext::Attribute));
    sink.append("\">");
    HOLDS(appendXMLText(sink, content, XMLContext::Text));
    sink.append("</a>");
    sink.flush();
    std::string problem;
    const auto reader = XMLReader::parse(document, &problem);
    HOLDS(problem == "");
    HOLDS(reader->text(reader->root(), &problem) == content);
    HOLDS(reader->attribute(reader->root(), "b", &problem) == content);
  });
}

}  // namespace
}  // namespace epg::test
