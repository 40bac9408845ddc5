#pragma once

#include <string>
#include <vector>

namespace epg::test {

/// A new empty folder of the test's own, removed with all that is in it. Everybody may enter it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + "/" + name; }
  /// Makes a folder in this one and gives its path.
  std::string makeFolder(const std::string& name) const;

 private:
  std::string path_;
};

void writeFile(const std::string& path, const std::string& content);
/// The file's bytes; a failure of the test, and an empty string, when it cannot be read.
std::string contentOf(const std::string& path);
/// Whether anything stands under the name, a dangling link included.
bool exists(const std::string& path);
/// Sorted by their bytes.
std::vector<std::string> namesIn(const std::string& folder);
/// Removes the file or folder with all that is in it.
void removeAll(const std::string& path);

}  // namespace epg::test
