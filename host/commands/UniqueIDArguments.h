#pragma once

#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace epg {

/// An EPG unique ID among a command's arguments. Nothing stands for those on standard input.
using UniqueIDArgument = std::optional<std::string>;

/// The EPG unique IDs that a command was given, in order. Those on `input` stand there one a line, written as listings
/// write them (`escapedForLine`); empty lines, a carriage return at a line's end and a byte-order mark at the very
/// start do not count.
///
/// Throws `WrongUsage` when standard input is named twice, and a `Refusal` that names the line when the input is not
/// UTF-8, holds a tab or another control character as itself (so a whole line of a listing is no ID) or an escape that
/// is none, or cannot be read, and when it names no ID.
std::vector<std::string> uniqueIDs(const std::vector<UniqueIDArgument>& arguments, std::istream& input);

}  // namespace epg
