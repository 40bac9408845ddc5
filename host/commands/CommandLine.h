#pragma once

#include <string>
#include <vector>

namespace epg {

struct CommandContext;

/// Runs the command that the arguments (without the program's name) describe and returns the program's exit status,
/// with a message unless it is `exitDone`. The data folder of `context` is used when the arguments name none. Returns
/// after every save and export has ended.
int runCommandLine(const std::vector<std::string>& arguments, CommandContext& context);

}  // namespace epg
