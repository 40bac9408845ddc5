#include "host/commands/ReportingEnvironment.h"

#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "host/terminal/Messages.h"

namespace epg {

std::vector<ReportingEnvironment::Replacement> ReportingEnvironment::replacements() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return replacements_;
}

void ReportingEnvironment::log(const std::string& line) { messages_.line(line); }

void ReportingEnvironment::fileReplaced(const std::string& path, int error) {
  const std::lock_guard<std::mutex> lock(mutex_);
  replacements_.push_back({path, error});
}

int ReportingEnvironment::waitForLock(int descriptor) {
  while (flock(descriptor, LOCK_EX) != 0) {
    // Retry on EINTR.
    if (errno != EINTR) return errno;
  }
  return 0;
}

int ReportingEnvironment::makeFolder(const std::string& path) { return mkdir(path.c_str(), 0777) == 0 ? 0 : errno; }

std::optional<int> lastReplacementError(const ReportingEnvironment& environment, const std::string& path) {
  const std::vector<ReportingEnvironment::Replacement> all = environment.replacements();
  const auto last = std::find_if(all.rbegin(), all.rend(),
                                 [&](const ReportingEnvironment::Replacement& each) { return each.path == path; });
  if (last == all.rend()) return std::nullopt;
  return last->error;
}

}  // namespace epg
