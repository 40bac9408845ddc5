#include "host/terminal/Messages.h"

#include "host/terminal/LineText.h"

namespace epg {

void Messages::eraseProgress() {
  // One space for each byte is at least one for each column.
  if (!progress_.empty()) stream_ << '\r' << std::string(progress_.size(), ' ') << '\r';
}

void Messages::line(const std::string& text) {
  const std::lock_guard<std::mutex> lock(mutex_);
  eraseProgress();
  stream_ << harmlessMessage(text) << '\n' << progress_ << std::flush;
}

void Messages::showProgress(const std::string& text) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (text == progress_) return;
  eraseProgress();
  progress_ = escapedForLine(text);
  stream_ << progress_ << std::flush;
}

}  // namespace epg
