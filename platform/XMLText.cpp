#include "platform/XMLText.h"

#include <cstddef>

#include "platform/UTF8.h"

namespace epg {

const char* const replacementCharacter = "\xEF\xBF\xBD";

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

bool isUTF8(const std::string& text) { return lengthOfUTF8(text) == text.size(); }

bool isCarriedByXML(const std::string& text) {
  if (!isUTF8(text)) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (uncarriedLength(text, i) != 0) return false;
  }
  return true;
}

std::string carriedByXML(const std::string& text) {
  if (!isUTF8(text)) return text;
  std::string carried;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t length = uncarriedLength(text, i);
    if (length == 0) {
      carried += text[i];
    } else {
      carried += replacementCharacter;
      i += length - 1;
    }
  }
  return carried;
}

bool appendXMLText(std::string& document, const std::string& text, XMLContext context) {
  if (!isUTF8(text)) return false;
  std::size_t unwritten = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t uncarried = uncarriedLength(text, i);
    const char* const form =
        uncarried != 0 ? replacementCharacter : escapedForm(static_cast<unsigned char>(text[i]), context);
    if (!form) continue;
    document.append(text, unwritten, i - unwritten);
    document += form;
    unwritten = i + (uncarried != 0 ? uncarried : 1);
    i = unwritten - 1;
  }
  document.append(text, unwritten, std::string::npos);
  return true;
}

}  // namespace epg
