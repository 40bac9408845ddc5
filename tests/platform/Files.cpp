#include "tests/platform/Files.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace epg::test {

std::string contentOrMissing(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return "(missing)";
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
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
