#pragma once

#include <string>
#include <vector>

#include "platform/Environment.h"

namespace epg::test {

/// An empty folder of the test's own, removed with all it holds at the end. Open to every user, because some tests
/// go on as another one.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + "/" + name; }

  /// Sorted.
  std::vector<std::string> names() const;

 private:
  std::string path_;
};

/// Written in place, without the care that is tested here.
void putFile(const std::string& path, const std::string& content);

/// "(missing)" where there is none.
std::string contentOf(const std::string& path);

/// Of the path itself; a failed test and an empty info where there is nothing.
Environment::FileInfo infoOf(const std::string& path);

/// How many descriptors this process has open.
int openDescriptors();

}  // namespace epg::test
