#pragma once

#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace epg {

/// An EPG unique ID among a command's arguments. Nothing stands for those on standard input.
using UniqueIDArgument = std::optional<std::string>;

/// The EPG unique IDs that a command was given, in order. Those on `input` stand one in a line, escaped as in listings
/// (`escapedForLine`). Empty lines, a carriage return at the end of a line and a byte-order mark at the start are
/// ignored.
///
/// Throws `WrongUsage` when standard input is named twice. Throws a `Refusal` that names the line when it is not UTF-8,
/// holds a tab (as a whole line of a listing does) or another control character, or a wrong escape. Throws one also
/// when the input cannot be read or holds no ID.
std::vector<std::string> uniqueIDs(const std::vector<UniqueIDArgument>& arguments, std::istream& input);

}  // namespace epg
