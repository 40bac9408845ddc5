#pragma once

#include <cstddef>
#include <mutex>
#include <ostream>
#include <string>

namespace epg {

/// What goes to standard error: whole lines for people and, on a terminal, one line below them that shows progress
/// and is drawn over itself. Nothing that is written here can steer the terminal. Any thread.
class Messages {
 public:
  /// `stream` must outlive the object.
  Messages(std::ostream& stream, bool isTerminal) : stream_(stream), isTerminal_(isTerminal) {}
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;

  bool isTerminal() const { return isTerminal_; }

  void line(const std::string& text);
  /// Only for a terminal. An empty text takes the progress line away.
  void showProgress(const std::string& text);

 private:
  void eraseProgress();

  std::ostream& stream_;
  const bool isTerminal_;
  std::mutex mutex_;
  std::string progress_;  ///< As it stands on the terminal.
};

}  // namespace epg
