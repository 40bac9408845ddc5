#pragma once

#include <cstdint>

namespace epg {

/// The two halves in which UTF-16 writes a character beyond U+FFFF (Unicode, "surrogates"). Neither is a character.
inline bool isHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
inline bool isLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

inline std::uint32_t characterOfSurrogates(std::uint32_t high, std::uint32_t low) {
  return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

}  // namespace epg
