// Every call that a replacement makes fails in turn. The old file stands as it was or the new one stands whole.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "platform/AtomicFile.h"
#include "tests/platform/Files.h"
#include "tests/support/FaultyEnvironment.h"
#include "tests/support/TemporaryFolder.h"

namespace epg::test {
namespace {

using Names = std::vector<std::string>;

enum class Before { Nothing, File, Link };
enum class Volume { Exchanges, DoesNotExchange };

/// A folder with a target in it, and what stood there before.
class Scene {
 public:
  Scene(Before before, Volume volume) : before_(before) {
    if (volume == Volume::DoesNotExchange) environment.failEvery("exchangeFiles", ENOTSUP);
    if (before == Before::File) {
      writeFile(target, "old");
      ::chmod(target.c_str(), 0640);  // So that the mode has to be handed on.
    }
    if (before == Before::Link) {
      writeFile(elsewhere.file("linked"), "linked");
      EXPECT_EQ(::symlink(elsewhere.file("linked").c_str(), target.c_str()), 0);
    }
    if (before != Before::Nothing) inode_ = infoOf(target).inode;
  }

  int replace(const std::string& content) { return replaceFile(environment, target, content); }

  std::size_t writes() const {
    const auto names = environment.callNames();
    return static_cast<std::size_t>(std::count(names.begin(), names.end(), "writeFile"));
  }

  void expectAsBefore() const {
    EXPECT_EQ(namesIn(folder.path()), before_ == Before::Nothing ? Names() : Names({"target"}));
    if (before_ != Before::Nothing) {
      EXPECT_EQ(infoOf(target).inode, inode_) << "no longer the same file";
    }
    if (before_ == Before::File) {
      EXPECT_EQ(contentOrMissing(target), "old");
      EXPECT_EQ(infoOf(target).mode, mode_t{0640});
    }
    if (before_ == Before::Link) {
      EXPECT_EQ(infoOf(target).kind, Environment::FileKind::Link);
      EXPECT_EQ(contentOrMissing(target), "linked");
    }
  }

  void expectReplacedBy(const std::string& content, mode_t mode = 0640) const {
    EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
    EXPECT_EQ(infoOf(target).kind, Environment::FileKind::Regular);
    EXPECT_EQ(contentOrMissing(target), content);
    if (before_ == Before::File) {
      EXPECT_EQ(infoOf(target).mode, mode);
    }
    if (before_ == Before::Link) {
      EXPECT_EQ(contentOrMissing(elsewhere.file("linked")), "linked");
    }
  }

  /// A later replacement, without faults, must find nothing in its way.
  void expectNextReplacementWorks() const {
    const mode_t mode = before_ == Before::File ? infoOf(target).mode : 0;
    FaultyEnvironment faultless;
    EXPECT_EQ(replaceFile(faultless, target, "next"), 0);
    expectReplacedBy("next", mode);
  }

  TemporaryFolder folder;
  TemporaryFolder elsewhere;
  const std::string target = folder.file("target");
  FaultyEnvironment environment;

