#include "tests/platform/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace epg::test {

namespace {

void removeTree(const std::string& path) {
  Environment& environment = Environment::standard();
  Environment::FileInfo info;
  if (environment.pathInfo(path, &info) != 0) return;
  if (info.kind != Environment::FileKind::Folder) {
    ::unlink(path.c_str());
    return;
  }
  ::chmod(path.c_str(), 0700);
  std::vector<std::string> names;
  environment.listFolder(path, &names);
  for (const std::string& name : names) removeTree(path + "/" + name);
  ::rmdir(path.c_str());
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  std::string pattern = ::testing::TempDir() + "epg-XXXXXX";
  if (::mkdtemp(&pattern[0])) path_ = pattern;
  EXPECT_NE(path_, "") << "no temporary folder in " << ::testing::TempDir();
  ::chmod(path_.c_str(), 0777);
}

TemporaryFolder::~TemporaryFolder() {
  if (!path_.empty()) removeTree(path_);
}

std::vector<std::string> TemporaryFolder::names() const {
  std::vector<std::string> names;
  EXPECT_EQ(Environment::standard().listFolder(path_, &names), 0);
  std::sort(names.begin(), names.end());
  return names;
}

void putFile(const std::string& path, const std::string& content) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << content;
  file.close();
  EXPECT_TRUE(file) << path;
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return "(missing)";
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

Environment::FileInfo infoOf(const std::string& path) {
  Environment::FileInfo info;
  EXPECT_EQ(Environment::standard().pathInfo(path, &info), 0) << path;
  return info;
}

int openDescriptors() {
  int count = 0;
  for (int descriptor = 0; descriptor < 1024; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) != -1) ++count;
  }
  return count;
}

}  // namespace epg::test
