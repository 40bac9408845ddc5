#include "host/commands/DataFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <sstream>
#include <thread>

#include "host/commands/ReportingEnvironment.h"
#include "host/terminal/Messages.h"
#include "host/terminal/Refusal.h"
#include "tests/host/EnvironmentVariable.h"
#include "tests/host/RefusalOf.h"
#include "tests/support/TemporaryFolder.h"

namespace epg::test {

namespace {

class DataFolder : public testing::Test {
 protected:
  std::string folderRefusal(const std::string& path) {
    return refusalOf([&] { makeDataFolder(environment_, path); });
  }

  TemporaryFolder folder_;
  std::ostringstream stream_;
  Messages messages_{stream_, false};
  ReportingEnvironment environment_{messages_};
};

/// Waits for the lock in a way that the test can see.
class WaitingEnvironment : public ReportingEnvironment {
 public:
  using ReportingEnvironment::ReportingEnvironment;

  int waitForLock(int descriptor) override {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      isWaiting_ = true;
      changed_.notify_all();
    }
    return ReportingEnvironment::waitForLock(descriptor);
  }

  void waitUntilWaiting() {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return isWaiting_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isWaiting_ = false;
};

}  // namespace

#ifndef __APPLE__
TEST_F(DataFolder, IsWhereThePlatformKeepsApplicationData) {
  const EnvironmentVariable home("HOME", "/home/operator");
  {
    const EnvironmentVariable dataHome("XDG_DATA_HOME", std::nullopt);
    EXPECT_EQ(defaultDataFolderPath(environment_), "/home/operator/.local/share/EPGDorvaSelin");
  }
  {
    const EnvironmentVariable dataHome("XDG_DATA_HOME", "/srv/data");
    EXPECT_EQ(defaultDataFolderPath(environment_), "/srv/data/EPGDorvaSelin");
  }
  for (const char* unusable : {"", "data"}) {
    const EnvironmentVariable dataHome("XDG_DATA_HOME", unusable);
    EXPECT_EQ(defaultDataFolderPath(environment_), "/home/operator/.local/share/EPGDorvaSelin");
  }
}
#endif

TEST_F(DataFolder, IsMadeWithTheFoldersAboveIt) {
  makeDataFolder(environment_, folder_.file("a//b/c/"));
  EXPECT_TRUE(exists(folder_.file("a/b/c")));
  makeDataFolder(environment_, folder_.file("a/b/c"));
  EXPECT_EQ(namesIn(folder_.file("a/b/c")).size(), 0U);
}

TEST_F(DataFolder, IsNamedWhereItCannotBeMade) {
  writeFile(folder_.file("file"), "");
  EXPECT_EQ(folderRefusal(folder_.file("file/data")),
            folder_.file("file/data") + ": the folder cannot be made: Not a directory");
  EXPECT_EQ(folderRefusal(""), ": the folder cannot be made: No such file or directory");
}

TEST_F(DataFolder, CannotBeLockedWhereItIsAFile) {
  writeFile(folder_.file("file"), "");
  EXPECT_THROW(DataFolderLock(environment_, messages_, folder_.file("file")), Refusal);
}

TEST_F(DataFolder, IsLockedForOneAtATime) {
  WaitingEnvironment environment(messages_);
  auto first = std::make_unique<DataFolderLock>(environment_, messages_, folder_.path());
  std::atomic<bool> firstIsOver{false};
  bool secondCameLater = false;
  std::thread other([&] {
    const DataFolderLock second(environment, messages_, folder_.path());
    secondCameLater = firstIsOver;
  });
  environment.waitUntilWaiting();
  EXPECT_EQ(stream_.str(), "Waiting for another dorvaselin to finish its change in " + folder_.path() + "\n");
  firstIsOver = true;
  first.reset();
  other.join();
  EXPECT_TRUE(secondCameLater);
  EXPECT_EQ(namesIn(folder_.path()).size(), 0U);
}

}  // namespace epg::test
