#pragma once

#include <string>
#include <vector>

namespace epg {

struct CommandContext;

/// Runs the command that the arguments (without the program's name) describe and answers the program's exit status:
/// 0 done, 1 refused or failed, 2 wrong usage, the last two with a message. `context` brings the data folder that is
/// used where the arguments name none. Returns only when every save and export has ended.
int runCommandLine(const std::vector<std::string>& arguments, CommandContext& context);

}  // namespace epg
