#include "host/commands/ParserArguments.h"

#include <algorithm>

namespace epg {

namespace {

/// Without the guard the parser reads "[a,b]" as a list of values, "{}" as an empty list, "++" as the end of a
/// command's arguments and whatever begins with "-" as an option.
std::string guarded(const std::string& text) { return parserGuard + text; }

bool needsGuard(const std::string& argument) {
  return !argument.empty() && (argument[0] == parserGuard || std::string("[{+").find(argument[0]) != std::string::npos);
}

}  // namespace

std::string unguarded(const std::string& text) {
  return !text.empty() && text[0] == parserGuard ? text.substr(1) : text;
}

std::vector<std::string> parserArguments(const std::vector<std::string>& arguments,
                                         const std::set<std::string>& optionsWithText) {
  std::vector<std::string> parsed;
  bool isValue = false;
  bool areTexts = false;
  for (const std::string& argument : arguments) {
    const std::size_t equals = argument.find('=');
    if (isValue || areTexts) {
      parsed.push_back(guarded(argument));
      isValue = false;
    } else if (argument == "--") {
      areTexts = true;
    } else if (equals != std::string::npos && optionsWithText.count(argument.substr(0, equals)) > 0) {
      parsed.push_back(argument.substr(0, equals));
      parsed.push_back(guarded(argument.substr(equals + 1)));
    } else {
      parsed.push_back(needsGuard(argument) ? guarded(argument) : argument);
      isValue = optionsWithText.count(argument) > 0;
    }
  }
  std::reverse(parsed.begin(), parsed.end());
  return parsed;
}

}  // namespace epg
