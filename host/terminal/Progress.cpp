#include "host/terminal/Progress.h"

#include <system_error>

#include "host/terminal/Messages.h"

namespace epg {

std::string progressText(const std::string& work, std::chrono::seconds elapsed) {
  return work + ": " + std::to_string(elapsed.count()) + " s";
}

Progress::Progress(Messages& messages, std::string work, std::chrono::milliseconds quiet)
    : messages_(messages), work_(std::move(work)), quiet_(quiet), start_(std::chrono::steady_clock::now()) {
  if (!messages_.isTerminal()) return;
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    // The work goes on without a display.
  }
}

Progress::~Progress() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    isOver_ = true;
  }
  over_.notify_one();
  thread_.join();
  messages_.showProgress({});
}

void Progress::run() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (auto next = start_ + quiet_; !over_.wait_until(lock, next, [this] { return isOver_; });
       next += std::chrono::seconds(1)) {
    messages_.showProgress(progressText(
        work_, std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start_)));
  }
}

}  // namespace epg
