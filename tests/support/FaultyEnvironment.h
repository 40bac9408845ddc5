#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/Environment.h"

namespace epg::test {

/// The real disk with faults: writes down every file call and lets chosen ones fail. A flush does not wait for the
/// disk. One thread at a time.
class FaultyEnvironment : public Environment {
 public:
  struct Call {
    std::string name;
    std::string path;  ///< Empty for calls on a descriptor.
  };

  /// The call with this number, counted from 0, fails with this errno value instead of being done. A close is done
  /// all the same, as systems do it.
  void fail(std::size_t call, int error) { faults_[call] = error; }
  /// Every call of this name fails.
  void failEvery(const std::string& name, int error) { namedFaults_[name] = error; }
  /// Every call is interrupted this often before it is done.
  void interruptEveryCall(int times) { interruptions_ = times; }
  /// No write takes more than this.
  void limitWritesTo(std::size_t size) { longestWrite_ = size; }
  /// Runs before the call with this number.
  void before(std::size_t call, std::function<void()> action) { actions_[call] = std::move(action); }

  const std::vector<Call>& calls() const { return calls_; }
  std::vector<std::string> callNames() const;
  const std::vector<std::pair<std::string, int>>& replaced() const { return replaced_; }

  int openFile(const std::string& path, int flags, mode_t mode, int* descriptor) override;
  int readFile(int descriptor, char* buffer, std::size_t capacity, std::size_t* count) override;
  int writeFile(int descriptor, const char* bytes, std::size_t size, std::size_t* written) override;
  int fileInfo(int descriptor, FileInfo* info) override;
  int setFileMode(int descriptor, mode_t mode) override;
  int setFileOwner(int descriptor, uid_t owner, gid_t group) override;
  int copyAccessList(const std::string& from, int descriptor) override;
  int lockFile(int descriptor) override;
  int flushFile(int descriptor) override;
  int closeFile(int descriptor) override;
  int renameFile(const std::string& from, const std::string& to) override;
  int exchangeFiles(const std::string& one, const std::string& other) override;
  int linkFile(const std::string& from, const std::string& to) override;
  int removeFile(const std::string& path) override;
  int pathInfo(const std::string& path, FileInfo* info) override;
  int listFolder(const std::string& path, std::vector<std::string>* names) override;
  void fileReplaced(const std::string& path, int error) override { replaced_.emplace_back(path, error); }

 private:
  /// Writes the call down; the errno value that it fails with, 0 when it is to be done.
  int begin(const char* name, const std::string& path = {});

  std::vector<Call> calls_;
  std::map<std::size_t, int> faults_;
  std::map<std::string, int> namedFaults_;
  std::map<std::size_t, std::function<void()>> actions_;
  int interruptions_ = 0;
  int interruptedSoFar_ = 0;
  std::size_t longestWrite_ = static_cast<std::size_t>(-1);
  std::vector<std::pair<std::string, int>> replaced_;
};

}  // namespace epg::test
