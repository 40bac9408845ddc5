#pragma once

#include <rapidcheck.h>

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/RandomItems.h"

namespace epg::test {

inline std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += part;
  return text;
}

/// UTF-8 with all that a writer of XML has to look after, between plain runs of any length.
inline rc::Gen<std::string> hostileText() {
  const auto special = rc::gen::element<std::string>(
      "'", "\"", "&", "<", ">", "\r", "\t", "\n", std::string(1, '\0'), "\x01", "\x08", "\x1F", "\x7F", "#", "%", "!",
      "=", "?", "]]>", "&#39;", "&amp;", "\xC2\x80", "\xC3\xA9", "\xE7\xAF\x80", "\xEF\xBF\xBD", "\xEF\xBF\xBE",
      "\xEF\xBF\xBF", "\xEF\xBE\xBF", "\xEF\xB7\x90", "\xF0\x9F\xBF\xBE", "\xF0\x9F\x8E\xAC", "\xF4\x8F\xBF\xBF");
  const auto plain = rc::gen::map(below(24), [](std::size_t length) { return std::string(length, 'x'); });
  return rc::gen::map(upTo(12, rc::gen::oneOf(special, plain)), joined);
}

/// The same, in about one case of `cases` with something in it that is not UTF-8.
inline rc::Gen<std::string> mostlyUTF8(std::size_t cases) {
  const auto broken = rc::gen::element<std::string>("\x80", "\xFF", "\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80",
                                                    "\xF4\x90\x80\x80", "\xEF\xBF", "\xF0\x9F\xBF");
  return rc::gen::weightedOneOf<std::string>(
      {{cases - 1, hostileText()},
       {1, rc::gen::apply([](const std::string& before, const std::string& middle,
                             const std::string& after) { return before + middle + after; },
                          hostileText(), broken, hostileText())}});
}

}  // namespace epg::test
