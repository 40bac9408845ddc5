#include "platform/Environment.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "tests/platform/ChildProcess.h"
#include "tests/platform/Files.h"
#include "tests/support/TemporaryFolder.h"

namespace epg::test {
namespace {

using FileKind = Environment::FileKind;
using Names = std::vector<std::string>;

class EnvironmentFiles : public ::testing::Test {
 protected:
  int open(const std::string& name, int flags) {
    int descriptor = -1;
    EXPECT_EQ(environment.openFile(folder.file(name), flags, 0666, &descriptor), 0) << name;
    return descriptor;
  }

  TemporaryFolder folder;
  Environment environment;
};

TEST_F(EnvironmentFiles, WriteWhatTheyThenRead) {
  const int written = open("file", O_WRONLY | O_CREAT);
  std::size_t count = 0;
  EXPECT_EQ(environment.writeFile(written, "abc", 3, &count), 0);
  EXPECT_EQ(count, 3U);
  EXPECT_EQ(environment.flushFile(written), 0);
  EXPECT_EQ(environment.closeFile(written), 0);
  const int read = open("file", O_RDONLY);
  char buffer[8] = {};
  EXPECT_EQ(environment.readFile(read, buffer, sizeof buffer, &count), 0);
  EXPECT_EQ(count, 3U);
  EXPECT_STREQ(buffer, "abc");
  EXPECT_EQ(environment.readFile(read, buffer, sizeof buffer, &count), 0);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(environment.closeFile(read), 0);
}

TEST_F(EnvironmentFiles, AreNotHandedOnToOtherPrograms) {
  const int descriptor = open("file", O_WRONLY | O_CREAT);
  EXPECT_NE(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0);
  environment.closeFile(descriptor);
}

TEST_F(EnvironmentFiles, AnswerTheErrorOfTheSystem) {
  int descriptor = 0;
  EXPECT_EQ(environment.openFile(folder.file("missing"), O_RDONLY, 0, &descriptor), ENOENT);
  EXPECT_EQ(descriptor, -1);
  char buffer[1];
  std::size_t count = 0;
  Environment::FileInfo info;
  Names names;
  EXPECT_EQ(environment.readFile(-1, buffer, 1, &count), EBADF);
  EXPECT_EQ(environment.writeFile(-1, buffer, 0, &count), EBADF);
  EXPECT_EQ(environment.fileInfo(-1, &info), EBADF);
  EXPECT_EQ(environment.setFileMode(-1, 0), EBADF);
  EXPECT_EQ(environment.setFileOwner(-1, 0, 0), EBADF);
  EXPECT_EQ(environment.copyAccessList(folder.file("missing"), -1), ENOENT);
  EXPECT_EQ(environment.lockFile(-1), EBADF);
  EXPECT_EQ(environment.flushFile(-1), EBADF);
  EXPECT_EQ(environment.closeFile(-1), EBADF);
  EXPECT_EQ(environment.renameFile(folder.file("missing"), folder.file("a")), ENOENT);
  EXPECT_EQ(environment.removeFile(folder.file("missing")), ENOENT);
  EXPECT_EQ(environment.pathInfo(folder.file("missing"), &info), ENOENT);
  EXPECT_EQ(environment.listFolder(folder.file("missing"), &names), ENOENT);
}

TEST_F(EnvironmentFiles, NamesEndAtNoZeroByte) {
  // Else "target" would be what is opened, renamed or removed.
  writeFile(folder.file("target"), "content");
  writeFile(folder.file("other"), "other");
  const std::string path = folder.file("target") + std::string("\0.x", 3);
  int descriptor = -1;
  Environment::FileInfo info;
  Names names;
  EXPECT_EQ(environment.openFile(path, O_RDONLY, 0, &descriptor), EINVAL);
  EXPECT_EQ(environment.pathInfo(path, &info), EINVAL);
  EXPECT_EQ(environment.removeFile(path), EINVAL);
  EXPECT_EQ(environment.renameFile(path, folder.file("moved")), EINVAL);
  EXPECT_EQ(environment.renameFile(folder.file("other"), path), EINVAL);
  EXPECT_EQ(environment.exchangeFiles(path, folder.file("other")), EINVAL);
  EXPECT_EQ(environment.copyAccessList(path, 0), EINVAL);
  EXPECT_EQ(environment.exchangeFiles(folder.file("other"), path), EINVAL);
  EXPECT_EQ(environment.listFolder(folder.path() + std::string("\0x", 2), &names), EINVAL);
  EXPECT_EQ(namesIn(folder.path()), Names({"other", "target"}));
  EXPECT_EQ(contentOrMissing(folder.file("target")), "content");
  EXPECT_EQ(contentOrMissing(folder.file("other")), "other");
}

TEST_F(EnvironmentFiles, TellWhatStandsUnderAName) {
  writeFile(folder.file("file"), "a");
  ASSERT_EQ(::mkdir(folder.file("folder").c_str(), 0755), 0);
  ASSERT_EQ(::symlink("file", folder.file("link").c_str()), 0);
  ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0644), 0);
  EXPECT_EQ(infoOf(folder.file("file")).kind, FileKind::Regular);
  EXPECT_EQ(infoOf(folder.file("folder")).kind, FileKind::Folder);
  EXPECT_EQ(infoOf(folder.file("link")).kind, FileKind::Link);
  EXPECT_EQ(infoOf(folder.file("pipe")).kind, FileKind::Other);
}

