#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/Environment.h"

namespace epg::test {

/// A disk of a few files that exist only here, for reading; every other path does not exist. One thread.
class FilesInMemory : public Environment {
 public:
  void put(const std::string& path, const std::string& content) { files_[path] = content; }
  void remove(const std::string& path) { files_.erase(path); }
  /// From now on opening the file fails with this errno value.
  void refuse(const std::string& path, int error) { refused_[path] = error; }

  std::size_t timesOpened(const std::string& path) const;

  /// Lines that went to the system log.
  const std::vector<std::string>& logged() const { return logged_; }

  int openFile(const std::string& path, int flags, mode_t mode, int* descriptor) override;
  int fileInfo(int descriptor, FileInfo* info) override;
  int readFile(int descriptor, char* buffer, std::size_t capacity, std::size_t* count) override;
  int closeFile(int descriptor) override;
  void log(const std::string& line) override { logged_.push_back(line); }

 private:
  struct Reading {
    std::string content;
    std::size_t position = 0;
  };

  std::map<std::string, std::string> files_;
  std::map<std::string, int> refused_;
  std::map<int, Reading> open_;
  int nextDescriptor_ = 1000;
  std::vector<std::string> opened_;
  std::vector<std::string> logged_;
};

}  // namespace epg::test
