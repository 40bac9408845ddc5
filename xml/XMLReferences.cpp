#include "xml/XMLReferences.h"

#include <utf8.h>

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "xml/Surrogates.h"
#include "xml/XMLText.h"

namespace epg {

namespace {

/// The number in "#65" or "#x41"; 0 where there is none or no character can have it.
std::uint32_t numberInReference(std::string_view reference) {
  const bool hexadecimal = reference.size() > 1 && reference[1] == 'x';
  const std::size_t start = hexadecimal ? 2 : 1;
  if (reference.size() <= start || reference[0] != '#') return 0;
  std::uint32_t point = 0;
  for (std::size_t i = start; i < reference.size(); ++i) {
    const char c = reference[i];
    std::uint32_t digit = 0;
    if (c >= '0' && c <= '9') {
      digit = static_cast<std::uint32_t>(c - '0');
    } else if (hexadecimal && std::isxdigit(static_cast<unsigned char>(c))) {
      digit = static_cast<std::uint32_t>(std::tolower(static_cast<unsigned char>(c)) - 'a' + 10);
    } else {
      return 0;
    }
    point = point * (hexadecimal ? 16 : 10) + digit;
    if (point > 0x10FFFF) return 0;
  }
  return point;
}

/// What stands between "&" and ";" at the start of `raw`; empty where no reference stands there.
std::string_view referenceAt(std::string_view raw) {
  // Longer than any reference that can be resolved, so that a stray ampersand does not quote a page.
  constexpr std::size_t longest = 32;
  if (raw.empty() || raw[0] != '&') return {};
  const std::size_t semicolon = raw.substr(0, longest).find(';');
  return semicolon == std::string_view::npos ? std::string_view() : raw.substr(1, semicolon - 1);
}

/// The character of one of the five names; 0 for any other.
char namedCharacter(std::string_view reference) {
  static const struct {
    const char* name;
    char character;
  } named[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
  for (const auto& entity : named) {
    if (reference == entity.name) return entity.character;
  }
  return 0;
}

}  // namespace

std::string appendResolvedXML(std::string& text, std::string_view raw, XMLHalves halves) {
  for (std::size_t ampersand = raw.find('&'); ampersand != std::string_view::npos; ampersand = raw.find('&')) {
    text.append(raw.data(), ampersand);
    raw.remove_prefix(ampersand);
    const std::string_view reference = referenceAt(raw);
    if (reference.empty()) return raw.substr(0, 2) == "&;" ? "&;" : "&";
    raw.remove_prefix(reference.size() + 2);
    std::uint32_t point = numberInReference(reference);
    if (const char character = namedCharacter(reference)) point = static_cast<unsigned char>(character);
    if (halves == XMLHalves::Replaced && isHighSurrogate(point)) {
      const std::string_view following = referenceAt(raw);
      const std::uint32_t low = numberInReference(following);
      if (isLowSurrogate(low)) {
        raw.remove_prefix(following.size() + 2);
        point = characterOfSurrogates(point, low);
      }
    }
    if (isHighSurrogate(point) || isLowSurrogate(point)) {
      if (halves == XMLHalves::Refused) return "&" + std::string(reference) + ";";
      text += replacementCharacter;
      continue;
    }
    // safeguard: refusing references that stand for nothing
    if (point == 0) return "&" + std::string(reference) + ";";
    utf8::append(point, std::back_inserter(text));
  }
  text.append(raw.data(), raw.size());
  return {};
}

}  // namespace epg
