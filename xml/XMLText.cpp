#include "xml/XMLText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "xml/UTF8.h"

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

/// Four bytes as a number, the first one lowest.
std::uint32_t four(const char* bytes) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes, sizeof number);
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  number = __builtin_bswap32(number);
#endif
  return number;
}

std::uint64_t eight(const char* first, const char* last) {
  return std::uint64_t{four(first)} | std::uint64_t{four(last)} << 32;
}

/// Which of eight bytes is the first that is of any kind, or is '#'; 8 when none is.
///
/// The high bit of each byte answers for it: it is set in what is beyond ASCII, and subtracting sets it in what is
/// below the subtrahend. Only a byte that is found borrows from those after it, so the first answer is right.
std::ptrdiff_t firstSpecial(std::uint64_t bytes) {
  const std::uint64_t belowSpace = bytes - everywhere(0x20);
  // One test for several characters that differ in few bits: '"', '&' and the apostrophe; '<' and '>'.
  const std::uint64_t quotesAndAmpersand = ((bytes | everywhere(0x05)) ^ everywhere('\'')) - everywhere(1);
  const std::uint64_t angleBrackets = ((bytes | everywhere(0x02)) ^ everywhere('>')) - everywhere(1);
  const std::uint64_t found = (bytes | belowSpace | quotesAndAmpersand | angleBrackets) & everywhere(0x80);
  return found == 0 ? 8 : __builtin_ctzll(found) / 8;
}

/// Where the first byte stands that is of any kind, or is '#', or the end.
const char* findSpecial(const char* at, const char* end) {
  for (; end - at >= 8; at += 8) {
    const std::ptrdiff_t first = firstSpecial(eight(at, at + 4));
    if (first < 8) return at + first;
  }
  if (end - at >= 4) {
    // The last four overlap with the first ones.
    const std::ptrdiff_t first = firstSpecial(eight(at, end - 4));
    return first < 4 ? at + first : end - 8 + first;
  }
  constexpr unsigned any = 0xFF;
  while (at != end && !is(*at, any)) ++at;
  return at;
}

/// Where the first byte of one of the kinds stands, or the end.
const char* findByte(const char* at, const char* end, unsigned wantedKinds) {
  at = findSpecial(at, end);
  while (at != end && !is(*at, wantedKinds)) at = findSpecial(at + 1, end);
  return at;
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

/// With one U+FFFD for each byte that begins no character, together with the bytes behind it that only go on.
std::string withMalformedReplaced(std::string_view text) {
  std::string replaced;
  for (;;) {
    const std::size_t good = lengthOfUTF8(text);
    replaced += text.substr(0, good);
    text.remove_prefix(good);
    if (text.empty()) return replaced;
    replaced += replacementCharacter;
    const auto* const next =
        std::find_if(text.begin() + 1, text.end(), [](char byte) { return (byte & 0xC0) != 0x80; });
    text.remove_prefix(static_cast<std::size_t>(next - text.begin()));
  }
}

bool appendBeyondASCII(ByteSink& document, std::string_view bytes, Malformed malformed) {
  if (!isUTF8(bytes)) {
    // safeguard: refusing text that is not UTF-8
    if (malformed == Malformed::Refused) return false;
    return appendBeyondASCII(document, withMalformedReplaced(bytes), malformed);
  }
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

bool isUTF8(std::string_view text) { return lengthOfUTF8(text) == text.size(); }

bool isLiteralInXML(std::string_view text) {
  constexpr unsigned any = 0xFF;
  const char* const end = text.data() + text.size();
  return findByte(text.data(), end, any) == end;
}

bool isCarriedByXML(std::string_view text) {
  const char* const end = text.data() + text.size();
  const char* const special = findByte(text.data(), end, kind::beyondASCII | kind::uncarried);
  if (special == end) return true;
  return isUTF8(text) && findNoncharacter(text, 0) == std::string_view::npos &&
         findByte(special, end, kind::uncarried) == end;
}

std::string carriedByXML(std::string_view text) {
  if (!isUTF8(text)) return carriedByXML(withMalformedReplaced(text));
  if (isCarriedByXML(text)) return std::string(text);
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

bool appendXMLText(ByteSink& document, std::string_view text, XMLContext context, Apostrophes apostrophes,
                   Malformed malformed) {
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
      const std::string_view beyondASCII(plainEnd, static_cast<std::size_t>(at - plainEnd));
      if (!appendBeyondASCII(document, beyondASCII, malformed)) return false;
    } else {
      document.append(escapedForm(*at));
      ++at;
    }
  }
}

}  // namespace epg
