#include "plist/PropertyListScalars.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

#include "platform/CivilDate.h"

namespace epg {

namespace {

std::string_view trimmed(std::string_view text) {
  const char* const white = " \t\r\n";
  const std::size_t start = text.find_first_not_of(white);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(white) - start + 1);
}

std::optional<PropertyList> integerFromText(std::string_view text) {
  std::size_t at = 0;
  const bool negative = !text.empty() && text[0] == '-';
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) ++at;
  const bool hexadecimal = text.size() > at + 2 && text[at] == '0' && (text[at + 1] == 'x' || text[at + 1] == 'X');
  if (hexadecimal) at += 2;
  if (at == text.size()) return std::nullopt;
  const std::uint64_t base = hexadecimal ? 16 : 10;
  std::uint64_t magnitude = 0;
  for (; at < text.size(); ++at) {
    const auto c = static_cast<unsigned char>(text[at]);
    std::uint64_t digit = 0;
    if (std::isdigit(c)) {
      digit = static_cast<std::uint64_t>(c - '0');
    } else if (hexadecimal && std::isxdigit(c)) {
      digit = 10 + static_cast<std::uint64_t>(std::tolower(c) - 'a');
    } else {
      return std::nullopt;
    }
    if (magnitude > (std::numeric_limits<std::uint64_t>::max() - digit) / base) return std::nullopt;
    magnitude = magnitude * base + digit;
  }
  constexpr std::uint64_t lowest = std::uint64_t{1} << 63;
  if (!negative) return PropertyList::fromUnsigned(magnitude);
  if (magnitude > lowest) return std::nullopt;
  return PropertyList::fromInteger(static_cast<std::int64_t>(0 - magnitude));
}

/// Whether the text is a number with a point or an exponent or neither; standard libraries differ in what they take
/// for one, and in how they say that it is too small.
bool isDecimalNumber(const std::string& text) {
  std::size_t at = 0;
  const auto skipSign = [&] {
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  };
  const auto skipDigits = [&] {
    const std::size_t start = at;
    while (at < text.size() && std::isdigit(static_cast<unsigned char>(text[at]))) ++at;
    return at - start;
  };
  skipSign();
  std::size_t digits = skipDigits();
  if (at < text.size() && text[at] == '.') {
    ++at;
    digits += skipDigits();
  }
  if (digits == 0) return false;
  if (at < text.size() && text[at] == 'e') {
    ++at;
    skipSign();
    if (skipDigits() == 0) return false;
  }
  return at == text.size();
}

std::optional<PropertyList> realFromText(std::string_view text) {
  std::string lower;
  for (const char c : text) lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const double infinity = std::numeric_limits<double>::infinity();
  if (lower == "nan") return PropertyList::fromReal(std::numeric_limits<double>::quiet_NaN());
  if (lower == "inf" || lower == "infinity" || lower == "+infinity" || lower == "+inf") {
    return PropertyList::fromReal(infinity);
  }
  if (lower == "-inf" || lower == "-infinity") return PropertyList::fromReal(-infinity);
  if (!isDecimalNumber(lower)) return std::nullopt;
  std::istringstream stream(lower);
  stream.imbue(std::locale::classic());
  double value = 0;
  stream >> value;
  // Too large or too small a number is one all the same: the nearest that there is.
  if (std::fabs(value) == std::numeric_limits<double>::max() && stream.fail()) value = std::copysign(infinity, value);
  return PropertyList::fromReal(value);
}

/// "2012-03-04T18:00:00Z", as the platform writes it.
std::optional<PropertyList> dateFromText(std::string_view text) {
  const char* const pattern = "dddd-dd-ddTdd:dd:ddZ";
  if (text.size() != std::strlen(pattern)) return std::nullopt;
  int fields[6] = {};
  int field = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (pattern[i] == 'd') {
      if (!std::isdigit(static_cast<unsigned char>(text[i]))) return std::nullopt;
      fields[field] = fields[field] * 10 + (text[i] - '0');
    } else {
      if (text[i] != pattern[i]) return std::nullopt;
      ++field;
    }
  }
  CivilDate date;
  date.year = fields[0];
  date.month = fields[1];
  date.day = fields[2];
  date.hour = fields[3];
  date.minute = fields[4];
  date.second = fields[5];
  if (!isValid(date)) return std::nullopt;
  return PropertyList::fromDate(Instant::fromUnixTime(static_cast<double>(secondsSince1970(date))));
}

