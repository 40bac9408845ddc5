#include "host/manual/Options.h"

#include <algorithm>
#include <iterator>

namespace epg {

std::vector<ArgumentDescription> ownOptions(const CommandDescription& command, const CommandDescription& program) {
  std::vector<ArgumentDescription> own;
  std::copy_if(command.options.begin(), command.options.end(), std::back_inserter(own),
               [&](const ArgumentDescription& option) {
                 return std::none_of(
                     program.options.begin(), program.options.end(),
                     [&](const ArgumentDescription& programsOption) { return programsOption.names == option.names; });
               });
  return own;
}

std::vector<ArgumentDescription> allOptions(const CommandDescription& command, const CommandDescription& program) {
  std::vector<ArgumentDescription> options = program.options;
  const std::vector<ArgumentDescription> own = ownOptions(command, program);
  options.insert(options.end(), own.begin(), own.end());
  return options;
}

std::vector<std::string> optionsWithValue(const ProgramDescription& description) {
  std::vector<ArgumentDescription> options = description.program.options;
  for (const CommandDescription& command : description.commands) {
    options.insert(options.end(), command.options.begin(), command.options.end());
  }
  std::vector<std::string> names;
  for (const ArgumentDescription& option : options) {
    if (option.kind == ValueKind::None) continue;
    for (const std::string& name : option.names) {
      if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
  }
  return names;
}

}  // namespace epg
