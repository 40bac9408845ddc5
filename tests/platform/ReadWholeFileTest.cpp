#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "tests/platform/ChildProcess.h"
#include "tests/platform/Files.h"
#include "tests/support/FaultyEnvironment.h"
#include "tests/support/TemporaryFolder.h"

namespace epg::test {
namespace {

class ReadWholeFile : public ::testing::Test {
 protected:
  int read() { return readWholeFile(environment, path, &content); }

  TemporaryFolder folder;
  std::string path = folder.file("file");
  FaultyEnvironment environment;
  std::string content = "from before";
};

TEST_F(ReadWholeFile, GivesTheWholeContent) {
  std::string bytes;
  for (int i = 0; i < 300000; ++i) bytes += static_cast<char>(i % 251);
  writeFile(path, bytes);
  EXPECT_EQ(read(), 0);
  EXPECT_TRUE(content == bytes);
}

TEST_F(ReadWholeFile, GivesNothingOfAnEmptyFile) {
  writeFile(path, "");
  EXPECT_EQ(read(), 0);
  EXPECT_EQ(content, "");
}

TEST_F(ReadWholeFile, FollowsALink) {
  writeFile(folder.file("real"), "real");
  ASSERT_EQ(::symlink("real", path.c_str()), 0);
  EXPECT_EQ(read(), 0);
  EXPECT_EQ(content, "real");
}

TEST_F(ReadWholeFile, FileThatMemoryCannotHoldIsAnError) {
  class SmallMachine : public Environment {
   public:
    std::uint64_t memorySize() override { return 3; }
  };
  SmallMachine machine;
  writeFile(path, "abc");
  EXPECT_EQ(readWholeFile(machine, path, &content), 0);
  writeFile(path, "abcd");
  EXPECT_EQ(readWholeFile(machine, path, &content), EFBIG);
  EXPECT_EQ(content, "");
}

TEST_F(ReadWholeFile, FileOfEightTebibytesIsAnErrorAtOnce) {
  writeFile(path, "{");
  if (::truncate(path.c_str(), off_t{8} << 40) != 0)
    GTEST_SKIP() << "NOT TESTED: no file of this size can be made here";
  EXPECT_EQ(read(), EFBIG);
  EXPECT_EQ(content, "");
}

TEST_F(ReadWholeFile, MissingFileIsAnError) {
  EXPECT_EQ(read(), ENOENT);
  EXPECT_EQ(content, "");
}

TEST_F(ReadWholeFile, FolderIsAnError) {
  ASSERT_EQ(::mkdir(path.c_str(), 0755), 0);
  EXPECT_EQ(read(), EINVAL);
  EXPECT_EQ(content, "");
}

TEST_F(ReadWholeFile, PipeIsAnErrorWithoutWaitingForItsOtherEnd) {
  ASSERT_EQ(::mkfifo(path.c_str(), 0644), 0);
  EXPECT_EQ(read(), EINVAL);
}

TEST_F(ReadWholeFile, FileThatMayNotBeReadIsAnError) {
  writeFile(path, "secret");
  ::chmod(path.c_str(), 0000);
  EXPECT_EQ(exitOfChild([&] { return becomeUnprivileged() ? read() : 255; }), EACCES);
}

TEST_F(ReadWholeFile, ZeroByteInThePathIsAnError) {
  writeFile(path, "a");
  path += std::string("\0b", 2);
  EXPECT_EQ(read(), EINVAL);
}

TEST_F(ReadWholeFile, AnyCallFailingIsAnErrorAndGivesNothing) {
  writeFile(path, std::string(100000, 'x'));
  EXPECT_EQ(read(), 0);
  const std::size_t count = environment.calls().size();
  const int descriptors = openDescriptors();
  for (std::size_t number = 0; number + 1 < count; ++number) {  // The last one closes, which takes nothing away.
    FaultyEnvironment faulty;
    faulty.fail(number, EIO);
    EXPECT_EQ(readWholeFile(faulty, path, &content), EIO) << faulty.calls()[number].name;
    EXPECT_EQ(content, "");
    EXPECT_EQ(openDescriptors(), descriptors);
  }
}

TEST_F(ReadWholeFile, InterruptedCallsAreMadeAgain) {
  // An item store that cannot be read counts as empty and is written anew, so no passing trouble may pass for that.
  writeFile(path, "content");
  environment.interruptEveryCall(5);
  EXPECT_EQ(read(), 0);
  EXPECT_EQ(content, "content");
}

TEST_F(ReadWholeFile, CallThatIsInterruptedForEverIsAnErrorInTheEnd) {
  writeFile(path, "content");
  for (const char* name : {"openFile", "fileInfo", "readFile"}) {
    FaultyEnvironment faulty;
    faulty.failEvery(name, EINTR);
    EXPECT_EQ(readWholeFile(faulty, path, &content), EINTR) << name;
  }
}

}  // namespace
}  // namespace epg::test
