#include "xml/XMLEncoding.h"

#include <iconv.h>
#include <utf8.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "xml/Surrogates.h"
#include "xml/UTF8.h"

namespace epg {

namespace {

bool startsWith(const std::string& bytes, const char* start, std::size_t length) {
  return bytes.compare(0, length, start, length) == 0;
}

/// The encoding that the XML declaration names, in capitals; empty where it names none. `bytes` must be readable
/// as ASCII this far.
std::string declaredEncoding(const std::string& bytes) {
  if (!startsWith(bytes, "<?xml", 5) || bytes.find_first_of(" \t\r\n", 5) != 5) return {};
  const std::size_t end = bytes.find("?>");
  if (end == std::string::npos) return {};
  const std::string declaration = bytes.substr(0, end);
  std::size_t at = declaration.find("encoding");
  if (at == std::string::npos) return {};
  at = declaration.find_first_of("\"'", at);
  if (at == std::string::npos) return {};
  const std::size_t close = declaration.find(declaration[at], at + 1);
  if (close == std::string::npos) return {};
  std::string name = declaration.substr(at + 1, close - at - 1);
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return name;
}

/// The platform's name of an encoding that documents may have; empty for any other.
const char* converterName(const std::string& encoding) {
  if (encoding == "ISO-8859-1" || encoding == "ISO_8859-1" || encoding == "ISO8859-1" || encoding == "LATIN1")
    return "ISO-8859-1";
  if (encoding == "WINDOWS-1252" || encoding == "CP1252") return "WINDOWS-1252";
  return "";
}

std::optional<std::string> convertToUTF8(const std::string& bytes, const char* encoding, std::string* problem) {
  const iconv_t converter = iconv_open("UTF-8", encoding);
  if (converter == reinterpret_cast<iconv_t>(-1)) {
    *problem = std::string("this system cannot convert from ") + encoding;
    return std::nullopt;
  }
  std::string text;
  std::string input = bytes;
  char* from = &input[0];
  std::size_t left = input.size();
  char buffer[4096];
  bool good = true;
  while (left > 0 && good) {
    char* to = buffer;
    std::size_t room = sizeof buffer;
    const std::size_t result = iconv(converter, &from, &left, &to, &room);
    text.append(buffer, sizeof buffer - room);
    good = result != static_cast<std::size_t>(-1) || errno == E2BIG;
  }
  iconv_close(converter);
  if (!good) {
    *problem = "byte " + std::to_string(bytes.size() - left + 1) + ": no character of the encoding " + encoding;
    return std::nullopt;
  }
  return text;
}

bool isUTF8Name(const std::string& encoding) {
  return encoding.empty() || encoding == "UTF-8" || encoding == "UTF8" || encoding == "US-ASCII" || encoding == "ASCII";
}

constexpr char markOfUTF8[] = "\xEF\xBB\xBF";

/// How a document in UTF-16 begins: with its mark, or with the "<" that all documents begin with.
struct UTF16Start {
  char bytes[2];
  std::size_t markLength;
  bool isBigEndian;
};

constexpr UTF16Start utf16Starts[] = {
    {{'\xFE', '\xFF'}, 2, true}, {{'\xFF', '\xFE'}, 2, false}, {{'\0', '<'}, 0, true}, {{'<', '\0'}, 0, false}};

/// Null when the document is in something else.
const UTF16Start* utf16StartOf(const std::string& bytes) {
  const auto* const found = std::find_if(std::begin(utf16Starts), std::end(utf16Starts), [&](const UTF16Start& start) {
    return startsWith(bytes, start.bytes, sizeof start.bytes);
  });
  return found == std::end(utf16Starts) ? nullptr : found;
}

}  // namespace

std::optional<std::string> utf8FromUTF16(const std::string& bytes, std::size_t from, bool isBigEndian,
                                         std::string* problem) {
  std::string text;
  text.reserve(bytes.size() / 2 + bytes.size() / 8);
  std::uint32_t high = 0;
  for (std::size_t i = from; i + 1 < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    const std::uint32_t unit = isBigEndian ? std::uint32_t{first} << 8 | second : std::uint32_t{second} << 8 | first;
    const bool low = isLowSurrogate(unit);
    if (low != (high != 0)) {
      *problem = "byte " + std::to_string(i + 1) + ": not UTF-16 (half of a surrogate pair)";
      return std::nullopt;
    }
    if (isHighSurrogate(unit)) {
      high = unit;
      continue;
    }
    const std::uint32_t point = low ? characterOfSurrogates(high, unit) : unit;
    high = 0;
    utf8::append(point, std::back_inserter(text));
  }
  if ((bytes.size() - from) % 2 != 0 || high != 0) {
    *problem = "byte " + std::to_string(bytes.size()) + ": not UTF-16 (the last character is cut off)";
    return std::nullopt;
  }
  return text;
}

bool isXMLInUTF8(const std::string& bytes) {
  return startsWith(bytes, markOfUTF8, 3) || (!utf16StartOf(bytes) && isUTF8Name(declaredEncoding(bytes)));
}

std::optional<std::string> convertedToUTF8(const std::string& bytes, std::string* problem) {
  if (startsWith(bytes, markOfUTF8, 3)) return bytes.substr(3);
  if (const UTF16Start* const start = utf16StartOf(bytes)) {
    return utf8FromUTF16(bytes, start->markLength, start->isBigEndian, problem);
  }
  const std::string encoding = declaredEncoding(bytes);
  if (isUTF8Name(encoding)) return std::nullopt;
  if (startsWith(encoding, "UTF-16", 6)) {
    *problem = "line 1: the file says that it is in UTF-16 and is not";
    return std::nullopt;
  }
  const char* const converter = converterName(encoding);
  if (*converter == '\0') {
    *problem = "line 1: the encoding " + encoding + " is not supported (UTF-8, UTF-16, ISO-8859-1, Windows-1252)";
    return std::nullopt;
  }
  return convertToUTF8(bytes, converter, problem);
}

}  // namespace epg
