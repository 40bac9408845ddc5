#include "tests/support/HostileText.h"

#include "tests/support/Draw.h"

namespace epg::test {

using namespace std::string_view_literals;

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += part;
  return text;
}

std::string hostileText() {
  std::string text;
  for (Times times(0, 12); times.next();) {
    if (onceIn(2)) {
      text += oneTextOf({"'",
                         "\"",
                         "&",
                         "<",
                         ">",
                         "\r",
                         "\t",
                         "\n",
                         "\0"sv,
                         "\x01",
                         "\x08",
                         "\x1F",
                         "\x7F",
                         "#",
                         "%",
                         "!",
                         "=",
                         "?",
                         "]]>",
                         "&#39;",
                         "&amp;",
                         "\xC2\x80",
                         "\xC3\xA9",
                         "\xE7\xAF\x80",
                         "\xEF\xBF\xBD",
                         "\xEF\xBF\xBE",
                         "\xEF\xBF\xBF",
                         "\xEF\xBE\xBF",
                         "\xEF\xB7\x90",
                         "\xF0\x9F\xBF\xBE",
                         "\xF0\x9F\x8E\xAC",
                         "\xF4\x8F\xBF\xBF"});
    } else {
      text.append(below(24), 'x');
    }
  }
  return text;
}

std::string mostlyUTF8(std::size_t cases) {
  std::string text = hostileText();
  if (!onceIn(cases)) return text;
  text += oneTextOf({"\x80", "\xFF", "\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xEF\xBF",
                     "\xF0\x9F\xBF"});
  return text + hostileText();
}

}  // namespace epg::test
