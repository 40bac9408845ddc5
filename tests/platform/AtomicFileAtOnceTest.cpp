// Many writers of one file at the same time.

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "platform/AtomicFile.h"
#include "tests/platform/ChildProcess.h"
#include "tests/platform/Files.h"
#include "tests/support/TemporaryFolder.h"

namespace epg::test {
namespace {

constexpr int writers = 4;
constexpr int rounds = 150;

/// Does not wait for the disk, so that the writers meet more often.
class Hurried : public Environment {
 public:
  int flushFile(int /*descriptor*/) override { return 0; }
};

/// Lines that all say the same, so that a part or a mix of two shows.
std::string contentOfRound(int writer, int round) {
  const std::string line = "writer " + std::to_string(writer) + " round " + std::to_string(round) + "\n";
  std::string content;
  for (int i = 0; i < 100 + writer * 700 + round; ++i) content += line;
  return content + "end\n";
}

bool isWhole(const std::string& content) {
  int writer = 0;
  int round = 0;
  if (std::sscanf(content.c_str(), "writer %d round %d", &writer, &round) != 2) return false;
  return content == contentOfRound(writer, round);
}

/// How many of the writer's replacements failed.
int failuresOfWriter(Environment& environment, const std::string& path, int writer) {
  int failures = 0;
  for (int round = 0; round < rounds; ++round) {
    if (replaceFile(environment, path, contentOfRound(writer, round)) != 0) ++failures;
  }
  return failures;
}

class WritersAtOnce : public ::testing::Test {
 protected:
  void SetUp() override { writeFile(target, contentOfRound(0, 0)); }

  void expectWholeFileAlone() const {
    EXPECT_TRUE(isWhole(contentOrMissing(target)));
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>({"target"}));
  }

  TemporaryFolder folder;
  const std::string target = folder.file("target");
  Hurried environment;
};

TEST_F(WritersAtOnce, ThreadsNeverLeaveAReaderAPart) {
  std::atomic<int> failures{0};
  std::atomic<int> running{writers};
  std::vector<std::thread> threads;
  for (int writer = 0; writer < writers; ++writer) {
    threads.emplace_back([&, writer] {
      failures += failuresOfWriter(environment, target, writer);
      --running;
    });
  }
  int broken = 0;
  while (running > 0) broken += isWhole(contentOrMissing(target)) ? 0 : 1;
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(broken, 0);
  EXPECT_EQ(failures, 0);
  expectWholeFileAlone();
}

TEST_F(WritersAtOnce, ProcessesNeverLeaveAReaderAPart) {
  std::vector<int> processes;
  for (int writer = 0; writer < writers; ++writer) {
    processes.push_back(startChild([&] { return failuresOfWriter(environment, target, writer) == 0 ? 0 : 1; }));
  }
  const int reader = startChild([&] {
    for (int i = 0; i < 2000; ++i) {
      if (!isWhole(contentOrMissing(target))) return 1;
    }
    return 0;
  });
  for (const int process : processes) EXPECT_EQ(waitForChild(process), 0);
  EXPECT_EQ(waitForChild(reader), 0);
  expectWholeFileAlone();
}

TEST_F(WritersAtOnce, ThreadsWriteManyFilesOfOneFolderWithoutMeeting) {
  std::atomic<int> failures{0};
  std::vector<std::thread> threads;
  for (int writer = 0; writer < writers; ++writer) {
    threads.emplace_back(
        [&, writer] { failures += failuresOfWriter(environment, folder.file(std::to_string(writer)), writer); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
  for (int writer = 0; writer < writers; ++writer) {
    EXPECT_TRUE(contentOrMissing(folder.file(std::to_string(writer))) == contentOfRound(writer, rounds - 1)) << writer;
  }
  EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>({"0", "1", "2", "3", "target"}));
}

TEST_F(WritersAtOnce, FilesThatOthersRemoveAreReplacedAllTheSame) {
  std::atomic<bool> done{false};
  std::thread remover([&] {
    while (!done) environment.removeFile(target);
  });
  const int failures = failuresOfWriter(environment, target, 1);
  done = true;
  remover.join();
  EXPECT_EQ(failures, 0);
}

}  // namespace
}  // namespace epg::test
