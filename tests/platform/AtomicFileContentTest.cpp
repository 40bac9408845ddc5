// Replacements whose content breaks off, for which memory runs out, and with others at work on the same file.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <string>
#include <vector>

#include "tests/platform/Replacement.h"

namespace epg::test {
namespace {

using ReplacementByContent = Replacement;

const std::string line = "0123456789\n";
const int lines = static_cast<int>(5 * ByteSink::pieceSize / line.size());

/// Content of several pieces.
int longContent(ByteSink& sink) {
  for (int i = 0; i < lines; ++i) sink.append(line);
  return 0;
}

TEST_P(ReplacementByContent, ContentOfManyPiecesIsWrittenWhole) {
  Scene scene(before, volume);
  EXPECT_EQ(replaceFile(scene.environment, scene.target, longContent), 0);
  std::string expected;
  for (int i = 0; i < lines; ++i) expected += line;
  scene.expectReplacedBy(expected);
}

/// Given up before anything, before a first write and after one.
constexpr std::size_t sizesOfUnfinishedContent[] = {0, 10, 2 * ByteSink::pieceSize};

TEST_P(ReplacementByContent, ContentThatIsGivenUpLeavesTheOldFile) {
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

TEST_P(ReplacementByContent, ContentThatThrowsLeavesTheOldFile) {
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

TEST_P(ReplacementByContent, AWriteThatFailsInAnyPieceIsTheErrorAndEndsTheContent) {
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

TEST_P(ReplacementByContent, MemoryRunningOutLeavesWhatStoodThere) {
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

TEST_P(ReplacementByContent, MemoryRunningOutWhileTidyingUpIsNoError) {
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

INSTANTIATE_TEST_SUITE_P(AtomicFile, ReplacementByContent, everyReplacement(), nameOfReplacement);

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
  EXPECT_EQ(namesIn(scene.folder.path()), std::vector<std::string>({"target"}));
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

INSTANTIATE_TEST_SUITE_P(AtomicFile, ReplacementAmongOthers, everyReplacement(), nameOfReplacement);

}  // namespace
}  // namespace epg::test