 private:
  Before before_;
  ino_t inode_ = 0;
};

/// How many of the calls up to and with this one have its name.
int occurrence(const std::vector<FaultyEnvironment::Call>& calls, std::size_t number) {
  const auto end = calls.begin() + static_cast<std::ptrdiff_t>(number) + 1;
  return static_cast<int>(
      std::count_if(calls.begin(), end, [&](const auto& call) { return call.name == calls[number].name; }));
}

/// Why the replacement may say that it is done although this call failed; null where it may not.
const char* reasonToSurvive(const std::vector<FaultyEnvironment::Call>& calls, std::size_t number, int error) {
  const std::string& name = calls[number].name;
  const int time = occurrence(calls, number);
  if (error == EINTR) return "an interrupted call is made again, and an interrupted close has closed";
  if (name == "openFile" && time == 1 && error == EACCES) return "a folder may be writable and not readable";
  if (name == "openFile" && time == 3) return "without the lock the file is no less whole";
  if (name == "lockFile") return "a volume may have no locks";
  if (name == "pathInfo" && time == 1) return "it only asks whether another writer has tidied the new file away";
  if (name == "setFileOwner") return "only root may give files away";
  if (name == "copyAccessList") return "the group's permissions go, which are the list's too";
  if (name == "closeFile" && time > 1) return "nothing was written through that descriptor";
  if (name == "removeFile") return "the old file's remains are removed with those of killed writers";
  if (name == "listFolder") return "the new file stands; remains are removed the next time";
  return nullptr;
}

/// Without an exchange nothing can bring back what stood there when the folder fails to be flushed at the very end.
bool newFileStandsInSpiteOfTheError(const std::vector<FaultyEnvironment::Call>& calls, std::size_t number,
                                    Before before, Volume volume) {
  return before != Before::Nothing && volume == Volume::DoesNotExchange && calls[number].name == "flushFile" &&
         occurrence(calls, number) == 2;
}

bool canExchange() {
  const TemporaryFolder folder;
  writeFile(folder.file("a"), "a");
  writeFile(folder.file("b"), "b");
  return Environment::standard().exchangeFiles(folder.file("a"), folder.file("b")) == 0;
}

std::string nameOf(Before before) {
  return before == Before::Nothing ? "NothingBefore" : before == Before::File ? "FileBefore" : "LinkBefore";
}

std::string nameOf(Volume volume) { return volume == Volume::Exchanges ? "Exchange" : "NoExchange"; }

void PrintTo(Before before, std::ostream* out) { *out << nameOf(before); }
void PrintTo(Volume volume, std::ostream* out) { *out << nameOf(volume); }

class Replacement : public ::testing::TestWithParam<std::tuple<Before, Volume>> {
 protected:
  void SetUp() override {
    std::tie(before, volume) = GetParam();
    if (volume == Volume::Exchanges && !canExchange()) GTEST_SKIP() << "NOT TESTED: files cannot be exchanged here";
  }

  /// The calls of a replacement that nothing disturbs.
  std::vector<FaultyEnvironment::Call> undisturbedCalls() const {
    Scene scene(before, volume);
    EXPECT_EQ(scene.replace("new"), 0);
    scene.expectReplacedBy("new");
    return scene.environment.calls();
  }

  void expectRightEndWhenCallFails(std::size_t number, int error,
                                   const std::vector<FaultyEnvironment::Call>& calls) const {
    SCOPED_TRACE(calls[number].name + " " + std::to_string(occurrence(calls, number)) + ": " + std::strerror(error));
    Scene scene(before, volume);
    const int descriptors = openDescriptors();
    scene.environment.fail(number, error);
    const int result = scene.replace("new");
    EXPECT_EQ(openDescriptors(), descriptors);
    if (const char* const reason = reasonToSurvive(calls, number, error)) {
      EXPECT_EQ(result, 0) << reason;
      scene.expectReplacedBy("new", calls[number].name == "copyAccessList" && error != EINTR ? 0600 : 0640);
    } else if (newFileStandsInSpiteOfTheError(calls, number, before, volume)) {
      EXPECT_EQ(result, error);
      scene.expectReplacedBy("new");
    } else {
      EXPECT_EQ(result, error);
      scene.expectAsBefore();
    }
    ASSERT_EQ(scene.environment.replaced().size(), 1U);
    EXPECT_EQ(scene.environment.replaced().front().second, result);
    scene.expectNextReplacementWorks();
  }

