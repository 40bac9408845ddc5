#pragma once

#include <optional>
#include <string>

namespace epg {

/// Whether a document says of itself that it is in UTF-8, by its mark, by its declaration or by having neither.
bool isXMLInUTF8(const std::string& bytes);

/// The document in UTF-8, of a document that is in another encoding. Nothing where it is in UTF-8, and then no problem;
/// or where it cannot be converted, with the reason in `problem`.
std::optional<std::string> convertedToUTF8(const std::string& bytes, std::string* problem);

}  // namespace epg
