#pragma once

#include <istream>
#include <string>
#include <vector>

namespace epg {

/// The EPG unique IDs that a command was given, in order. "-" stands for those on `input`, one a line, written as
/// listings write them (`escapedForLine`); empty lines and a carriage return at a line's end do not count.
///
/// Throws `WrongUsage` when "-" stands there twice, and a `Refusal` that names the line when the input is not UTF-8,
/// holds an escape that is none, or cannot be read, and when it names no ID.
std::vector<std::string> uniqueIDs(const std::vector<std::string>& arguments, std::istream& input);

}  // namespace epg
