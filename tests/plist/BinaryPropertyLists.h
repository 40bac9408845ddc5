#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "plist/PropertyListFile.h"
#include "tests/plist/BinaryPropertyListBuilder.h"

namespace epg::test {

using Builder = BinaryPropertyListBuilder;

inline std::string fileOf(const std::string& object) {
  Builder builder;
  builder.add(object);
  return builder.file();
}

/// Why a file cannot be read, without the place; an empty string when it can.
inline std::string problemOf(const std::string& bytes) {
  std::string problem;
  const auto list = parsePropertyList(bytes, &problem);
  if (list) return {};
  EXPECT_EQ(problem.compare(0, 5, "byte "), 0) << problem;
  const std::size_t colon = problem.find(": ");
  return colon == std::string::npos ? "(unreadable, without a reason)" : problem.substr(colon + 2);
}

inline void expectRefused(const std::string& problem, const std::vector<std::string>& objects) {
  for (const std::string& object : objects) {
    EXPECT_EQ(problemOf(fileOf(object)), problem) << ::testing::PrintToString(object);
  }
}

/// A file of these objects, the first of which is its value.
inline std::string fileOfObjects(const std::vector<std::string>& objects) {
  Builder builder;
  for (const std::string& object : objects) builder.add(object);
  return builder.file();
}

/// The bytes of a literal, with the zeros in it.
template <std::size_t size>
std::string bytes(const char (&literal)[size]) {
  return std::string(literal, size - 1);
}

inline std::string array(const Builder::References& elements) { return Builder().array(elements); }
inline std::string dictionary(const Builder::References& keys, const Builder::References& values) {
  return Builder().dictionary(keys, values);
}

inline std::string doubleBytes(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return Builder::bigEndian(bits, 8);
}

/// {"key": [true, 7, 0.5, "é", data, date]}, every kind of object once.
inline std::string smallFile() {
  Builder builder;
  builder.referenceWidth = 1;
  builder.offsetWidth = 1;
  builder.add(builder.dictionary({1}, {2}));
  builder.add(Builder::ascii("key"));
  builder.add(builder.array({3, 4, 5, 6, 7, 8}));
  builder.add(Builder::byte(0x09));
  builder.add("\x10\x07");
  builder.add("\x23" + doubleBytes(0.5));
  builder.add("\x61" + std::string("\x00\xE9", 2));
  builder.add(Builder::data("ab"));
  builder.add("\x33" + doubleBytes(1));
  return builder.file();
}

}  // namespace epg::test
