#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace epg {

/// Lets a host wait until an object that threads still hold is gone. Any thread.
class ObjectEnd {
 public:
  void wait() {
    std::unique_lock<std::mutex> lock(mutex_);
    condition_.wait(lock, [this] { return over_; });
  }
  /// False when the object still lives after `longest`.
  bool waitFor(std::chrono::milliseconds longest) {
    std::unique_lock<std::mutex> lock(mutex_);
    return condition_.wait_for(lock, longest, [this] { return over_; });
  }
  /// Called by the object as the last thing it does.
  void signal() {
    std::lock_guard<std::mutex> lock(mutex_);
    over_ = true;
    condition_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable condition_;
  bool over_ = false;
};

}  // namespace epg
