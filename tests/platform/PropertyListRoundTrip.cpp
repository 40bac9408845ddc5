// Random values, written and read again.

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/PropertyListFile.h"
#include "platform/XMLReader.h"
#include "platform/XMLText.h"
#include "tests/platform/PropertyListPrinting.h"
#include "tests/support/PlainPropertyListXML.h"

namespace epg {

/// How RapidCheck shows a value that fails.
inline void showValue(const PropertyList& list, std::ostream& out) { PrintTo(list, &out); }

namespace test {
namespace {

std::string inUTF8(const std::vector<std::uint32_t>& points) {
  std::string text;
  const auto byte = [&](std::uint32_t value) { text += static_cast<char>(value); };
  for (const std::uint32_t point : points) {
    if (point < 0x80) {
      byte(point);
      continue;
    }
    if (point < 0x800) {
      byte(0xC0 | point >> 6);
    } else if (point < 0x10000) {
      byte(0xE0 | point >> 12);
      byte(0x80 | (point >> 6 & 0x3F));
    } else {
      byte(0xF0 | point >> 18);
      byte(0x80 | (point >> 12 & 0x3F));
      byte(0x80 | (point >> 6 & 0x3F));
    }
    byte(0x80 | (point & 0x3F));
  }
  return text;
}

/// A character that XML 1.0 has; those that it treats specially come often.
rc::Gen<std::uint32_t> character() {
  static const std::vector<std::uint32_t> special = {'&', '<', '>', '"', '\'', ';', '\t', '\n', '\r', ' ', ']', '#'};
  return rc::gen::oneOf(rc::gen::elementOf(special), rc::gen::inRange<std::uint32_t>(0x20, 0x7F),
                        rc::gen::inRange<std::uint32_t>(0x7F, 0xD800), rc::gen::inRange<std::uint32_t>(0xE000, 0xFFFE),
                        rc::gen::inRange<std::uint32_t>(0x10000, 0x110000));
}

rc::Gen<std::string> text() {
  return rc::gen::map(rc::gen::container<std::vector<std::uint32_t>>(character()), inUTF8);
}

rc::Gen<PropertyList> scalar() {
  // Of seconds, because the file has no place for their fractions.
  const auto second = rc::gen::inRange<std::int64_t>(-62135596800, 253402300800);
  return rc::gen::oneOf(rc::gen::map(text(), [](std::string value) { return PropertyList(std::move(value)); }),
                        rc::gen::map(rc::gen::arbitrary<std::int64_t>(), PropertyList::fromInteger),
                        rc::gen::map(rc::gen::arbitrary<std::uint64_t>(), PropertyList::fromUnsigned),
                        rc::gen::map(rc::gen::arbitrary<double>(), PropertyList::fromReal),
                        rc::gen::map(rc::gen::arbitrary<bool>(), PropertyList::fromBoolean),
                        rc::gen::map(second,
                                     [](std::int64_t value) {
                                       return PropertyList::fromDate(Instant::fromUnixTime(static_cast<double>(value)));
                                     }),
                        rc::gen::map(rc::gen::arbitrary<std::string>(), PropertyList::fromData));
}

rc::Gen<PropertyList> value(int levels) {
  if (levels == 0) return scalar();
  const auto inner = rc::gen::scale(0.5, value(levels - 1));
  const auto array = rc::gen::map(rc::gen::container<PropertyList::Array>(inner),
                                  [](PropertyList::Array elements) { return arrayOf(std::move(elements)); });
  const auto dictionary =
      rc::gen::map(rc::gen::container<std::vector<PropertyListDictionary::Entry>>(rc::gen::pair(text(), inner)),
                   [](std::vector<PropertyListDictionary::Entry> entries) { return dictionaryOf(std::move(entries)); });
  return rc::gen::weightedOneOf<PropertyList>({{3, scalar()}, {1, array}, {1, dictionary}});
}

RC_GTEST_PROP(PropertyListRoundTrip, WhatIsWrittenReadsBackEqual, ()) {
  const PropertyList list = *value(3);
  const auto file = propertyListXML(list);
  RC_ASSERT(file.has_value());
  std::string problem;
  const auto back = parsePropertyList(*file, &problem);
  RC_ASSERT(problem == "");
  RC_ASSERT(back.has_value());
  RC_ASSERT(*back == list);
}

RC_GTEST_PROP(PropertyListRoundTrip, TheFileIsThatOfThePlainWay, ()) {
  const PropertyList list = *value(3);
  RC_ASSERT(propertyListXML(list) == plainPropertyListXML(list));
}

RC_GTEST_PROP(PropertyListRoundTrip, EqualValuesGiveTheSameBytes, ()) {
  const PropertyList list = *value(2);
  const auto file = propertyListXML(list);
  RC_ASSERT(file.has_value());
  const auto back = parsePropertyList(*file);
  RC_ASSERT(back.has_value());
  RC_ASSERT(propertyListXML(*back) == file);
}

RC_GTEST_PROP(PropertyListRoundTrip, AFileWithAnyBytesInsertedIsReadOrRefusedWithAReason, ()) {
  std::string file = propertyListXML(*value(2)).value_or("");
  const auto at = *rc::gen::inRange<std::size_t>(0, file.size());
  file.insert(at, *rc::gen::arbitrary<std::string>());
  std::string problem;
  const auto list = parsePropertyList(file, &problem);
  RC_ASSERT(list.has_value() == problem.empty());
}

RC_GTEST_PROP(PropertyListRoundTrip, AnyBytesBehindTheBinaryHeaderAreReadOrRefusedWithAReason, ()) {
  const auto bytes = *rc::gen::arbitrary<std::string>();
  const auto trailer = *rc::gen::container<std::string>(32, rc::gen::inRange<char>(0, 9));
  std::string problem;
  const auto list = parsePropertyList("bplist00" + bytes + trailer, &problem);
  RC_ASSERT(list.has_value() == problem.empty());
}

RC_GTEST_PROP(PropertyListRoundTrip, NoEntryIsLostWhateverCharactersItsKeyHolds, ()) {
  static const std::vector<std::uint32_t> alphabet = {'a', 1, 2, 0xFFFD, 0xFFFE, 0xFFFF};
  const auto key = rc::gen::map(rc::gen::container<std::vector<std::uint32_t>>(rc::gen::elementOf(alphabet)), inUTF8);
  const auto keys = *rc::gen::container<std::vector<std::string>>(key);
  PropertyListDictionary dictionary;
  for (const std::string& name : keys) dictionary.set(name, name);
  const auto file = propertyListXML(PropertyList(dictionary));
  RC_ASSERT(file.has_value());
  const auto back = parsePropertyList(*file);
  RC_ASSERT(back.has_value());
  RC_ASSERT(back->asDictionary()->size() == dictionary.size());
  RC_ASSERT(plainPropertyListXML(PropertyList(dictionary)) == file);
}

RC_GTEST_PROP(XMLTextRoundTrip, TextAndAttributeReadBackExactly, ()) {
  const std::string content = *text();
  std::string document;
  StringSink sink(document);
  sink.append("<a b=\"");
  RC_ASSERT(appendXMLText(sink, content, XMLContext::Attribute));
  sink.append("\">");
  RC_ASSERT(appendXMLText(sink, content, XMLContext::Text));
  sink.append("</a>");
  sink.flush();
  std::string problem;
  const auto reader = XMLReader::parse(document, &problem);
  RC_ASSERT(problem == "");
  RC_ASSERT(reader->text(reader->root(), &problem) == content);
  RC_ASSERT(reader->attribute(reader->root(), "b", &problem) == content);
}

}  // namespace
}  // namespace test
}  // namespace epg
