#pragma once

#include <string>
#include <vector>

#include "host/commands/ProgramDescription.h"

namespace epg {

/// The options of the command that the program does not have.
std::vector<ArgumentDescription> ownOptions(const CommandDescription& command, const CommandDescription& program);

/// The program's options, then the command's own.
std::vector<ArgumentDescription> allOptions(const CommandDescription& command, const CommandDescription& program);

/// The names of all options, of whichever command, that take a value; each once.
std::vector<std::string> optionsWithValue(const ProgramDescription& description);

}  // namespace epg
