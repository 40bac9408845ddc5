#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "platform/AtomicFile.h"
#include "tests/platform/Files.h"
#include "tests/support/FaultyEnvironment.h"
#include "tests/support/TemporaryFolder.h"

// The replacement of a file whose calls fail, whatever stood in its place and whatever the volume can do.

namespace epg::test {

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
    EXPECT_EQ(namesIn(folder.path()),
              before_ == Before::Nothing ? std::vector<std::string>() : std::vector<std::string>({"target"}));
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
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>({"target"}));
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
inline int occurrence(const std::vector<FaultyEnvironment::Call>& calls, std::size_t number) {
  const auto end = calls.begin() + static_cast<std::ptrdiff_t>(number) + 1;
  return static_cast<int>(
      std::count_if(calls.begin(), end, [&](const auto& call) { return call.name == calls[number].name; }));
}

inline bool canExchange() {
  const TemporaryFolder folder;
  writeFile(folder.file("a"), "a");
  writeFile(folder.file("b"), "b");
  return Environment::standard().exchangeFiles(folder.file("a"), folder.file("b")) == 0;
}

inline std::string nameOf(Before before) {
  return before == Before::Nothing ? "NothingBefore" : before == Before::File ? "FileBefore" : "LinkBefore";
}

inline std::string nameOf(Volume volume) { return volume == Volume::Exchanges ? "Exchange" : "NoExchange"; }

inline void PrintTo(Before before, std::ostream* out) { *out << nameOf(before); }
inline void PrintTo(Volume volume, std::ostream* out) { *out << nameOf(volume); }

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

  Before before = Before::Nothing;
  Volume volume = Volume::Exchanges;
};

/// Every kind of place on every kind of volume.
inline auto everyReplacement() {
  return ::testing::Combine(::testing::Values(Before::Nothing, Before::File, Before::Link),
                            ::testing::Values(Volume::Exchanges, Volume::DoesNotExchange));
}
inline std::string nameOfReplacement(const ::testing::TestParamInfo<std::tuple<Before, Volume>>& one) {
  return nameOf(std::get<0>(one.param)) + nameOf(std::get<1>(one.param));
}

}  // namespace epg::test
