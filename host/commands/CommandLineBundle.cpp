#include "host/commands/CommandLineBundle.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

#ifdef __APPLE__
#include <mach-o/dyld.h>
#else
#include <unistd.h>
#endif

#include "platform/Environment.h"
#include "platform/Paths.h"

namespace epg {

namespace {

bool exists(Environment& environment, const std::string& path) {
  Environment::FileInfo info;
  return environment.pathInfo(path, &info) == 0;
}

/// The path of the running program; empty where the system does not tell.
std::string programPath() {
  std::vector<char> path(4096);
#ifdef __APPLE__
  auto size = static_cast<std::uint32_t>(path.size());
  return _NSGetExecutablePath(path.data(), &size) == 0 ? std::string(path.data()) : std::string();
#else
  const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
  return length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : std::string();
#endif
}

}  // namespace

CommandLineBundle::CommandLineBundle(Environment& environment, std::string resourceFolder)
    : environment_(environment), resourceFolder_(std::move(resourceFolder)) {}

std::optional<std::string> CommandLineBundle::pathForResource(const std::string& name, const std::string& type) const {
  const std::string path = appendPathComponent(resourceFolder_, appendPathExtension(name, type));
  if (!exists(environment_, path)) return std::nullopt;
  return path;
}

EditorOutlets CommandLineBundle::loadInterface(const std::string& /*nibName*/, EPGDorvaSelinViewController& owner) {
  editor_ = &owner;
  EditorOutlets outlets;
  outlets.view = &view_;
  outlets.tagsTableView = &tagsTable_;
  for (std::size_t i = 0; i < textFields_.size(); ++i) outlets.textFields[i] = &textFields_[i];
  return outlets;
}

std::string programResourceFolder() {
  const char* const named = std::getenv("DORVASELIN_RESOURCES");
  if (named && *named != '\0') return named;
  const std::string program = programPath();
  // Not relative to the current folder, which may be anybody's.
  if (program.empty()) return "/usr/share/dorvaselin";
  return program.substr(0, program.find_last_of('/') + 1) + "../share/dorvaselin";
}

}  // namespace epg
