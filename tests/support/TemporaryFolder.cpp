#include "tests/support/TemporaryFolder.h"

#include <dirent.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace epg::test {

TemporaryFolder::TemporaryFolder() {
  const char* const parent = std::getenv("TMPDIR");  // NOLINT(concurrency-mt-unsafe)
  path_ = std::string(parent && *parent ? parent : P_tmpdir) + "/epg-test-XXXXXX";
  if (!::mkdtemp(&path_[0])) {
    std::perror(path_.c_str());
    std::abort();
  }
  ::chmod(path_.c_str(), 0755);
}

TemporaryFolder::~TemporaryFolder() { removeAll(path_); }

std::string TemporaryFolder::makeFolder(const std::string& name) const {
  const std::string folder = file(name);
  EXPECT_EQ(0, ::mkdir(folder.c_str(), 0755)) << folder;
  return folder;
}

void writeFile(const std::string& path, const std::string& content) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << content;
  file.close();
  EXPECT_TRUE(file) << path;
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path << " cannot be read";
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool exists(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0;
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  DIR* const stream = ::opendir(folder.c_str());
  if (!stream) return names;
  while (const struct dirent* const entry = ::readdir(stream)) {  // NOLINT(concurrency-mt-unsafe)
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  ::closedir(stream);
  std::sort(names.begin(), names.end());
  return names;
}

void removeAll(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
    ::chmod(path.c_str(), 0700);
    for (const std::string& name : namesIn(path)) removeAll(path + "/" + name);
  }
  std::remove(path.c_str());
}

}  // namespace epg::test
