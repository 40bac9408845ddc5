#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace epg {

/// The text escaped for a listing with one entry in a line: a backslash becomes "\\", line feed, tab and carriage
/// return become "\n", "\t" and "\r". Every byte of another character that could end a line or steer a terminal, and
/// every byte that is not UTF-8, becomes "\xNN". `unescapedLine` restores the text.
std::string escapedForLine(const std::string& text);

/// The text that `escapedForLine` made the line of. Nothing, with the reason in `problem`, when a backslash starts no
/// escape.
std::optional<std::string> unescapedLine(const std::string& line, std::string* problem);

/// The text escaped for a message: as for a listing, but line feeds and backslashes stay. People read messages; no
/// program has to restore the text.
std::string harmlessMessage(const std::string& text);

/// Whether the text holds a character that a listing escapes: a control character, one that ends a line, or one that
/// changes the direction of writing. Backslashes and bytes that are not UTF-8 do not count.
bool steersOutput(const std::string& text);

/// The part of the text without the XML white space (space, tab, line feed, carriage return) at both ends. Lives as
/// long as the text.
std::string_view strippedOfWhiteSpace(std::string_view text);

/// A label as it stands within a sentence: "image URL" for "Image URL".
std::string labelInSentence(std::string_view label);

/// "1 entry", "3 entries".
std::string counted(std::size_t count, const char* one, const char* many);

}  // namespace epg
