#include "host/manual/ShellText.h"

#include <algorithm>

namespace epg {

std::string shellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char character : text) quoted += character == '\'' ? "'\\''" : std::string(1, character);
  return quoted + "'";
}

std::string joined(const std::vector<std::string>& texts, const std::string& separator) {
  std::string all;
  for (std::size_t i = 0; i < texts.size(); ++i) all += (i == 0 ? "" : separator) + texts[i];
  return all;
}

std::string briefly(const std::string& description) { return description.substr(0, description.find(';')); }

std::string kindWord(ValueKind kind) {
  switch (kind) {
    case ValueKind::None:
      return {};
    case ValueKind::Text:
      return "text";
    case ValueKind::File:
      return "file";
    case ValueKind::Folder:
      return "folder";
    case ValueKind::Configuration:
      return "configuration";
    case ValueKind::Entry:
      return "entry";
    case ValueKind::Tag:
      return "tag";
  }
  return {};
}

std::vector<ArgumentDescription> optionsBeside(const CommandDescription& command, const CommandDescription& program) {
  std::vector<ArgumentDescription> options = program.options;
  for (const ArgumentDescription& option : command.options) {
    const bool isThere = std::any_of(options.begin(), options.end(),
                                     [&](const ArgumentDescription& other) { return other.names == option.names; });
    if (!isThere) options.push_back(option);
  }
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
