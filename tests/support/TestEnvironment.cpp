#include "tests/support/TestEnvironment.h"

#include <utility>

namespace epg::test {

void TestEnvironment::before(Call call, const std::string& part, Action action) {
  const std::lock_guard<std::mutex> lock(mutex_);
  rules_.push_back({call, part, std::make_shared<Action>(std::move(action))});
}

void TestEnvironment::holdBefore(Call call, const std::string& part, const Gate& gate) {
  before(call, part, [pass = gate.passing()] {
    pass();
    return 0;
  });
}

void TestEnvironment::failOn(Call call, const std::string& part, int error) {
  before(call, part, [error] { return error; });
}

void TestEnvironment::letAllCallsPass() {
  const std::lock_guard<std::mutex> lock(mutex_);
  rules_.clear();
}

void TestEnvironment::setNow(Instant now) {
  const std::lock_guard<std::mutex> lock(mutex_);
  now_ = now;
}

void TestEnvironment::setHomeFolder(const std::string& path) {
  const std::lock_guard<std::mutex> lock(mutex_);
  homeFolder_ = path;
}

void TestEnvironment::setHomeFolderOfUser(const std::string& user, const std::string& path) {
  const std::lock_guard<std::mutex> lock(mutex_);
  homeFolders_[user] = path;
}

void TestEnvironment::setListing(std::vector<std::string> names) {
  const std::lock_guard<std::mutex> lock(mutex_);
  listing_ = std::move(names);
}

void TestEnvironment::setFlushesToDisk(bool flushes) {
  const std::lock_guard<std::mutex> lock(mutex_);
  flushesToDisk_ = flushes;
}

std::vector<std::string> TestEnvironment::logged() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return logged_;
}

std::vector<TestEnvironment::Replacement> TestEnvironment::replacements() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return replacements_;
}

void TestEnvironment::waitForReplacements(std::size_t count) const {
  std::unique_lock<std::mutex> lock(mutex_);
  condition_.wait(lock, [&] { return replacements_.size() >= count; });
}

std::size_t TestEnvironment::threadsStarted() const {
  const std::lock_guard<std::mutex> lock(threads_->mutex);
  return threads_->started;
}

void TestEnvironment::waitForThreads() const {
  std::unique_lock<std::mutex> lock(threads_->mutex);
  threads_->condition.wait(lock, [&] { return threads_->ended == threads_->started; });
}

int TestEnvironment::run(Call call, const std::string& path) {
  std::shared_ptr<Action> action;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const Rule& rule : rules_) {
      if (rule.call == call && path.find(rule.part) != std::string::npos) action = rule.action;
    }
  }
  return action ? (*action)() : 0;
}

int TestEnvironment::run(Call call, int descriptor) {
  std::string path;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    path = openPaths_[descriptor];
  }
  return run(call, path);
}

int TestEnvironment::openFile(const std::string& path, int flags, mode_t mode, int* descriptor) {
  if (const int error = run(Call::Open, path)) return error;
  const int error = Environment::openFile(path, flags, mode, descriptor);
  if (error == 0) {
    const std::lock_guard<std::mutex> lock(mutex_);
    openPaths_[*descriptor] = path;
  }
  return error;
}

int TestEnvironment::readFile(int descriptor, char* buffer, std::size_t capacity, std::size_t* count) {
  if (const int error = run(Call::Read, descriptor)) return error;
  return Environment::readFile(descriptor, buffer, capacity, count);
}

int TestEnvironment::writeFile(int descriptor, const char* bytes, std::size_t size, std::size_t* written) {
  if (const int error = run(Call::Write, descriptor)) return error;
  return Environment::writeFile(descriptor, bytes, size, written);
}

int TestEnvironment::fileInfo(int descriptor, FileInfo* info) {
  if (const int error = run(Call::Info, descriptor)) return error;
  return Environment::fileInfo(descriptor, info);
}

int TestEnvironment::setFileMode(int descriptor, mode_t mode) {
  if (const int error = run(Call::SetMode, descriptor)) return error;
  return Environment::setFileMode(descriptor, mode);
}

int TestEnvironment::flushFile(int descriptor) {
  if (const int error = run(Call::Flush, descriptor)) return error;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!flushesToDisk_) return 0;
  }
  return Environment::flushFile(descriptor);
}

int TestEnvironment::closeFile(int descriptor) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    openPaths_.erase(descriptor);
  }
  return Environment::closeFile(descriptor);
}

int TestEnvironment::renameFile(const std::string& from, const std::string& to) {
  if (const int error = run(Call::Rename, to)) return error;
  return Environment::renameFile(from, to);
}

int TestEnvironment::exchangeFiles(const std::string& one, const std::string& other) {
  if (const int error = run(Call::Exchange, other)) return error;
  return Environment::exchangeFiles(one, other);
}

int TestEnvironment::linkFile(const std::string& from, const std::string& to) {
  if (const int error = run(Call::Link, to)) return error;
  return Environment::linkFile(from, to);
}

int TestEnvironment::removeFile(const std::string& path) {
  if (const int error = run(Call::Remove, path)) return error;
  return Environment::removeFile(path);
}

int TestEnvironment::pathInfo(const std::string& path, FileInfo* info) {
  if (const int error = run(Call::PathInfo, path)) return error;
  return Environment::pathInfo(path, info);
}

int TestEnvironment::listFolder(const std::string& path, std::vector<std::string>* names) {
  if (const int error = run(Call::List, path)) return error;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (listing_) {
      *names = *listing_;
      return 0;
    }
  }
  return Environment::listFolder(path, names);
}

Instant TestEnvironment::now() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return now_;
}

void TestEnvironment::detachThread(std::function<void()> body) {
  {
    const std::lock_guard<std::mutex> lock(threads_->mutex);
    ++threads_->started;
  }
  // The body in one place only, so that what it holds is given up on the thread, before the thread tells its end.
  auto only = std::make_shared<std::function<void()>>(std::move(body));
  Environment::detachThread([this, only, threads = threads_] {
    run(Call::StartThread, std::string());
    (*only)();
    *only = nullptr;
    const std::lock_guard<std::mutex> lock(threads->mutex);
    ++threads->ended;
    threads->condition.notify_all();
  });
}

void TestEnvironment::log(const std::string& line) {
  const std::lock_guard<std::mutex> lock(mutex_);
  logged_.push_back(line);
}

std::string TestEnvironment::homeFolder() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (homeFolder_) return *homeFolder_;
  }
  return Environment::homeFolder();
}

std::optional<std::string> TestEnvironment::homeFolderOfUser(const std::string& user) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto home = homeFolders_.find(user);
  if (home == homeFolders_.end()) return std::nullopt;
  return home->second;
}

void TestEnvironment::fileReplaced(const std::string& path, int error) {
  const std::lock_guard<std::mutex> lock(mutex_);
  replacements_.push_back({path, error, std::this_thread::get_id()});
  condition_.notify_all();
}

}  // namespace epg::test
