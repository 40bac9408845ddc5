#include "tests/support/NaiveXMLText.h"

#include <utf8.h>

#include <cstddef>

namespace epg::test {

namespace {

/// What stands for an ASCII character in a document; null where it stands for itself.
const char* escapedForm(unsigned char character, XMLContext context) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\r':
      return "&#13;";
    case '"':
      return context == XMLContext::Attribute ? "&quot;" : nullptr;
    case '\t':
      return context == XMLContext::Attribute ? "&#9;" : nullptr;
    case '\n':
      return context == XMLContext::Attribute ? "&#10;" : nullptr;
    default:
      return nullptr;
  }
}

/// The length of the character at `at` when XML 1.0 cannot carry it, 0 when it can. Needs UTF-8.
std::size_t uncarriedLength(const std::string& text, std::size_t at) {
  const auto byte = static_cast<unsigned char>(text[at]);
  if (byte < 0x20) return byte == '\t' || byte == '\n' || byte == '\r' ? 0 : 1;
  // U+FFFE and U+FFFF
  const bool nonCharacter = byte == 0xEF && static_cast<unsigned char>(text[at + 1]) == 0xBF &&
                            static_cast<unsigned char>(text[at + 2]) >= 0xBE;
  return nonCharacter ? 3 : 0;
}

}  // namespace

bool appendNaiveXMLText(std::string& document, const std::string& text, XMLContext context) {
  if (!utf8::is_valid(text.begin(), text.end())) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t uncarried = uncarriedLength(text, i);
    const char* const form =
        uncarried != 0 ? "\xEF\xBF\xBD" : escapedForm(static_cast<unsigned char>(text[i]), context);
    if (form) {
      document += form;
    } else {
      document += text[i];
    }
    if (uncarried != 0) i += uncarried - 1;
  }
  return true;
}

std::string naivelyReplaced(const std::string& text) {
  std::string replaced;
  for (auto at = text.begin(); at != text.end();) {
    const auto invalid = utf8::find_invalid(at, text.end());
    replaced.append(at, invalid);
    at = invalid;
    if (at == text.end()) break;
    replaced += "\xEF\xBF\xBD";
    ++at;
    while (at != text.end() && static_cast<unsigned char>(*at) >= 0x80 && static_cast<unsigned char>(*at) < 0xC0) ++at;
  }
  return replaced;
}

}  // namespace epg::test
