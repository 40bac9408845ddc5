#pragma once

#include <string>

#include "host/commands/ProgramDescription.h"

namespace epg {

/// The manual page, in the man macros of roff. Paragraphs that several commands share stand in it once.
std::string manualPage(const ProgramDescription& description);

/// The completion for bash, which needs no other file.
std::string bashCompletion(const ProgramDescription& description);

/// The completion for zsh, for a file "_dorvaselin" in a folder of fpath.
std::string zshCompletion(const ProgramDescription& description);

/// The completion for fish.
std::string fishCompletion(const ProgramDescription& description);

}  // namespace epg
