#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/AtomicFile.h"
#include "tests/platform/Files.h"
#include "tests/support/FaultyEnvironment.h"
#include "tests/support/TemporaryFolder.h"

namespace epg::test {

class AtomicFile : public ::testing::Test {
 protected:
  /// Some tests go on as another user.
  void SetUp() override { ::chmod(folder.path().c_str(), 0777); }

  int replace(const std::string& content) { return replaceFile(environment, target, content); }

  /// Replaces the file and looks at what stands there afterwards, alone in its folder.
  void expectReplaced() {
    EXPECT_EQ(replace("new"), 0);
    EXPECT_EQ(infoOf(target).kind, Environment::FileKind::Regular);
    EXPECT_EQ(contentOrMissing(target), "new");
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>({"target"}));
  }

  /// The temporary files' paths that were made so far.
  std::vector<std::string> temporaryPaths() const {
    std::vector<std::string> paths;
    for (const auto& call : environment.calls()) {
      if (call.name != "openFile" || call.path == folder.path()) continue;
      if (std::find(paths.begin(), paths.end(), call.path) == paths.end()) paths.push_back(call.path);
    }
    return paths;
  }

  TemporaryFolder folder;
  std::string target = folder.file("target");
  FaultyEnvironment environment;
};

}  // namespace epg::test
