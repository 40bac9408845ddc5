#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace epg {

class Messages;

/// "Reading guide.xml: 12 s".
std::string progressText(const std::string& work, std::chrono::seconds elapsed);

/// Shows on a terminal that work goes on for as long as the object lives. Does nothing without a terminal.
class Progress {
 public:
  /// `work` says what is being done. The display starts after the time `quiet`, so that quick work shows nothing, and
  /// is renewed once a second. `messages` must outlive the object.
  Progress(Messages& messages, std::string work, std::chrono::milliseconds quiet = std::chrono::seconds(1));
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

 private:
  void run();

  Messages& messages_;
  const std::string work_;
  const std::chrono::milliseconds quiet_;
  const std::chrono::steady_clock::time_point start_;
  std::mutex mutex_;
  std::condition_variable over_;
  bool isOver_ = false;
  std::thread thread_;
};

}  // namespace epg
