#pragma once

#include <string>
#include <vector>

namespace epg {

/// What the value of an option or a positional argument stands for.
enum class ValueKind {
  None,           ///< There is no value: a flag.
  Text,           ///< Anything.
  File,           ///< The path of a file.
  Folder,         ///< The path of a folder.
  Configuration,  ///< The name of an export configuration of the data folder.
  Entry,          ///< The EPG unique ID of an entry.
  Tag             ///< A name of the tag catalogue.
};

/// An option or a positional argument, as --help tells it.
struct ArgumentDescription {
  std::vector<std::string> names;  ///< "-h" and "--help"; for a positional argument the only one, "GUIDE".
  std::string valueName;           ///< "DIR"; empty for a flag and for a positional argument.
  std::string description;
  ValueKind kind = ValueKind::None;
  bool isRepeatable = false;
};

/// A command, or the program itself with the options of every command, as --help tells it.
struct CommandDescription {
  std::string name;
  std::string description;
  std::vector<ArgumentDescription> options;
  std::vector<ArgumentDescription> positionals;
  std::vector<std::string> paragraphs;  ///< What stands below the options.
};

/// The whole command line.
struct ProgramDescription {
  CommandDescription program;
  std::vector<CommandDescription> commands;
};

}  // namespace epg
