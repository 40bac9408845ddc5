#include "platform/XMLText.h"

#include <utf8.h>

#include <cstddef>

namespace epg {

namespace {

const char* const replacementCharacter = "\xEF\xBF\xBD";

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
      return character < 0x20 ? replacementCharacter : nullptr;
  }
}

/// U+FFFE and U+FFFF, the only characters of more than one byte that UTF-8 can hold and XML 1.0 cannot.
bool isNoncharacter(const std::string& text, std::size_t at) {
  return static_cast<unsigned char>(text[at]) == 0xEF && static_cast<unsigned char>(text[at + 1]) == 0xBF &&
         static_cast<unsigned char>(text[at + 2]) >= 0xBE;
}

}  // namespace

bool isUTF8(const std::string& text) { return utf8::is_valid(text.begin(), text.end()); }

bool appendXMLText(std::string& document, const std::string& text, XMLContext context) {
  if (!isUTF8(text)) return false;
  std::size_t unwritten = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const char* form = nullptr;
    std::size_t length = 1;
    if (byte < 0x80) {
      form = escapedForm(byte, context);
    } else if (byte == 0xEF && isNoncharacter(text, i)) {
      form = replacementCharacter;
      length = 3;
    }
    if (!form) continue;
    document.append(text, unwritten, i - unwritten);
    document += form;
    unwritten = i + length;
    i = unwritten - 1;
  }
  document.append(text, unwritten, std::string::npos);
  return true;
}

}  // namespace epg
