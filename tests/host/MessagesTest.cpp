#include "host/terminal/Messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <ostream>
#include <sstream>

#include "host/terminal/Progress.h"

namespace epg::test {

namespace {

/// Keeps what is written, and lets a test wait for it.
class WatchedStream : public std::ostream {
 public:
  WatchedStream() : std::ostream(nullptr) { rdbuf(&buffer_); }

  void waitForText() { buffer_.wait(); }
  std::string text() { return buffer_.text(); }

 private:
  class Buffer : public std::stringbuf {
   public:
    int sync() override {
      const std::lock_guard<std::mutex> lock(mutex_);
      isWritten_ = true;
      written_.notify_all();
      return 0;
    }
    void wait() {
      std::unique_lock<std::mutex> lock(mutex_);
      written_.wait(lock, [this] { return isWritten_; });
    }
    std::string text() { return str(); }

   private:
    std::mutex mutex_;
    std::condition_variable written_;
    bool isWritten_ = false;
  };

  Buffer buffer_;
};

}  // namespace

TEST(Messages, WriteWholeLines) {
  std::ostringstream stream;
  Messages messages(stream, false);
  messages.line("one");
  messages.line("two\nthree");
  EXPECT_EQ(stream.str(), "one\ntwo\nthree\n");
}

TEST(Messages, CannotSteerTheTerminal) {
  std::ostringstream stream;
  Messages messages(stream, true);
  messages.line("title \x1B[2J\x07");
  messages.showProgress("Reading \x1B[2J");
  EXPECT_EQ(stream.str(), "title \\x1B[2J\\x07\nReading \\x1B[2J");
}

TEST(Messages, DrawProgressOverItselfAndBelowTheLines) {
  std::ostringstream stream;
  Messages messages(stream, true);
  messages.showProgress("Work: 1 s");
  messages.showProgress("Work: 2 s");
  EXPECT_EQ(stream.str(), "Work: 1 s\r         \rWork: 2 s");
  stream.str("");
  messages.line("a warning");
  EXPECT_EQ(stream.str(), "\r         \ra warning\nWork: 2 s");
  stream.str("");
  messages.showProgress("");
  EXPECT_EQ(stream.str(), "\r         \r");
}

TEST(Progress, CountsWholeSeconds) {
  EXPECT_EQ(progressText("Reading", std::chrono::seconds(1)), "Reading: 1 s");
  EXPECT_EQ(progressText("Reading", std::chrono::seconds(61)), "Reading: 61 s");
}

TEST(Progress, IsShownWhileTheWorkGoesOnAndGoneAfterIt) {
  WatchedStream stream;
  Messages messages(stream, true);
  {
    const Progress progress(messages, "Reading", std::chrono::milliseconds(0));
    stream.waitForText();
  }
  EXPECT_THAT(stream.text(), testing::MatchesRegex("Reading: [0-9]+ s(.|\r)*\r *\r"));
}

TEST(Progress, OfQuickWorkLeavesATerminalAlone) {
  std::ostringstream stream;
  Messages messages(stream, true);
  // Quick beside what counts as quick, on however busy a machine.
  { const Progress progress(messages, "Reading", std::chrono::hours(24)); }
  EXPECT_EQ(stream.str(), "");
}

TEST(Progress, IsNeverShownWhereThereIsNoTerminal) {
  std::ostringstream stream;
  Messages messages(stream, false);
  { const Progress progress(messages, "Reading", std::chrono::milliseconds(0)); }
  EXPECT_EQ(stream.str(), "");
}

}  // namespace epg::test
