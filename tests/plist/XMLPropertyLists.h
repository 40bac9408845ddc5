#pragma once

#include <gtest/gtest.h>

#include <string>

#include "plist/PropertyListFile.h"

namespace epg::test {

inline std::string plist(const std::string& value) { return "<plist version=\"1.0\">" + value + "</plist>"; }

/// Why a file cannot be read; an empty string when it can.
inline std::string problemOfXML(const std::string& bytes) {
  std::string problem;
  const auto list = parsePropertyList(bytes, &problem);
  if (list) return {};
  EXPECT_FALSE(parsePropertyList(bytes)) << "must not need somewhere to put the problem";
  return problem.empty() ? "(unreadable, without a word)" : problem;
}

inline std::string nested(const std::string& open, const std::string& close, int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += open;
  for (int i = 0; i < depth; ++i) text += close;
  return plist(text);
}

}  // namespace epg::test
