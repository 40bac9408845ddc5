#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace epg::test {

/// The character in UTF-8.
std::string utf8(std::uint32_t point);

/// Whether XML 1.0 can carry the character.
bool isXMLCharacter(std::uint32_t point);

/// A character for each number: often one that is special to XML, otherwise any of any plane, save surrogates.
std::string characterFrom(std::uint32_t number);

/// Up to `longest` such characters.
std::string randomText(std::mt19937& random, std::size_t longest);

/// The text (UTF-8) as an XML reader gets it: characters that XML 1.0 cannot carry are U+FFFD.
std::string asXMLCarries(const std::string& text);

}  // namespace epg::test
