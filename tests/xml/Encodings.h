#pragma once

#include <utf8.h>

#include <string>

namespace epg::test {

enum class ByteOrder { BigEndian, LittleEndian };

/// The bytes of a UTF-8 text in UTF-16, without a byte-order mark.
inline std::string utf16(const std::string& text, ByteOrder order) {
  std::string bytes;
  for (const char16_t unit : utf8::utf8to16(text)) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += order == ByteOrder::BigEndian ? high : low;
    bytes += order == ByteOrder::BigEndian ? low : high;
  }
  return bytes;
}

}  // namespace epg::test