TEST_F(EnvironmentFiles, TellTheSameOfAnOpenFileAsOfItsName) {
  const int descriptor = open("file", O_WRONLY | O_CREAT);
  EXPECT_EQ(environment.setFileMode(descriptor, 0640), 0);
  Environment::FileInfo opened;
  EXPECT_EQ(environment.fileInfo(descriptor, &opened), 0);
  const Environment::FileInfo named = infoOf(folder.file("file"));
  EXPECT_EQ(opened.kind, named.kind);
  EXPECT_EQ(opened.mode, named.mode);
  EXPECT_EQ(opened.mode, mode_t{0640});
  EXPECT_EQ(opened.inode, named.inode);
  EXPECT_EQ(opened.device, named.device);
  EXPECT_EQ(opened.owner, ::geteuid());
  environment.closeFile(descriptor);
}

TEST_F(EnvironmentFiles, AreLockedForEverybodyElse) {
  writeFile(folder.file("file"), "a");
  const int first = open("file", O_RDONLY);
  const int second = open("file", O_RDONLY);
  EXPECT_EQ(environment.lockFile(first), 0);
  EXPECT_EQ(environment.lockFile(second), EWOULDBLOCK);
  environment.closeFile(first);
  EXPECT_EQ(environment.lockFile(second), 0);
  environment.closeFile(second);
}

TEST_F(EnvironmentFiles, RenameReplacesTheTarget) {
  writeFile(folder.file("from"), "from");
  writeFile(folder.file("to"), "to");
  EXPECT_EQ(environment.renameFile(folder.file("from"), folder.file("to")), 0);
  EXPECT_EQ(contentOrMissing(folder.file("to")), "from");
  EXPECT_EQ(namesIn(folder.path()), Names({"to"}));
}

TEST_F(EnvironmentFiles, ExchangeSwapsOrSaysThatItCannot) {
  writeFile(folder.file("one"), "1");
  writeFile(folder.file("other"), "2");
  const int error = environment.exchangeFiles(folder.file("one"), folder.file("other"));
  EXPECT_TRUE(error == 0 || error == ENOTSUP) << error;
  EXPECT_EQ(contentOrMissing(folder.file("one")), error == 0 ? "2" : "1");
  EXPECT_EQ(contentOrMissing(folder.file("other")), error == 0 ? "1" : "2");
}

TEST_F(EnvironmentFiles, RemoveTakesTheLinkAndNotWhatItPointsTo) {
  writeFile(folder.file("file"), "a");
  ASSERT_EQ(::symlink("file", folder.file("link").c_str()), 0);
  EXPECT_EQ(environment.removeFile(folder.file("link")), 0);
  EXPECT_EQ(namesIn(folder.path()), Names({"file"}));
}

TEST_F(EnvironmentFiles, RemoveTakesNoFolder) {
  ASSERT_EQ(::mkdir(folder.file("folder").c_str(), 0755), 0);
  EXPECT_NE(environment.removeFile(folder.file("folder")), 0);
  EXPECT_EQ(namesIn(folder.path()), Names({"folder"}));
}

