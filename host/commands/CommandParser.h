#pragma once

#include <string>
#include <vector>

#include "host/commands/ProgramDescription.h"

namespace epg {

struct CommandContext;

/// Runs the command that the arguments (without the program's name) describe, or prints the help or the version.
/// Returns the exit status. Throws what the command throws, and `WrongUsage`.
int parseAndRun(const std::vector<std::string>& arguments, CommandContext& context);

/// What --help tells about all commands, with the data folder of `context` as the default.
ProgramDescription describeProgram(CommandContext& context);

}  // namespace epg
