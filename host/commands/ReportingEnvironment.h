#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/Environment.h"

namespace epg {

class Messages;

/// The environment of the command line. Remembers how every replacement of a file ended, because the plug-in does not
/// report whether a save succeeded. Writes log lines to standard error.
class ReportingEnvironment : public Environment {
 public:
  struct Replacement {
    std::string path;
    int error = 0;  ///< 0, or the errno value of the call that failed.
  };

  /// `messages` must outlive the object.
  explicit ReportingEnvironment(Messages& messages) : messages_(messages) {}

  /// In the order in which they ended.
  std::vector<Replacement> replacements() const;

  void log(const std::string& line) override;
  void fileReplaced(const std::string& path, int error) override;

  /// As `lockFile`, but waits until the lock can be had.
  virtual int waitForLock(int descriptor);
  /// Makes one folder; its parent must exist.
  virtual int makeFolder(const std::string& path);

 private:
  Messages& messages_;
  mutable std::mutex mutex_;
  std::vector<Replacement> replacements_;
};

/// How the last replacement of the file ended; nothing when there was none.
std::optional<int> lastReplacementError(const ReportingEnvironment& environment, const std::string& path);

}  // namespace epg
