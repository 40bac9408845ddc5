#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace epg {

/// Text as one line-oriented listing holds it: a backslash as "\\", line feed, tab and carriage return as "\n",
/// "\t" and "\r", every other character that could end a line or steer a terminal as "\xNN", one for each of its
/// bytes. Bytes that are not UTF-8 are written that way too. `unescapedLine` undoes it exactly.
std::string escapedForLine(const std::string& text);

/// The text behind a line of `escapedForLine`; nothing, with the reason in `problem`, when the line holds a backslash
/// that starts none of its forms.
std::optional<std::string> unescapedLine(const std::string& line, std::string* problem);

/// The text with the same characters made harmless but backslashes left as they are: for messages, which people read
/// and nobody takes apart again. Line feeds stay.
std::string harmlessMessage(const std::string& text);

/// Whether the text holds such a character as itself: a control character, one that ends a line, or one that changes
/// the direction of writing. Bytes that are not UTF-8 do not count.
bool steersOutput(const std::string& text);

/// The part of the text without the XML white space (space, tab, line feed, carriage return) at both ends. Lives as
/// long as the text.
std::string_view strippedOfWhiteSpace(std::string_view text);

/// "1 entry", "3 entries".
std::string counted(std::size_t count, const char* one, const char* many);

}  // namespace epg
