#pragma once

#include <cstddef>
#include <mutex>
#include <ostream>
#include <string>

namespace epg {

/// Writes to standard error: messages and, on a terminal, below them one line that shows progress and is overwritten in
/// place. Escapes everything that could steer the terminal. Any thread.
class Messages {
 public:
  /// `stream` must outlive the object.
  Messages(std::ostream& stream, bool isTerminal) : stream_(stream), isTerminal_(isTerminal) {}
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;

  bool isTerminal() const { return isTerminal_; }

  void line(const std::string& text);
  /// Only for a terminal. An empty text removes the progress line.
  void showProgress(const std::string& text);

 private:
  void eraseProgress();

  std::ostream& stream_;
  const bool isTerminal_;
  std::mutex mutex_;
  std::string progress_;  ///< As it stands on the terminal.
};

}  // namespace epg
