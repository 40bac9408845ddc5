// Every call that a replacement makes fails in turn. The old file stands as it was or the new one stands whole.

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "tests/platform/Replacement.h"

namespace epg::test {
namespace {

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

class ReplacementWithFaults : public Replacement {
 protected:
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
};

TEST_P(ReplacementWithFaults, EveryCallFailingInTurnLeavesOldOrNew) {
  const auto calls = undisturbedCalls();
  ASSERT_GE(calls.size(), 10U);
  for (std::size_t number = 0; number < calls.size(); ++number) {
    if (calls[number].name == "exchangeFiles" && volume == Volume::DoesNotExchange) continue;
    for (const int error : {ENOSPC, EIO, EACCES, EINTR, EROFS, EDQUOT})
      expectRightEndWhenCallFails(number, error, calls);
  }
}

TEST_P(ReplacementWithFaults, AnyTwoCallsFailingLeaveAWholeFile) {
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

TEST_P(ReplacementWithFaults, ShortWritesAndInterruptionsDoNotShow) {
  Scene scene(before, volume);
  scene.environment.limitWritesTo(1);
  scene.environment.interruptEveryCall(5);
  EXPECT_EQ(scene.replace("new content"), 0);
  scene.expectReplacedBy("new content");
}

TEST_P(ReplacementWithFaults, CallThatIsInterruptedForEverFailsInTheEnd) {
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

TEST_P(ReplacementWithFaults, DiskThatFillsUpInTheMiddleLeavesTheOldFile) {
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

TEST_P(ReplacementWithFaults, FolderThatCannotBeFlushedByNatureIsNoError) {
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

INSTANTIATE_TEST_SUITE_P(AtomicFile, ReplacementWithFaults, everyReplacement(), nameOfReplacement);

}  // namespace
}  // namespace epg::test
