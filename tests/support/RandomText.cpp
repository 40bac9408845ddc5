#include "tests/support/RandomText.h"

#include <cstddef>
#include <iterator>

namespace epg::test {

std::string utf8(std::uint32_t point) {
  const auto byte = [](std::uint32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
  std::string text;
  if (point < 0x80) {
    text += byte(point);
    return text;
  }
  if (point < 0x800) {
    text += byte(0xC0 | point >> 6);
  } else {
    if (point < 0x10000) {
      text += byte(0xE0 | point >> 12);
    } else {
      text += byte(0xF0 | point >> 18);
      text += byte(0x80 | (point >> 12 & 0x3F));
    }
    text += byte(0x80 | (point >> 6 & 0x3F));
  }
  text += byte(0x80 | (point & 0x3F));
  return text;
}

bool isXMLCharacter(std::uint32_t point) {
  return point == 0x9 || point == 0xA || point == 0xD || (point >= 0x20 && point <= 0xD7FF) ||
         (point >= 0xE000 && point <= 0xFFFD) || (point >= 0x10000 && point <= 0x10FFFF);
}

std::string characterFrom(std::uint32_t number) {
  static const char* const special[] = {
      "'", "&", "<",    ">", "\"",  "\r",   "\n",           "\t",           " ", "&#39;",    "]]>",
      "'", "é", "\r\n", "'", "\x1", "\x7F", "\xEF\xBF\xBE", "\xEF\xBB\xBF", "😀", "e\xCC\x81"};
  const std::uint32_t point = number / 2 * 7919 % 0x110000;
  if (number % 2 == 0) return special[point % std::size(special)];
  return point >= 0xD800 && point <= 0xDFFF ? utf8('a' + point % 26) : utf8(point);
}

std::string randomText(std::mt19937& random, std::size_t longest) {
  std::string text;
  for (std::size_t left = random() % (longest + 1); left > 0; --left) {
    const auto number = static_cast<std::uint32_t>(random());
    // Mostly what people type, with something odd in between.
    text += random() % 4 == 0 ? characterFrom(number) : utf8('a' + number % 26);
  }
  return text;
}

std::string asXMLCarries(const std::string& text) {
  const std::string replacement = "\xEF\xBF\xBD";
  std::string carried;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const std::string three = text.substr(i, 3);
    if (byte < 0x20 && !isXMLCharacter(byte)) {
      carried += replacement;
    } else if (three == "\xEF\xBF\xBE" || three == "\xEF\xBF\xBF") {
      carried += replacement;
      i += 2;
    } else {
      carried += text[i];
    }
  }
  return carried;
}

}  // namespace epg::test
