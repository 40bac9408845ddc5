#pragma once

#include <optional>
#include <string>

namespace epg {

class Environment;

/// What the system says about an errno value, for a message.
std::string systemMessage(int error);

/// The content of a file that a command was given. Throws a `Refusal` that names the file.
std::string readInputFile(Environment& environment, const std::string& path);

/// The content of a file that need not be there; nothing where nothing stands under its name. Throws a `Refusal` that
/// names the file where something does that cannot be read, a link that leads nowhere included.
std::optional<std::string> contentIfThere(Environment& environment, const std::string& path);

}  // namespace epg