  Before before = Before::Nothing;
  Volume volume = Volume::Exchanges;
};

TEST_P(Replacement, EveryCallFailingInTurnLeavesOldOrNew) {
  const auto calls = undisturbedCalls();
  ASSERT_GE(calls.size(), 10U);
  for (std::size_t number = 0; number < calls.size(); ++number) {
    if (calls[number].name == "exchangeFiles" && volume == Volume::DoesNotExchange) continue;
    for (const int error : {ENOSPC, EIO, EACCES, EINTR, EROFS, EDQUOT})
      expectRightEndWhenCallFails(number, error, calls);
  }
}

TEST_P(Replacement, AnyTwoCallsFailingLeaveAWholeFile) {
  const std::size_t count = undisturbedCalls().size();
  for (std::size_t first = 0; first < count; ++first) {
    // Calls that a failure brings with it come on top of the undisturbed ones.
    for (std::size_t second = first + 1; second < count + 4; ++second) {
      SCOPED_TRACE("calls " + std::to_string(first) + " and " + std::to_string(second));
      Scene scene(before, volume);
      const int descriptors = openDescriptors();
      scene.environment.fail(first, EIO);
      scene.environment.fail(second, EIO);
      const int result = scene.replace("new");
      EXPECT_EQ(openDescriptors(), descriptors);
      const std::string content = contentOrMissing(scene.target);
      const std::string old = before == Before::Nothing ? "(missing)" : before == Before::File ? "old" : "linked";
      if (result == 0) {
        EXPECT_EQ(content, "new");
      }
      EXPECT_TRUE(content == "new" || content == old) << content;
      scene.expectNextReplacementWorks();
    }
  }
}

TEST_P(Replacement, ShortWritesAndInterruptionsDoNotShow) {
  Scene scene(before, volume);
  scene.environment.limitWritesTo(1);
  scene.environment.interruptEveryCall(5);
  EXPECT_EQ(scene.replace("new content"), 0);
  scene.expectReplacedBy("new content");
}

TEST_P(Replacement, CallThatIsInterruptedForEverFailsInTheEnd) {
  for (const char* name :
       {"openFile", "fileInfo", "writeFile", "pathInfo", "flushFile", "renameFile", "exchangeFiles"}) {
    if (std::string(name) ==
        (volume == Volume::Exchanges && before != Before::Nothing ? "renameFile" : "exchangeFiles")) {
      continue;
    }
    SCOPED_TRACE(name);
    Scene scene(before, volume);
    scene.environment.failEvery(name, EINTR);
    EXPECT_EQ(scene.replace("new"), EINTR);
    scene.expectAsBefore();
    scene.expectNextReplacementWorks();
  }
}

TEST_P(Replacement, DiskThatFillsUpInTheMiddleLeavesTheOldFile) {
  for (std::size_t written = 0; written < 5; ++written) {
    Scene scene(before, volume);
    scene.environment.limitWritesTo(1);
    const auto calls = undisturbedCalls();
    const auto firstWrite =
        std::find_if(calls.begin(), calls.end(), [](const auto& c) { return c.name == "writeFile"; });
    scene.environment.fail(static_cast<std::size_t>(firstWrite - calls.begin()) + written, ENOSPC);
    EXPECT_EQ(scene.replace("new content"), ENOSPC);
    scene.expectAsBefore();
    scene.expectNextReplacementWorks();
  }
}

TEST_P(Replacement, FolderThatCannotBeFlushedByNatureIsNoError) {
  const auto calls = undisturbedCalls();
  for (std::size_t number = 0; number < calls.size(); ++number) {
    if (calls[number].name != "flushFile" || occurrence(calls, number) != 2) continue;
    for (const int error : {EINVAL, ENOTSUP}) {
      Scene scene(before, volume);
      scene.environment.fail(number, error);
      EXPECT_EQ(scene.replace("new"), 0);
      scene.expectReplacedBy("new");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AtomicFile, Replacement,
                         ::testing::Combine(::testing::Values(Before::Nothing, Before::File, Before::Link),
                                            ::testing::Values(Volume::Exchanges, Volume::DoesNotExchange)),
                         [](const auto& one) {
                           return nameOf(std::get<0>(one.param)) + nameOf(std::get<1>(one.param));
                         });

// Content that is made while it is written

const std::string line = "0123456789\n";
const int lines = static_cast<int>(5 * ByteSink::pieceSize / line.size());

/// Content of several pieces.
int longContent(ByteSink& sink) {
  for (int i = 0; i < lines; ++i) sink.append(line);
  return 0;
}

TEST_P(Replacement, ContentOfManyPiecesIsWrittenWhole) {
  Scene scene(before, volume);
  EXPECT_EQ(replaceFile(scene.environment, scene.target, longContent), 0);
  std::string expected;
  for (int i = 0; i < lines; ++i) expected += line;
  scene.expectReplacedBy(expected);
}

/// Given up before anything, before a first write and after one.
constexpr std::size_t sizesOfUnfinishedContent[] = {0, 10, 2 * ByteSink::pieceSize};

TEST_P(Replacement, ContentThatIsGivenUpLeavesTheOldFile) {
  for (const std::size_t size : sizesOfUnfinishedContent) {
    SCOPED_TRACE(size);
    Scene scene(before, volume);
    const int descriptors = openDescriptors();
    const FileContent content = [&](ByteSink& sink) {
      sink.append(std::string(size, 'x'));
      return EILSEQ;
    };
    EXPECT_EQ(replaceFile(scene.environment, scene.target, content), EILSEQ);
    EXPECT_EQ(scene.writes() > 0, size > ByteSink::pieceSize);
    EXPECT_EQ(openDescriptors(), descriptors);
    scene.expectAsBefore();
    ASSERT_EQ(scene.environment.replaced().size(), 1U);
    EXPECT_EQ(scene.environment.replaced().front().second, EILSEQ);
    scene.expectNextReplacementWorks();
  }
}

TEST_P(Replacement, ContentThatThrowsLeavesTheOldFile) {
  for (const std::size_t size : sizesOfUnfinishedContent) {
    SCOPED_TRACE(size);
    Scene scene(before, volume);
    const int descriptors = openDescriptors();
    const FileContent content = [&](ByteSink& sink) -> int {
      sink.append(std::string(size, 'x'));
      throw std::bad_alloc();
    };
    EXPECT_THROW(replaceFile(scene.environment, scene.target, content), std::bad_alloc);
    EXPECT_EQ(scene.writes() > 0, size > ByteSink::pieceSize);
    EXPECT_EQ(openDescriptors(), descriptors);
    scene.expectAsBefore();
    scene.expectNextReplacementWorks();
  }
}

TEST_P(Replacement, AWriteThatFailsInAnyPieceIsTheErrorAndEndsTheContent) {
  Scene counted(before, volume);
  ASSERT_EQ(replaceFile(counted.environment, counted.target, longContent), 0);
  const auto& calls = counted.environment.calls();
  std::size_t writes = 0;
  for (std::size_t number = 0; number < calls.size(); ++number) {
    if (calls[number].name != "writeFile") continue;
    SCOPED_TRACE(number);
    ++writes;
    Scene scene(before, volume);
    scene.environment.fail(number, ENOSPC);
    const FileContent content = [](ByteSink& sink) {
      for (int i = 0; i < lines; ++i) {
        // What stopped the content matters, not that it stopped.
        if (sink.failed()) return EILSEQ;
        sink.append(line);
      }
      return 0;
    };
    EXPECT_EQ(replaceFile(scene.environment, scene.target, content), ENOSPC);
    scene.expectAsBefore();
    EXPECT_EQ(scene.writes(), writes);
    scene.expectNextReplacementWorks();
  }
  EXPECT_GT(writes, 3U);
}

// Memory runs out in the middle

TEST_P(Replacement, MemoryRunningOutLeavesWhatStoodThere) {
  const auto calls = undisturbedCalls();
  for (std::size_t number = 0; number < calls.size(); ++number) {
    const std::string& name = calls[number].name;
    const bool beforeTheChange = name == "writeFile" || name == "setFileMode" || name == "copyAccessList" ||
                                 (name == "flushFile" && occurrence(calls, number) == 1);
    if (!beforeTheChange) continue;
    SCOPED_TRACE(name);
    Scene scene(before, volume);
    const int descriptors = openDescriptors();
    scene.environment.before(number, [] { throw std::bad_alloc(); });
    EXPECT_THROW(scene.replace("new"), std::bad_alloc);
    EXPECT_EQ(openDescriptors(), descriptors);
    scene.expectAsBefore();
    scene.expectNextReplacementWorks();
  }
}

TEST_P(Replacement, MemoryRunningOutWhileTidyingUpIsNoError) {
  const auto calls = undisturbedCalls();
  const auto tidying =
      std::find_if(calls.begin(), calls.end(), [](const auto& call) { return call.name == "listFolder"; });
  ASSERT_NE(tidying, calls.end());
  Scene scene(before, volume);
  scene.environment.before(static_cast<std::size_t>(tidying - calls.begin()), [] { throw std::bad_alloc(); });
  EXPECT_EQ(scene.replace("new"), 0);
  scene.expectReplacedBy("new");
  ASSERT_EQ(scene.environment.replaced().size(), 1U);
  EXPECT_EQ(scene.environment.replaced().front().second, 0);
}

// Others at work on the same file, between two calls

/// The number of the last call of this name, on this path when one is given.
std::size_t lastCall(const FaultyEnvironment& environment, const std::string& name, const std::string& path = {}) {
  const auto& calls = environment.calls();
  for (std::size_t number = calls.size(); number-- > 0;) {
    if (calls[number].name == name && (path.empty() || calls[number].path == path)) return number;
  }
  ADD_FAILURE() << "no " << name;
  return 0;
}

/// The number that the call has in a replacement that nothing disturbs.
std::size_t callNumber(Before before, Volume volume, const std::string& name) {
  Scene scene(before, volume);
  EXPECT_EQ(scene.replace("new"), 0);
  return lastCall(scene.environment, name);
}

class ReplacementAmongOthers : public Replacement {};

TEST_P(ReplacementAmongOthers, PuttingBackTheOldFileDoesNotUndoAnothersReplacement) {
  const std::size_t folderFlush = callNumber(before, volume, "flushFile");
  Scene scene(before, volume);
  scene.environment.before(folderFlush,
                           [&] { EXPECT_EQ(replaceFile(Environment::standard(), scene.target, "another's"), 0); });
  scene.environment.fail(folderFlush, EIO);
  EXPECT_EQ(scene.replace("new"), EIO);
  scene.expectReplacedBy("another's");
}

TEST_P(ReplacementAmongOthers, TargetThatVanishesBeforeItIsReplacedIsNoError) {
  const std::size_t step = callNumber(
      before, volume, volume == Volume::Exchanges && before != Before::Nothing ? "exchangeFiles" : "renameFile");
  Scene scene(before, volume);
  scene.environment.before(step, [&] { ::unlink(scene.target.c_str()); });
  EXPECT_EQ(scene.replace("new"), 0);
  EXPECT_EQ(contentOrMissing(scene.target), "new");
  EXPECT_EQ(namesIn(scene.folder.path()), Names({"target"}));
}

TEST_P(ReplacementAmongOthers, FolderThatIsDeletedMeanwhileIsAnError) {
  const std::size_t step = callNumber(before, volume, "writeFile");
  Scene scene(before, volume);
  scene.environment.before(step, [&] {
    for (const std::string& name : namesIn(scene.folder.path())) ::unlink(scene.folder.file(name).c_str());
    EXPECT_EQ(::rmdir(scene.folder.path().c_str()), 0);
  });
  EXPECT_EQ(scene.replace("new"), ENOENT);
}

TEST_P(ReplacementAmongOthers, FolderThatIsRenamedMeanwhileIsAnErrorAndHoldsTheOldFile) {
  const std::size_t step = callNumber(before, volume, "writeFile");
  Scene scene(before, volume);
  const std::string moved = scene.elsewhere.file("moved");
  scene.environment.before(step, [&] { EXPECT_EQ(::rename(scene.folder.path().c_str(), moved.c_str()), 0); });
  EXPECT_EQ(scene.replace("new"), ENOENT);
  EXPECT_EQ(::rename(moved.c_str(), scene.folder.path().c_str()), 0);
  if (before == Before::File) {
    EXPECT_EQ(contentOrMissing(scene.target), "old");
  }
  scene.expectNextReplacementWorks();
}

INSTANTIATE_TEST_SUITE_P(AtomicFile, ReplacementAmongOthers,
                         ::testing::Combine(::testing::Values(Before::Nothing, Before::File, Before::Link),
                                            ::testing::Values(Volume::Exchanges, Volume::DoesNotExchange)),
                         [](const auto& one) {
                           return nameOf(std::get<0>(one.param)) + nameOf(std::get<1>(one.param));
                         });

}  // namespace
}  // namespace epg::test
