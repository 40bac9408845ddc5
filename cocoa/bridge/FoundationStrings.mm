#import "cocoa/bridge/FoundationValues.h"

#include <utf8.h>

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "xml/Surrogates.h"

namespace epg::cocoa {

namespace {

bool standsForByte(char32_t unit) { return unit >= 0xDC80 && unit <= 0xDCFF; }

/// Of a surrogate, too, the bytes that its number would have.
void appendUTF8(std::string& text, char32_t codePoint) { utf8::unchecked::append(codePoint, std::back_inserter(text)); }

/// The code point (a surrogate too) that starts at `position`, which moves behind it. A byte that starts none is
/// taken alone.
char32_t takeCodePoint(std::string_view text, std::size_t& position) {
  const auto byteAt = [&](std::size_t index) -> char32_t {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0;
  };
  const char32_t first = byteAt(position);
  std::size_t length = 0;
  char32_t codePoint = 0;
  char32_t smallest = 0;
  if (first < 0x80) {
    ++position;
    return first;
  }
  if (first >= 0xC2 && first <= 0xDF) {
    length = 2;
    codePoint = first & 0x1F;
    smallest = 0x80;
  } else if (first >= 0xE0 && first <= 0xEF) {
    length = 3;
    codePoint = first & 0x0F;
    smallest = 0x800;
  } else if (first >= 0xF0 && first <= 0xF4) {
    length = 4;
    codePoint = first & 0x07;
    smallest = 0x10000;
  }
  bool valid = length != 0;
  for (std::size_t index = 1; valid && index < length; ++index) {
    const char32_t next = byteAt(position + index);
    valid = (next & 0xC0) == 0x80;
    codePoint = codePoint << 6 | (next & 0x3F);
  }
  if (!valid || codePoint < smallest || codePoint > 0x10FFFF || standsForByte(codePoint)) {
    ++position;
    return 0xDC00 | first;
  }
  position += length;
  return codePoint;
}

bool isByteOrderMark(unichar unit) { return unit == 0xFEFF || unit == 0xFFFE; }

NSString* stringOfUnits(const std::vector<unichar>& units) {
  // No units may have no address, which is documented to raise.
  if (units.empty()) return @"";
  // GNUstep takes a mark away from the beginning of a string, and swaps the rest by it.
  NSString* string =
      isByteOrderMark(units.front()) ? nil : [NSString stringWithCharacters:units.data() length:units.size()];
  if (string != nil) return string;
  // Nor does it make a string of units that are no Unicode at once; it puts one together from its parts.
  NSMutableString* parts = [NSMutableString stringWithCapacity:units.size()];
  for (const unichar unit : units) {
    [parts appendFormat:@"%C", unit];
  }
  return parts;
}

}  // namespace

std::string fromString(NSString* string) {
  const NSUInteger length = [string length];
  std::vector<unichar> units(length);
  if (length > 0) {
    [string getCharacters:units.data() range:NSMakeRange(0, length)];
  }
  std::string text;
  text.reserve(length);
  for (std::size_t index = 0; index < length; ++index) {
    const char32_t unit = units[index];
    if (isHighSurrogate(unit) && index + 1 < length && isLowSurrogate(units[index + 1])) {
      appendUTF8(text, characterOfSurrogates(unit, units[++index]));
    } else if (standsForByte(unit)) {
      text += static_cast<char>(unit & 0xFF);
    } else {
      appendUTF8(text, unit);
    }
  }
  return text;
}

NSString* toString(std::string_view text) {
  std::vector<unichar> units;
  units.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const char32_t codePoint = takeCodePoint(text, position);
    if (codePoint < 0x10000) {
      units.push_back(static_cast<unichar>(codePoint));
    } else {
      units.push_back(static_cast<unichar>(0xD800 + ((codePoint - 0x10000) >> 10)));
      units.push_back(static_cast<unichar>(0xDC00 + ((codePoint - 0x10000) & 0x3FF)));
    }
  }
  return stringOfUnits(units);
}

NSString* toString(const std::string& text) { return toString(std::string_view(text)); }

std::optional<std::string> optionalString(id object) {
  if ([object isKindOfClass:[NSString class]]) {
    return fromString(object);
  }
  return std::nullopt;
}

NSString* toString(const std::optional<std::string>& text) { return text ? toString(*text) : nil; }

std::vector<std::string> fromStrings(NSArray* strings) {
  std::vector<std::string> texts;
  texts.reserve([strings count]);
  for (NSUInteger index = 0; index < [strings count]; ++index) {
    if (std::optional<std::string> text = optionalString([strings objectAtIndex:index])) {
      texts.push_back(std::move(*text));
    }
  }
  return texts;
}

NSArray* toStrings(const std::vector<std::string>& texts) {
  NSMutableArray* strings = [NSMutableArray arrayWithCapacity:texts.size()];
  for (const std::string& text : texts) {
    [strings addObject:toString(text)];
  }
  return strings;
}

}  // namespace epg::cocoa
