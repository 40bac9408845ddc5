#pragma once

#include <string>

namespace epg {

class Environment;

/// What the system says about an errno value, for a message.
std::string systemMessage(int error);

/// The content of a file that a command was given. Throws a `Refusal` that names the file.
std::string readInputFile(Environment& environment, const std::string& path);

}  // namespace epg
