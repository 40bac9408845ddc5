#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/Environment.h"
#include "tests/support/Gate.h"

namespace epg::test {

/// The operating system under control: a clock that stands still, a home folder of the test's own, threads and file
/// calls that can be held, made to fail or counted. Everything that is not asked to be otherwise is the real thing.
///
/// Must outlive the threads of the objects that use it: `waitForThreads` waits for them.
class TestEnvironment : public Environment {
 public:
  enum class Call {
    StartThread,  ///< On the new thread, before it does anything.
    Open,
    Read,
    Write,
    Info,
    SetMode,
    Flush,
    Rename,
    Link,
    Exchange,
    Remove,
    PathInfo,
    List,
  };

  /// What happens before a call: 0 lets it go on, an errno value makes it fail. May throw, or hold the thread.
  using Action = std::function<int()>;

  /// Runs `action` before every such call on a path that contains `part` (a file's own temporary file contains its
  /// name), on the thread that makes the call. Of several that fit, the one given last counts.
  void before(Call call, const std::string& part, Action action);
  /// Holds every thread that comes to such a call at the gate.
  void holdBefore(Call call, const std::string& part, const Gate& gate);
  void failOn(Call call, const std::string& part, int error);
  void letAllCallsPass();

  void setNow(Instant now);
  void setMemorySize(std::uint64_t bytes) { memorySize_ = bytes; }
  void setHomeFolder(const std::string& path);
  void setHomeFolderOfUser(const std::string& user, const std::string& path);
  /// What every folder lists from now on, in this order.
  void setListing(std::vector<std::string> names);
  /// Without flushing, thousands of small writes do not wait for the disk.
  void setFlushesToDisk(bool flushes);

  std::vector<std::string> logged() const;

  struct Replacement {
    std::string path;
    int error = 0;
    std::thread::id thread;
  };
  /// The file replacements that are done, whatever came of them.
  std::vector<Replacement> replacements() const;
  void waitForReplacements(std::size_t count) const;

  std::size_t threadsStarted() const;
  /// Waits until every detached thread has ended and given up what it held.
  void waitForThreads() const;

  int openFile(const std::string& path, int flags, mode_t mode, int* descriptor) override;
  int readFile(int descriptor, char* buffer, std::size_t capacity, std::size_t* count) override;
  int writeFile(int descriptor, const char* bytes, std::size_t size, std::size_t* written) override;
  int fileInfo(int descriptor, FileInfo* info) override;
  int setFileMode(int descriptor, mode_t mode) override;
  int flushFile(int descriptor) override;
  int closeFile(int descriptor) override;
  int renameFile(const std::string& from, const std::string& to) override;
  int exchangeFiles(const std::string& one, const std::string& other) override;
  int linkFile(const std::string& from, const std::string& to) override;
  int removeFile(const std::string& path) override;
  int pathInfo(const std::string& path, FileInfo* info) override;
  int listFolder(const std::string& path, std::vector<std::string>* names) override;
  Instant now() override;
  void detachThread(std::function<void()> body) override;
  void log(const std::string& line) override;
  std::uint64_t memorySize() override { return memorySize_; }
  std::string homeFolder() override;
  std::optional<std::string> homeFolderOfUser(const std::string& user) override;
  void fileReplaced(const std::string& path, int error) override;

 private:
  struct Rule {
    Call call;
    std::string part;
    std::shared_ptr<Action> action;  ///< Shared, so that what it remembers stays from call to call.
  };

  int run(Call call, const std::string& path);
  int run(Call call, int descriptor);

  mutable std::mutex mutex_;
  mutable std::condition_variable condition_;
  std::vector<Rule> rules_;
  std::map<int, std::string> openPaths_;
  Instant now_ = Instant::fromUnixTime(1330880400);  // 4 March 2012, 17:00 UTC
  std::atomic<std::uint64_t> memorySize_{Environment::memorySize()};
  std::optional<std::string> homeFolder_;
  std::map<std::string, std::string> homeFolders_;
  std::optional<std::vector<std::string>> listing_;
  bool flushesToDisk_ = true;
  std::vector<std::string> logged_;
  std::vector<Replacement> replacements_;

  /// Of its own, so that a thread can still tell its end while this object goes.
  struct Threads {
    std::mutex mutex;
    std::condition_variable condition;
    std::size_t started = 0;
    std::size_t ended = 0;
  };
  std::shared_ptr<Threads> threads_ = std::make_shared<Threads>();
};

}  // namespace epg::test
