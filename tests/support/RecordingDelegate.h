#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "plugin/TelvarinManagerEPGPluginProtocol.h"

namespace epg::test {

/// A host's delegate that writes down what it is told.
class RecordingDelegate : public TelvarinManagerEPGPluginProtocol_Delegate {
 public:
  struct Report {
    std::string outcome;  ///< "YES", or "NO", the error's domain, its code in brackets and its message.
    std::thread::id thread;
  };

  void setResponds(bool responds);
  /// How often it was asked whether it responds.
  std::size_t timesAsked() const;

  std::vector<Report> reports() const;
  std::vector<std::string> outcomes() const;
  void waitForReports(std::size_t count) const;

  /// Runs inside every report, after it was written down. Set before the first export.
  std::function<void()> duringReport;

  bool respondsToEPGExportEventCompleted() const override;
  void epgExportEventCompleted(bool succeeded, const EPGError* error) override;

 private:
  mutable std::mutex mutex_;
  mutable std::condition_variable condition_;
  mutable std::size_t timesAsked_ = 0;
  bool responds_ = true;
  std::vector<Report> reports_;
};

extern const char* const busyRefusal;
extern const char* const writeErrorReport;

}  // namespace epg::test