TEST_F(EnvironmentFiles, ListHoldsHiddenNamesAndNotTheFolderItself) {
  writeFile(folder.file(".hidden"), "");
  writeFile(folder.file("a\nb"), "");
  Names names = {"from before"};
  EXPECT_EQ(environment.listFolder(folder.path(), &names), 0);
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, Names({".hidden", "a\nb"}));
}

TEST(EnvironmentClock, TellsTheSystemsTime) {
  const auto before = static_cast<double>(::time(nullptr));
  const double now = Environment::standard().now().unixTime();
  EXPECT_GE(now, before - 1);
  EXPECT_LE(now, static_cast<double>(::time(nullptr)) + 1);
}

TEST(EnvironmentStandard, IsOneForAll) { EXPECT_EQ(&Environment::standard(), &Environment::standard()); }

// Threads

TEST(EnvironmentThread, RunsTheBodyOnAnotherThread) {
  std::promise<std::thread::id> id;
  Environment::standard().detachThread([&] { id.set_value(std::this_thread::get_id()); });
  EXPECT_NE(id.get_future().get(), std::this_thread::get_id());
}

TEST(EnvironmentThread, RunsTheBodyOnce) {
  std::atomic<int> runs{0};
  std::promise<void> done;
  Environment::standard().detachThread([&] {
    ++runs;
    done.set_value();
  });
  done.get_future().wait();
  EXPECT_EQ(runs, 1);
}

TEST(EnvironmentThread, RunsTheBodyBeforeItReturnsWhenThereIsNoThreadToBeHad) {
  constexpr int threadsToBeHad = 254;
  const int result = exitOfChild([] {
    struct rlimit none {};
    if (!becomeUnprivileged() || ::setrlimit(RLIMIT_NPROC, &none) != 0) return 255;
    const std::thread::id here = std::this_thread::get_id();
    try {
      std::thread([] {}).join();
      return threadsToBeHad;
    } catch (const std::system_error&) {
    }
    int runs = 0;
    bool ranHere = false;
    Environment::standard().detachThread([&] {
      ++runs;
      ranHere = std::this_thread::get_id() == here;
    });
    return runs == 1 && ranHere ? 0 : 1;
  });
  if (result == threadsToBeHad) GTEST_SKIP() << "NOT TESTED: this system gives threads beyond the limit";
  EXPECT_EQ(result, 0);
}

// Home folders

class EnvironmentHome : public ::testing::Test {
 protected:
  void SetUp() override {
    if (const char* const home = std::getenv("HOME")) before = home;
  }
  void TearDown() override {
    if (before) {
      ::setenv("HOME", before->c_str(), 1);
    } else {
      ::unsetenv("HOME");
    }
  }

  static std::string homeInDatabase() {
    const struct passwd* const entry = ::getpwuid(::getuid());
    return entry ? entry->pw_dir : "/";
  }

  std::optional<std::string> before;
  Environment environment;
};

TEST_F(EnvironmentHome, IsTheOneOfTheProcessEnvironment) {
  ::setenv("HOME", "/homes/operator", 1);
  EXPECT_EQ(environment.homeFolder(), "/homes/operator");
}

TEST_F(EnvironmentHome, IsTheOneOfTheUserDatabaseWithoutIt) {
  ::unsetenv("HOME");
  EXPECT_EQ(environment.homeFolder(), homeInDatabase());
}

TEST_F(EnvironmentHome, IsTheOneOfTheUserDatabaseWhenItIsNoAbsolutePath) {
  for (const char* home : {"", "relative/path", "."}) {
    ::setenv("HOME", home, 1);
    EXPECT_EQ(environment.homeFolder(), homeInDatabase()) << home;
  }
}

TEST_F(EnvironmentHome, OfANamedUserIsTheOneOfTheUserDatabase) {
  const struct passwd* const root = ::getpwnam("root");
  ASSERT_TRUE(root);
  const std::string folder = root->pw_dir;
  EXPECT_EQ(environment.homeFolderOfUser("root"), folder);
}

TEST_F(EnvironmentHome, OfNobodyIsNone) {
  EXPECT_FALSE(environment.homeFolderOfUser("nosuchuser"));
  EXPECT_FALSE(environment.homeFolderOfUser("no such/user"));
}

}  // namespace
}  // namespace epg::test
