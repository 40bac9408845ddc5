// What killed writers leave, and who removes it.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "platform/AtomicFile.h"
#include "platform/Paths.h"
#include "tests/platform/ChildProcess.h"
#include "tests/platform/Files.h"
#include "tests/support/FaultyEnvironment.h"
#include "tests/support/TemporaryFolder.h"

namespace epg::test {
namespace {

using Names = std::vector<std::string>;

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

class Leftovers : public ::testing::Test {
 protected:
  Names temporaryFiles() const {
    Names found;
    for (const std::string& name : namesIn(folder.path())) {
      if (endsWith(name, ".tmp")) found.push_back(name);
    }
    return found;
  }

  int replace(const std::string& content) { return replaceFile(Environment::standard(), target, content); }

  void expectKeptByAReplacement(const Names& others) {
    for (const std::string& name : others) writeFile(folder.file(name), "another's");
    EXPECT_EQ(replace("new"), 0);
    Names expected = others;
    expected.push_back("target");
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(namesIn(folder.path()), expected);
  }

  TemporaryFolder folder;
  std::string target = folder.file("target");
};

/// Whether the volume of the test exchanges files or is made not to.
class KilledWriter : public Leftovers, public ::testing::WithParamInterface<bool> {
 protected:
  void prepare(FaultyEnvironment& environment) const {
    if (!GetParam()) environment.failEvery("exchangeFiles", ENOTSUP);
  }

  std::size_t undisturbedCalls() const {
    FaultyEnvironment environment;
    prepare(environment);
    EXPECT_EQ(replaceFile(environment, target, "old"), 0);
    EXPECT_EQ(replaceFile(environment, target, "old"), 0);
    return environment.calls().size();
  }

  void killBeforeCall(std::size_t number, const std::string& content) const {
    const int end = exitOfChild([&] {
      FaultyEnvironment environment;
      prepare(environment);
      environment.before(number, [] { ::kill(::getpid(), SIGKILL); });
      return replaceFile(environment, target, content);
    });
    EXPECT_TRUE(end == -SIGKILL || end == 0) << end;
  }

