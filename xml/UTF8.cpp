#include "xml/UTF8.h"

#include <utf8.h>

#include <cstdint>
#include <cstring>

namespace epg {

namespace {

bool isASCII(char c) { return static_cast<unsigned char>(c) < 0x80; }

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// Whether a letter of two bytes begins there, as nearly all letters beyond ASCII have in languages that use few.
bool startsPair(const char* at, const char* end) {
  const auto lead = static_cast<unsigned char>(*at);
  return lead >= 0xC2 && lead <= 0xDF && end - at >= 2 && isContinuation(at[1]);
}

/// The first byte that is not ASCII. Eight bytes are looked at together: most of what a guide or a store holds is
/// markup and plain letters.
const char* endOfASCII(const char* at, const char* end) {
  constexpr std::uint64_t highBits = 0x8080808080808080U;
  std::uint64_t word = 0;
  while (static_cast<std::size_t>(end - at) >= sizeof word) {
    std::memcpy(&word, at, sizeof word);
    if ((word & highBits) != 0) break;
    at += sizeof word;
  }
  while (at != end && isASCII(*at)) ++at;
  return at;
}

}  // namespace

std::size_t lengthOfUTF8(std::string_view text) {
  const char* const end = text.data() + text.size();
  for (const char* at = endOfASCII(text.data(), end); at != end; at = endOfASCII(at, end)) {
    if (startsPair(at, end)) {
      at += 2;
      continue;
    }
    // An ASCII byte is never part of a longer sequence, so that what stands between two of them can be judged alone.
    const char* runEnd = at;
    while (runEnd != end && !isASCII(*runEnd)) ++runEnd;
    const char* const invalid = utf8::find_invalid(at, runEnd);
    if (invalid != runEnd) return static_cast<std::size_t>(invalid - text.data());
    at = runEnd;
  }
  return text.size();
}

}  // namespace epg
