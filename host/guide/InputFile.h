#pragma once

#include <optional>
#include <string>

namespace epg {

class Environment;

/// The system's text for an errno value.
std::string systemMessage(int error);

/// The content of a file that a command was given. Throws a `Refusal` that names the file.
std::string readInputFile(Environment& environment, const std::string& path);

/// The same, decompressed when it is gzip.
std::string readDecompressedFile(Environment& environment, const std::string& path);

/// The content of a file that need not exist; nothing when there is none of that name. Throws a `Refusal` that names
/// the file when it exists but cannot be read; a link to a missing file counts as one that exists.
std::optional<std::string> contentIfThere(Environment& environment, const std::string& path);

}  // namespace epg