int base64Digit(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  if (c == '+') return 62;
  return c == '/' ? 63 : -1;
}

std::optional<PropertyList> dataFromText(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  std::uint32_t group = 0;
  int digits = 0;
  int padding = 0;
  for (const char c : text) {
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
    if (c == '=') {
      ++padding;
      continue;
    }
    const int digit = base64Digit(c);
    if (digit < 0 || padding > 0) return std::nullopt;
    group = group << 6 | static_cast<std::uint32_t>(digit);
    if (++digits == 4) {
      bytes += static_cast<char>(group >> 16 & 0xFF);
      bytes += static_cast<char>(group >> 8 & 0xFF);
      bytes += static_cast<char>(group & 0xFF);
      group = 0;
      digits = 0;
    }
  }
  if (digits == 1 || padding > 2 || (padding > 0 && digits + padding != 4)) return std::nullopt;
  if (digits == 2) bytes += static_cast<char>(group >> 4 & 0xFF);
  if (digits == 3) {
    bytes += static_cast<char>(group >> 10 & 0xFF);
    bytes += static_cast<char>(group >> 2 & 0xFF);
  }
  return PropertyList::fromData(bytes);
}

}  // namespace

std::optional<PropertyList> propertyListFromText(PropertyListScalar scalar, std::string_view text) {
  switch (scalar) {
    case PropertyListScalar::Integer:
      return integerFromText(trimmed(text));
    case PropertyListScalar::Real:
      return realFromText(trimmed(text));
    case PropertyListScalar::True:
    case PropertyListScalar::False:
      if (!trimmed(text).empty()) return std::nullopt;
      return PropertyList::fromBoolean(scalar == PropertyListScalar::True);
    case PropertyListScalar::Date:
      return dateFromText(trimmed(text));
    case PropertyListScalar::Data:
      return dataFromText(text);
  }
  return std::nullopt;
}

std::optional<PropertyList> propertyListFromDescriptionOfDate(std::string_view text) {
  constexpr std::string_view pattern = "dddd-dd-dd dd:dd:dd";
  constexpr std::size_t zoneLength = 6;
  if (text.size() < pattern.size() + zoneLength) return std::nullopt;
  std::string date(text.substr(0, pattern.size()));
  date[10] = date[10] == ' ' ? 'T' : '\0';
  const std::optional<PropertyList> read = propertyListFromText(PropertyListScalar::Date, date + 'Z');

  const std::string_view zone = text.substr(text.size() - zoneLength);
  const bool isZone = zone[0] == ' ' && (zone[1] == '+' || zone[1] == '-') &&
                      std::all_of(zone.begin() + 2, zone.end(), [](char c) { return c >= '0' && c <= '9'; });
  const std::string_view fraction = text.substr(pattern.size(), text.size() - pattern.size() - zoneLength);
  const std::optional<PropertyList> ofSecond =
      fraction.empty() ? PropertyList::fromReal(0)
                       : propertyListFromText(PropertyListScalar::Real, "0" + std::string(fraction));
  if (!read || !isZone || !ofSecond || (!fraction.empty() && fraction[0] != '.')) return std::nullopt;

  const auto two = [&](std::size_t at) { return (zone[at] - '0') * 10 + (zone[at + 1] - '0'); };
  const double east = (zone[1] == '-' ? -60.0 : 60.0) * (two(2) * 60 + two(4));
  return PropertyList::fromDate(Instant{read->asDate()->secondsSinceReferenceDate + *ofSecond->asReal() - east});
}

}  // namespace epg
