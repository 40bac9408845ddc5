#include "host/terminal/LineText.h"

#include <utf8.h>

#include <cstdint>

namespace epg {

namespace {

const char* const whiteSpace = " \t\n\r";

/// Characters that end a line or change what a terminal shows around them.
bool isSteering(std::uint32_t point) {
  return point < 0x20 || (point >= 0x7F && point <= 0x9F) ||  // Control characters.
         point == 0x2028 || point == 0x2029 ||                // Line and paragraph separators.
         (point >= 0x202A && point <= 0x202E) || (point >= 0x2066 && point <= 0x2069);  // Writing direction.
}

void appendEscapedByte(std::string& line, unsigned char byte) {
  static const char digits[] = "0123456789ABCDEF";
  line += "\\x";
  line += digits[byte >> 4];
  line += digits[byte & 0xF];
}

void appendEscaped(std::string& line, const std::string& bytes) {
  if (bytes == "\n") {
    line += "\\n";
  } else if (bytes == "\t") {
    line += "\\t";
  } else if (bytes == "\r") {
    line += "\\r";
  } else {
    for (const char byte : bytes) appendEscapedByte(line, static_cast<unsigned char>(byte));
  }
}

enum class Use { Line, Message };

std::string escaped(const std::string& text, Use use) {
  std::string line;
  line.reserve(text.size());
  auto valid = utf8::find_invalid(text.begin(), text.end());
  for (auto it = text.begin(); it != text.end();) {
    if (it == valid) {
      appendEscapedByte(line, static_cast<unsigned char>(*it));
      valid = utf8::find_invalid(++it, text.end());
      continue;
    }
    const auto start = it;
    const std::uint32_t point = utf8::unchecked::next(it);
    if (point == '\\' && use == Use::Line) {
      line += "\\\\";
    } else if (isSteering(point) && !(point == '\n' && use == Use::Message)) {
      appendEscaped(line, std::string(start, it));
    } else {
      line.append(start, it);
    }
  }
  return line;
}

int hexadecimalDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

}  // namespace

std::string escapedForLine(const std::string& text) { return escaped(text, Use::Line); }

std::string harmlessMessage(const std::string& text) { return escaped(text, Use::Message); }

bool steersOutput(const std::string& text) {
  for (auto it = text.begin(); it != text.end();) {
    const auto invalid = utf8::find_invalid(it, text.end());
    while (it != invalid) {
      if (isSteering(utf8::unchecked::next(it))) return true;
    }
    if (it != text.end()) ++it;
  }
  return false;
}

std::optional<std::string> unescapedLine(const std::string& line, std::string* problem) {
  std::string text;
  text.reserve(line.size());
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] != '\\') {
      text += line[i];
      continue;
    }
    const char form = i + 1 < line.size() ? line[i + 1] : '\0';
    const int high = form == 'x' && i + 2 < line.size() ? hexadecimalDigit(line[i + 2]) : -1;
    const int low = form == 'x' && i + 3 < line.size() ? hexadecimalDigit(line[i + 3]) : -1;
    if (form == '\\' || form == 'n' || form == 't' || form == 'r') {
      text += form == 'n' ? '\n' : form == 't' ? '\t' : form == 'r' ? '\r' : '\\';
      i += 1;
    } else if (high >= 0 && low >= 0) {
      text += static_cast<char>(high * 16 + low);
      i += 3;
    } else {
      *problem = "a backslash must be written \"\\\\\" and may else start only \"\\n\", \"\\t\", \"\\r\" and \"\\xNN\"";
      return std::nullopt;
    }
  }
  return text;
}

std::string_view strippedOfWhiteSpace(std::string_view text) {
  const std::size_t first = text.find_first_not_of(whiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
}

std::string labelInSentence(std::string_view label) {
  std::string text(label);
  if (!text.empty() && text[0] >= 'A' && text[0] <= 'Z') text[0] = static_cast<char>(text[0] - 'A' + 'a');
  return text;
}

std::string counted(std::size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace epg
