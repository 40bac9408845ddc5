#include "platform/XMLText.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace epg {

const char* const replacementCharacter = "\xEF\xBF\xBD";

namespace {

/// What a byte is to a document, as a set of bits. A byte that stands for itself everywhere is nothing of this.
namespace kind {
constexpr unsigned beyondASCII = 1;          ///< Part of a longer character, or of what is no UTF-8.
constexpr unsigned uncarried = 2;            ///< A character that XML 1.0 does not have.
constexpr unsigned escaped = 4;              ///< Escaped wherever it stands.
constexpr unsigned escapedInAttributes = 8;  ///< Escaped only there.
constexpr unsigned apostrophe = 16;
}  // namespace kind

constexpr unsigned kindOf(unsigned byte) {
  if (byte >= 0x80) return kind::beyondASCII;
  switch (byte) {
    case '&':
    case '<':
    case '>':
    case '\r':
      return kind::escaped;
    case '"':
    case '\t':
    case '\n':
      return kind::escapedInAttributes;
    case '\'':
      return kind::apostrophe;
    default:
      return byte < 0x20 ? kind::uncarried : 0;
  }
}

constexpr std::array<unsigned char, 256> kindsOfAllBytes() {
  std::array<unsigned char, 256> kinds{};
  for (unsigned byte = 0; byte < kinds.size(); ++byte) kinds[byte] = static_cast<unsigned char>(kindOf(byte));
  return kinds;
}

constexpr std::array<unsigned char, 256> kinds = kindsOfAllBytes();

bool is(char byte, unsigned wantedKinds) { return (kinds[static_cast<unsigned char>(byte)] & wantedKinds) != 0; }

/// A byte in each of the eight places.
constexpr std::uint64_t everywhere(unsigned byte) { return byte * 0x0101010101010101U; }

/// Whether none of the eight bytes is of any kind. May also say no where one is '#'.
///
/// The high bit of a byte answers for it: it is set in what is beyond ASCII, and subtracting sets it in what is below
/// the subtrahend. What a subtraction borrows from the next byte was taken by a byte that is already found.
bool areAllPlain(const char* bytes) {
  std::uint64_t eight = 0;
  std::memcpy(&eight, bytes, sizeof eight);
  const std::uint64_t belowSpace = eight - everywhere(0x20);
  // One test for several characters that differ in few bits: '"', '&' and the apostrophe; '<' and '>'.
  const std::uint64_t quotesAndAmpersand = ((eight | everywhere(0x05)) ^ everywhere('\'')) - everywhere(1);
  const std::uint64_t angleBrackets = ((eight | everywhere(0x02)) ^ everywhere('>')) - everywhere(1);
  return ((eight | belowSpace | quotesAndAmpersand | angleBrackets) & everywhere(0x80)) == 0;
}

/// Where the first byte of one of the kinds stands, or the end.
const char* findByte(const char* at, const char* end, unsigned wantedKinds) {
  constexpr std::ptrdiff_t step = 8;
  for (;;) {
    while (end - at >= step && areAllPlain(at)) at += step;
    const char* const stop = at + std::min(end - at, step);
    while (at != stop && !is(*at, wantedKinds)) ++at;
    if (at != stop || at == end) return at;
  }
}

/// The end of the bytes beyond ASCII that begin here. No character reaches beyond it.
const char* endBeyondASCII(const char* at, const char* end) {
  while (at != end && is(*at, kind::beyondASCII)) ++at;
  return at;
}

/// Whether U+FFFE or U+FFFF begins at `at`. The text has to be UTF-8.
bool isNoncharacter(std::string_view text, std::size_t at) {
  return text.compare(at, 2, "\xEF\xBF") == 0 && static_cast<unsigned char>(text[at + 2]) >= 0xBE;
}

constexpr std::size_t noncharacterLength = 3;

/// Where one of them begins, from there on; npos when nowhere.
std::size_t findNoncharacter(std::string_view text, std::size_t from) {
  std::size_t at = text.find("\xEF\xBF", from);
  while (at != std::string_view::npos && !isNoncharacter(text, at)) at = text.find("\xEF\xBF", at + 1);
  return at;
}

bool appendBeyondASCII(ByteSink& document, std::string_view bytes) {
  if (!isUTF8(bytes)) return false;
  std::size_t unwritten = 0;
  std::size_t at = findNoncharacter(bytes, 0);
  while (at != std::string_view::npos) {
    document.append(bytes.substr(unwritten, at - unwritten));
    document.append(replacementCharacter);
    unwritten = at + noncharacterLength;
    at = findNoncharacter(bytes, unwritten);
  }
  document.append(bytes.substr(unwritten));
  return true;
}

/// What stands for an ASCII character of one of the kinds in a document.
std::string_view escapedForm(char character) {
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
      return "&quot;";
    case '\t':
      return "&#9;";
    case '\n':
      return "&#10;";
    case '\'':
      return "&#39;";
    default:
      return replacementCharacter;
  }
}

}  // namespace

bool isUTF8(std::string_view text) { return utf8::is_valid(text.begin(), text.end()); }

bool isCarriedByXML(std::string_view text) {
  const char* const end = text.data() + text.size();
  const char* const special = findByte(text.data(), end, kind::beyondASCII | kind::uncarried);
  if (special == end) return true;
  return isUTF8(text) && findNoncharacter(text, 0) == std::string_view::npos &&
         findByte(special, end, kind::uncarried) == end;
}

std::string carriedByXML(std::string_view text) {
  if (!isUTF8(text)) return std::string(text);
  std::string carried;
  for (std::size_t at = 0; at < text.size();) {
    if (isNoncharacter(text, at)) {
      carried += replacementCharacter;
      at += noncharacterLength;
    } else if (is(text[at], kind::uncarried)) {
      carried += replacementCharacter;
      ++at;
    } else {
      carried += text[at++];
    }
  }
  return carried;
}

bool appendXMLText(ByteSink& document, std::string_view text, XMLContext context, Apostrophes apostrophes) {
  const unsigned special = kind::beyondASCII | kind::uncarried | kind::escaped |
                           (context == XMLContext::Attribute ? kind::escapedInAttributes : 0) |
                           (apostrophes == Apostrophes::AsReferences ? kind::apostrophe : 0);
  const char* at = text.data();
  const char* const end = at + text.size();
  for (;;) {
    const char* const plainEnd = findByte(at, end, special);
    document.append(std::string_view(at, static_cast<std::size_t>(plainEnd - at)));
    at = plainEnd;
    if (at == end) return true;
    if (is(*at, kind::beyondASCII)) {
      at = endBeyondASCII(plainEnd, end);
      if (!appendBeyondASCII(document, std::string_view(plainEnd, static_cast<std::size_t>(at - plainEnd))))
        return false;
    } else {
      document.append(escapedForm(*at));
      ++at;
    }
  }
}

}  // namespace epg
