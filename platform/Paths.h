#pragma once

#include <string>

namespace epg {

class Environment;

/// Path operations with the platform's rules. Paths are byte strings separated by "/".

/// "a" and "b" give "a/b"; slashes where they meet or end are merged; an empty component adds nothing.
std::string appendPathComponent(const std::string& path, const std::string& component);
/// "a/b" and "x" give "a/b.x".
std::string appendPathExtension(const std::string& path, const std::string& extension);
/// The folder that the path's last component lies in; "." of a name alone.
std::string parentFolder(const std::string& path);
std::string lastPathComponent(const std::string& path);
/// Without the dot; empty where there is none. A leading dot starts a hidden name, not an extension.
std::string pathExtension(const std::string& name);
std::string deletePathExtension(const std::string& name);
/// A leading "~" or "~user" becomes that user's home folder; other paths, and unknown users, stay as they are.
std::string expandTilde(Environment& environment, const std::string& path);

}  // namespace epg
