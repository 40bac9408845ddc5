#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace epg {

/// Whether a document says of itself that it is in UTF-8, by its mark, by its declaration or by having neither.
bool isXMLInUTF8(const std::string& bytes);

/// The document in UTF-8, of a document that is in another encoding. Nothing where it is in UTF-8, and then no problem;
/// or where it cannot be converted, with the reason in `problem`.
std::optional<std::string> convertedToUTF8(const std::string& bytes, std::string* problem);

/// The text that stands in UTF-16 from that byte on, in UTF-8; nothing, with the reason in `problem`, where it holds
/// half of a surrogate pair or ends in the middle of a character.
std::optional<std::string> utf8FromUTF16(const std::string& bytes, std::size_t from, bool isBigEndian,
                                         std::string* problem);

}  // namespace epg
