#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>

namespace epg::test {

/// Holds threads at a chosen point: whoever comes waits there until the gate is opened. Closed when it is made, open
/// for good when it is destroyed, so that a failed test never leaves a thread behind.
class Gate {
 public:
  Gate() = default;
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;
  ~Gate() { open(); }

  void open() {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    state_->isOpen = true;
    state_->condition.notify_all();
  }

  /// Waits until `count` threads stand at the closed gate.
  void waitUntilHolding(std::size_t count = 1) {
    std::unique_lock<std::mutex> lock(state_->mutex);
    state_->condition.wait(lock, [&] { return state_->holding >= count; });
  }

  /// What a thread calls at the chosen point. May outlive the gate.
  std::function<void()> passing() const {
    return [state = state_] {
      std::unique_lock<std::mutex> lock(state->mutex);
      if (state->isOpen) return;
      ++state->holding;
      state->condition.notify_all();
      state->condition.wait(lock, [&] { return state->isOpen; });
    };
  }

 private:
  struct State {
    std::mutex mutex;
    std::condition_variable condition;
    bool isOpen = false;
    std::size_t holding = 0;  ///< Threads that have come to the closed gate.
  };
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace epg::test
