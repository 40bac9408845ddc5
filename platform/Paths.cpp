#include "platform/Paths.h"

#include <optional>

#include "platform/Environment.h"

namespace epg {

namespace {

std::string withoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

/// Where the extension's dot stands in a name; npos where there is none.
std::size_t extensionDot(const std::string& name) {
  const std::size_t dot = name.rfind('.');
  return dot == std::string::npos || dot == 0 || dot + 1 == name.size() ? std::string::npos : dot;
}

}  // namespace

std::string appendPathComponent(const std::string& path, const std::string& component) {
  const std::size_t start = component.find_first_not_of('/');
  std::string joined = withoutTrailingSlashes(path);
  if (start == std::string::npos) return joined;
  if (!joined.empty() && joined.back() != '/') joined += '/';
  return withoutTrailingSlashes(joined + component.substr(path.empty() ? 0 : start));
}

std::string appendPathExtension(const std::string& path, const std::string& extension) {
  return withoutTrailingSlashes(path) + "." + extension;
}

std::string parentFolder(const std::string& path) {
  const std::size_t end = path.find_last_not_of('/');
  const std::size_t slash = end == std::string::npos ? end : path.find_last_of('/', end);
  if (slash == std::string::npos) return path.empty() || path[0] != '/' ? "." : "/";
  const std::size_t parentEnd = path.find_last_not_of('/', slash);
  return parentEnd == std::string::npos ? "/" : path.substr(0, parentEnd + 1);
}

std::string lastPathComponent(const std::string& path) {
  const std::string trimmed = withoutTrailingSlashes(path);
  const std::size_t slash = trimmed.rfind('/');
  return slash == std::string::npos || trimmed.size() == 1 ? trimmed : trimmed.substr(slash + 1);
}

std::string pathExtension(const std::string& name) {
  const std::string last = lastPathComponent(name);
  const std::size_t dot = extensionDot(last);
  return dot == std::string::npos ? std::string() : last.substr(dot + 1);
}

std::string deletePathExtension(const std::string& name) {
  const std::string trimmed = withoutTrailingSlashes(name);
  const std::string extension = pathExtension(trimmed);
  return extension.empty() ? trimmed : trimmed.substr(0, trimmed.size() - extension.size() - 1);
}

std::string expandTilde(Environment& environment, const std::string& path) {
  if (path.empty() || path[0] != '~') return path;
  const std::size_t slash = path.find('/');
  const std::string user = path.substr(1, slash == std::string::npos ? std::string::npos : slash - 1);
  const std::optional<std::string> home = user.empty() ? environment.homeFolder() : environment.homeFolderOfUser(user);
  if (!home) return path;
  return appendPathComponent(*home, slash == std::string::npos ? std::string() : path.substr(slash));
}

}  // namespace epg