  /// The writer is killed before each of its calls in turn.
  template <typename Prepare, typename Check>
  void killBeforeEveryCall(Prepare prepareTarget, Check check) {
    const std::size_t count = undisturbedCalls();
    for (std::size_t number = 0; number < count; ++number) {
      SCOPED_TRACE("killed before call " + std::to_string(number));
      ::unlink(target.c_str());
      prepareTarget();
      killBeforeCall(number, "new");
      check();
      EXPECT_LE(temporaryFiles().size(), 1U);
      EXPECT_EQ(replace("next"), 0);
      EXPECT_EQ(contentOrMissing(target), "next");
      EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
    }
  }
};

TEST_P(KilledWriter, LeavesTheOldFileOrTheNewOneAndItsRemainsAreRemoved) {
  killBeforeEveryCall([&] { writeFile(target, "old"); },
                      [&] {
                        const std::string content = contentOrMissing(target);
                        EXPECT_TRUE(content == "old" || content == "new") << content;
                      });
}

TEST_P(KilledWriter, LeavesNoFileOrTheNewOneWhereThereWasNone) {
  killBeforeEveryCall([] {},
                      [&] {
                        const std::string content = contentOrMissing(target);
                        EXPECT_TRUE(content == "(missing)" || content == "new") << content;
                      });
}

TEST_P(KilledWriter, LeavesTheLinkOrTheNewFileWhereThereWasALink) {
  const TemporaryFolder elsewhere;
  writeFile(elsewhere.file("linked"), "linked");
  killBeforeEveryCall([&] { ASSERT_EQ(::symlink(elsewhere.file("linked").c_str(), target.c_str()), 0); },
                      [&] {
                        const std::string content = contentOrMissing(target);
                        EXPECT_TRUE(content == "linked" || content == "new") << content;
                        EXPECT_EQ(contentOrMissing(elsewhere.file("linked")), "linked");
                      });
}

INSTANTIATE_TEST_SUITE_P(AtomicFile, KilledWriter, ::testing::Bool(),
                         [](const auto& one) { return one.param ? "Exchange" : "NoExchange"; });

TEST_F(Leftovers, OfKilledWritersAreAllRemovedAtOnce) {
  for (int i = 1; i < 30; ++i) writeFile(folder.file(".target.99999-" + std::to_string(i) + ".tmp"), "left");
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

TEST_F(Leftovers, AreKeptWhenTheReplacementFails) {
  writeFile(folder.file(".target.99999-1.tmp"), "left");
  FaultyEnvironment environment;
  environment.failEvery("writeFile", ENOSPC);
  EXPECT_EQ(replaceFile(environment, target, "new"), ENOSPC);
  EXPECT_EQ(namesIn(folder.path()), Names({".target.99999-1.tmp"}));
}

TEST_F(Leftovers, OfOtherTargetsAreKept) {
  const Names others = {".other.99999-1.tmp", ".target.x.99999-1.tmp", ".targe.99999-1.tmp", ".x.target.99999-1.tmp"};
  expectKeptByAReplacement(others);
}

TEST_F(Leftovers, FilesThatOnlyLookAlikeAreKept) {
  const Names others = {".target.tmp",         ".target..tmp",         ".target.backup.tmp", ".target.99999-1.tmp.old",
                        "target.99999-1.tmp",  ".target.99999-1.TMP",  ".target.99999-1",    ".target.1a.tmp",
                        ".target.99999 1.tmp", ".target.99999-1.tmp~", ".TARGET.99999-1.tmp"};
  expectKeptByAReplacement(others);
}

TEST_F(Leftovers, FolderWithTheNameOfOneIsKeptAndIsNoError) {
  ASSERT_EQ(::mkdir(folder.file(".target.99999-1.tmp").c_str(), 0755), 0);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(namesIn(folder.path()), Names({".target.99999-1.tmp", "target"}));
}

TEST_F(Leftovers, PipeWithTheNameOfOneDoesNotHoldTheWriterUp) {
  ASSERT_EQ(::mkfifo(folder.file(".target.99999-1.tmp").c_str(), 0644), 0);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(contentOrMissing(target), "new");
}

TEST_F(Leftovers, LinkWithTheNameOfOneIsNotFollowed) {
  const TemporaryFolder elsewhere;
  writeFile(elsewhere.file("linked"), "linked");
  ASSERT_EQ(::symlink(elsewhere.file("linked").c_str(), folder.file(".target.99999-1.tmp").c_str()), 0);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(contentOrMissing(elsewhere.file("linked")), "linked");
}

TEST_F(Leftovers, OfAProcessWithTheSameNumberAreNotWrittenTo) {
  // Which name is next is known from the last one.
  FaultyEnvironment environment;
  ASSERT_EQ(replaceFile(environment, target, "old"), 0);
  std::string last;
  for (const auto& call : environment.calls()) {
    if (call.name == "openFile" && call.path != folder.path()) last = call.path;
  }
  const std::size_t dash = last.rfind('-');
  const unsigned long number = std::stoul(last.substr(dash + 1));
  for (unsigned long next = number + 1; next <= number + 5; ++next) {
    ASSERT_EQ(::symlink("nowhere", (last.substr(0, dash + 1) + std::to_string(next) + ".tmp").c_str()), 0);
  }
  EXPECT_EQ(replaceFile(environment, target, "new"), 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(contentOrMissing(folder.file("nowhere")), "(missing)");
}

/// A writer that stops before its first flush until it is told to go on.
class WaitingWriter : public Environment {
 public:
  int flushFile(int descriptor) override {
    if (!waited_) {
      waited_ = true;
      arrived.set_value();
      goOn.get_future().wait();
    }
    return Environment::flushFile(descriptor);
  }

  std::promise<void> arrived;
  std::promise<void> goOn;

 private:
  bool waited_ = false;
};

TEST_F(Leftovers, FileOfALivingWriterIsKeptAndItsTurnComes) {
  WaitingWriter slow;
  int result = -1;
  std::thread thread([&] { result = replaceFile(slow, target, "slow"); });
  slow.arrived.get_future().wait();
  const Names living = temporaryFiles();
  EXPECT_EQ(living.size(), 1U);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(replace("quick"), 0);
  EXPECT_EQ(contentOrMissing(target), "quick");
  EXPECT_EQ(temporaryFiles(), living);
  slow.goOn.set_value();
  thread.join();
  EXPECT_EQ(result, 0);
  EXPECT_EQ(contentOrMissing(target), "slow");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

// A new file is there for a moment before it is locked. Another writer that tidies up in this moment takes it for a
// left one.

class TidiedTooEarly : public Leftovers {
 protected:
  /// What another writer does to the new file before the first call of this name that follows its creation.
  template <typename Action>
  int replaceWhile(const std::string& callName, Action action) {
    std::size_t number = 0;
    FaultyEnvironment undisturbed;
    EXPECT_EQ(replaceFile(undisturbed, target, "old"), 0);
    for (std::size_t i = 2; i < undisturbed.calls().size() && number == 0; ++i) {
      if (undisturbed.calls()[i].name == callName) number = i;
    }
    EXPECT_NE(number, 0U);
    FaultyEnvironment environment;
    environment.before(number, [&] {
      const Names files = temporaryFiles();
      ASSERT_EQ(files.size(), 1U);
      action(folder.file(files.front()));
    });
    const int descriptors = openDescriptors() - ours;
    const int result = replaceFile(environment, target, "new");
    EXPECT_EQ(openDescriptors() - ours, descriptors) << "a descriptor stayed open";
    return result;
  }

  int ours = 0;  ///< Descriptors that the test itself opened meanwhile.
};

TEST_F(TidiedTooEarly, BeforeItIsOpenedForTheLockAnotherFileIsTaken) {
  EXPECT_EQ(replaceWhile("openFile", [](const std::string& file) { ::unlink(file.c_str()); }), 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

TEST_F(TidiedTooEarly, BeforeItIsLockedAnotherFileIsTaken) {
  EXPECT_EQ(replaceWhile("lockFile", [](const std::string& file) { ::unlink(file.c_str()); }), 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

TEST_F(TidiedTooEarly, WhileAnotherHoldsTheLockAnotherFileIsTaken) {
  int descriptor = -1;
  const int result = replaceWhile("lockFile", [&](const std::string& file) {
    descriptor = ::open(file.c_str(), O_RDONLY);
    ours = 1;
    EXPECT_EQ(::flock(descriptor, LOCK_EX | LOCK_NB), 0);
    ::unlink(file.c_str());
  });
  ::close(descriptor);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

TEST_F(TidiedTooEarly, FileThatAnotherMadeUnderTheSameNameIsNotTaken) {
  // As when two machines, or two containers, with a process of the same number share the folder.
  EXPECT_EQ(replaceWhile("lockFile",
                         [](const std::string& file) {
                           ::unlink(file.c_str());
                           writeFile(file, "");
                         }),
            0);
  EXPECT_EQ(contentOrMissing(target), "new");
}

}  // namespace
}  // namespace epg::test
