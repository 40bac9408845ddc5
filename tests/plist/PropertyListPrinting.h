#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "plist/PropertyList.h"

// How GoogleTest shows property lists that differ.

namespace epg {

inline void PrintTo(const PropertyList& list, std::ostream* out) {
  if (const auto text = list.asString()) *out << '"' << *text << '"';
  if (const auto integer = list.asInteger()) *out << (integer->negative ? "-" : "") << integer->magnitude;
  if (const auto* real = list.asReal()) *out << "real " << *real;
  if (const auto* boolean = list.asBoolean()) *out << (*boolean ? "true" : "false");
  if (const auto* date = list.asDate()) *out << "date " << date->secondsSinceReferenceDate;
  if (const auto data = list.asData()) *out << data->size() << " bytes";
  if (list.asForeign()) *out << "foreign";
  if (const auto* array = list.asArray()) {
    *out << '[';
    for (const PropertyList& element : *array) {
      PrintTo(element, out);
      *out << ' ';
    }
    *out << ']';
  }
  if (const auto* dictionary = list.asDictionary()) {
    *out << '{';
    for (const auto& [key, value] : *dictionary) {
      *out << key << ": ";
      PrintTo(value, out);
      *out << ' ';
    }
    *out << '}';
  }
}

namespace test {

inline PropertyList dictionaryOf(std::vector<PropertyListDictionary::Entry> entries) {
  return PropertyList(PropertyListDictionary(std::move(entries)));
}

inline PropertyList arrayOf(PropertyList::Array elements) { return PropertyList(std::move(elements)); }

inline PropertyList dateAt(double unixTime) { return PropertyList::fromDate(Instant::fromUnixTime(unixTime)); }
inline PropertyList data(const std::string& bytes) { return PropertyList::fromData(bytes); }

/// Arrays, one in another; the innermost is empty.
inline PropertyList arraysNested(int depth) {
  PropertyList list = arrayOf({});
  for (int i = 1; i < depth; ++i) list = arrayOf({list});
  return list;
}

}  // namespace test

}  // namespace epg
