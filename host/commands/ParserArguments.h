#pragma once

#include <set>
#include <string>
#include <vector>

namespace epg {

/// The mark that keeps the parser of the command line from reading a text as anything else; see `unguarded`.
constexpr char parserGuard = '\x01';

/// The text without the mark that `parserArguments` may have put in front of it.
std::string unguarded(const std::string& text);

/// The arguments as the parser is given them, last to first. The values of `optionsWithText` and all that stands behind
/// "--" are guarded; "--title=…" becomes two arguments, because the parser would take the next one for an empty value.
std::vector<std::string> parserArguments(const std::vector<std::string>& arguments,
                                         const std::set<std::string>& optionsWithText);

}  // namespace epg
