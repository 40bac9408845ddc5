#include "benchmarks/WorkFolder.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "platform/Environment.h"

namespace epg::benchmarks {

namespace {

// NOLINTNEXTLINE(concurrency-mt-unsafe): nobody here sets any
const char* environmentVariable(const char* name) { return std::getenv(name); }

}  // namespace

WorkFolder::WorkFolder(const char* parent) {
  std::string pattern = std::string(parent && *parent ? parent : P_tmpdir) + "/benchmark-XXXXXX";
  if (!::mkdtemp(pattern.data())) throw std::runtime_error("no folder to work in: " + pattern);
  path_ = pattern;
}

WorkFolder::WorkFolder() : WorkFolder(environmentVariable("TMPDIR")) {}

WorkFolder WorkFolder::onDisk() {
  const char* const disk = environmentVariable("EPG_BENCHMARK_DISK");
  return WorkFolder(disk ? disk : environmentVariable("TMPDIR"));
}

WorkFolder::~WorkFolder() {
  std::vector<std::string> names;
  Environment::standard().listFolder(path_, &names);
  for (const std::string& name : names) ::unlink(file(name).c_str());
  ::rmdir(path_.c_str());
}

void WorkFolder::write(const std::string& name, const std::string& content) const {
  writeFile(file(name), content, false);
}

void writeFile(const std::string& path, std::string_view bytes, bool flush) {
  const std::string temporary = path + ".new";
  const int descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  std::size_t done = 0;
  while (descriptor >= 0 && done < bytes.size()) {
    const ssize_t written = ::write(descriptor, bytes.data() + done, bytes.size() - done);
    if (written <= 0) break;
    done += static_cast<std::size_t>(written);
  }
  const bool complete = descriptor >= 0 && done == bytes.size() && (!flush || ::fsync(descriptor) == 0);
  if (descriptor < 0 || ::close(descriptor) != 0 || !complete || ::rename(temporary.c_str(), path.c_str()) != 0) {
    throw std::runtime_error("cannot write " + path);
  }
}

}  // namespace epg::benchmarks
