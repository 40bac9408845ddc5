#include "export/ApostrophePass.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace epg {

std::string stringByEscapingSpecialCharacters(const std::string& text) {
  const char* const reference = "&#39;";
  const auto apostrophes = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\''));
  std::string escaped;
  escaped.reserve(text.size() + apostrophes * (std::strlen(reference) - 1));
  std::size_t start = 0;
  for (std::size_t at = text.find('\''); at != std::string::npos; at = text.find('\'', start)) {
    escaped.append(text, start, at - start);
    escaped += reference;
    start = at + 1;
  }
  escaped.append(text, start, std::string::npos);
  return escaped;
}

}  // namespace epg
