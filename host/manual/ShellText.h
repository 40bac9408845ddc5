#pragma once

#include <string>
#include <vector>

#include "host/commands/ProgramDescription.h"

namespace epg {

/// The text in single quotes, as bash and zsh read it.
std::string shellQuoted(const std::string& text);

/// The texts with one of `separator` between two.
std::string joined(const std::vector<std::string>& texts, const std::string& separator);

/// What a list of choices has room for: the description's first part, up to a semicolon.
std::string briefly(const std::string& description);

/// How the scripts call what a value stands for: "file", "folder", "configuration", "entry", "tag" or "text"; empty for
/// none.
std::string kindWord(ValueKind kind);

}  // namespace epg
