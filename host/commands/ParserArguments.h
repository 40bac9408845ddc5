#pragma once

#include <set>
#include <string>
#include <vector>

namespace epg {

/// Put in front of a text, keeps the parser from taking it for an option or a list.
constexpr char parserGuard = '\x01';

/// The text without the guard that `parserArguments` may have put in front of it.
std::string unguarded(const std::string& text);

/// The arguments as the parser wants them: last to first. The values of `optionsWithText` and everything behind "--"
/// get the guard. "--title=…" becomes two arguments, because with an empty value the parser would take the next
/// argument.
std::vector<std::string> parserArguments(const std::vector<std::string>& arguments,
                                         const std::set<std::string>& optionsWithText);

}  // namespace epg
