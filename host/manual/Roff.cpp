#include "host/manual/Roff.h"

#include <utf8.h>

#include <cstdint>
#include <cstdio>

namespace epg {

namespace {

/// roff prints some ASCII characters as typographic ones: a hyphen, quotation marks, accents.
std::string roffCharacter(std::uint32_t character) {
  switch (character) {
    case '\\':
      return "\\(rs";
    case '-':
      return "\\-";
    case '`':
      return "\\(ga";
    case '\'':
      return "\\(aq";
    case '"':
      return "\\(dq";
    case '^':
      return "\\(ha";
    case '~':
      return "\\(ti";
    default:
      break;
  }
  if (character < 0x80) return std::string(1, static_cast<char>(character));
  char name[16];
  std::snprintf(name, sizeof name, "\\[u%04X]", static_cast<unsigned>(character));
  return name;
}

}  // namespace

std::string roffText(const std::string& text) {
  std::string roff;
  bool startsLine = true;
  for (auto position = text.begin(); position != text.end();) {
    const std::uint32_t character = utf8::next(position, text.end());
    // \& has no width. Behind it a dot starts no request and a space breaks no line.
    if (startsLine && (character == '.' || character == ' ')) roff += "\\&";
    roff += roffCharacter(character);
    startsLine = character == '\n';
  }
  return roff;
}

std::string roffBold(const std::string& text) { return "\\fB" + roffText(text) + "\\fP"; }

std::string roffItalic(const std::string& text) { return "\\fI" + roffText(text) + "\\fP"; }

}  // namespace epg
