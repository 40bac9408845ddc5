#include "tests/platform/AtomicFileTest.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sched.h>
#include <sys/mount.h>
#endif

#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include "tests/platform/ChildProcess.h"
#include "xml/XMLText.h"

namespace epg::test {
namespace {

using Names = std::vector<std::string>;

TEST_F(AtomicFile, NewFileHoldsTheContent) { expectReplaced(); }

TEST_F(AtomicFile, OldContentIsReplaced) {
  writeFile(target, "something longer than the new content");
  expectReplaced();
}

TEST_F(AtomicFile, ContentMayBeEmpty) {
  writeFile(target, "old");
  EXPECT_EQ(replace(""), 0);
  EXPECT_EQ(contentOrMissing(target), "");
}

TEST_F(AtomicFile, ContentMayHoldEveryByte) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  EXPECT_EQ(replace(bytes), 0);
  EXPECT_EQ(contentOrMissing(target), bytes);
}

TEST_F(AtomicFile, ContentMayBeLarge) {
  const std::string content(std::size_t{20} << 20, 'x');
  EXPECT_EQ(replace(content), 0);
  EXPECT_TRUE(contentOrMissing(target) == content);
}

TEST_F(AtomicFile, ContentIsWholeHoweverLittleIsWrittenAtOnce) {
  environment.limitWritesTo(1);
  EXPECT_EQ(replace("written byte by byte"), 0);
  EXPECT_EQ(contentOrMissing(target), "written byte by byte");
}

TEST_F(AtomicFile, AWriterThatNeverWritesAnythingFails) {
  writeFile(target, "old");
  environment.limitWritesTo(0);
  EXPECT_EQ(replace("new"), EIO);
  EXPECT_EQ(contentOrMissing(target), "old");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

TEST_F(AtomicFile, WhoHasTheOldFileOpenGoesOnReadingIt) {
  writeFile(target, "old");
  const int descriptor = ::open(target.c_str(), O_RDONLY);
  EXPECT_EQ(replace("new"), 0);
  char buffer[8] = {};
  EXPECT_EQ(::read(descriptor, buffer, sizeof buffer), 3);
  EXPECT_STREQ(buffer, "old");
  ::close(descriptor);
}

TEST_F(AtomicFile, ReportsTheFateOfTheFile) {
  replace("new");
  environment.failEvery("writeFile", ENOSPC);
  replace("newer");
  EXPECT_EQ(environment.replaced(), (std::vector<std::pair<std::string, int>>{{target, 0}, {target, ENOSPC}}));
}

TEST_F(AtomicFile, LeavesNoDescriptorOpen) {
  const int before = openDescriptors();
  replace("new");
  replace("newer");
  environment.failEvery("flushFile", EIO);
  replace("newest");
  EXPECT_EQ(openDescriptors(), before);
}

// In which order: only this order keeps a file whole through a power cut.

TEST_F(AtomicFile, IsLockedWrittenFlushedAndClosedBeforeItTakesThePlace) {
  writeFile(target, "old");
  ASSERT_EQ(replace("new"), 0);
  std::vector<std::string> order;
  for (const std::string& name : environment.callNames()) {
    if (name == "renameFile") {
      order.back() = "exchangeFiles";  // On a volume that cannot exchange files.
      continue;
    }
    for (const char* important : {"lockFile", "writeFile", "flushFile", "closeFile", "exchangeFiles"}) {
      if (name == important) order.push_back(name);
    }
  }
  ASSERT_GE(order.size(), 6U);
  order.resize(6);
  EXPECT_EQ(order, Names({"lockFile", "writeFile", "flushFile", "closeFile", "exchangeFiles", "flushFile"}));
}

// What else can stand under the name

TEST_F(AtomicFile, SymbolicLinkIsReplacedAndNotFollowed) {
  TemporaryFolder elsewhere;
  writeFile(elsewhere.file("linked"), "linked");
  ASSERT_EQ(::symlink(elsewhere.file("linked").c_str(), target.c_str()), 0);
  expectReplaced();
  EXPECT_EQ(contentOrMissing(elsewhere.file("linked")), "linked");
}

TEST_F(AtomicFile, DanglingLinkIsReplacedAndNothingIsMadeWhereItPoints) {
  TemporaryFolder elsewhere;
  ASSERT_EQ(::symlink(elsewhere.file("nothing").c_str(), target.c_str()), 0);
  expectReplaced();
  EXPECT_EQ(namesIn(elsewhere.path()), Names());
}

TEST_F(AtomicFile, LinkToAFolderIsReplacedAndTheFolderStaysAsItIs) {
  TemporaryFolder elsewhere;
  ASSERT_EQ(::symlink(elsewhere.path().c_str(), target.c_str()), 0);
  expectReplaced();
  EXPECT_EQ(namesIn(elsewhere.path()), Names());
}

TEST_F(AtomicFile, OtherNamesOfTheOldFileKeepTheOldContent) {
  writeFile(target, "old");
  ASSERT_EQ(::link(target.c_str(), folder.file("other name").c_str()), 0);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(contentOrMissing(folder.file("other name")), "old");
}

TEST_F(AtomicFile, FolderInThePlaceStaysAndIsAnError) {
  ASSERT_EQ(::mkdir(target.c_str(), 0755), 0);
  EXPECT_EQ(replace("new"), EISDIR);
  EXPECT_EQ(infoOf(target).kind, Environment::FileKind::Folder);
  writeFile(target + "/inside", "inside");
  EXPECT_EQ(replace("new"), EISDIR);
  EXPECT_EQ(contentOrMissing(target + "/inside"), "inside");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

TEST_F(AtomicFile, PipeInThePlaceIsReplacedWithoutWaitingForIt) {
  ASSERT_EQ(::mkfifo(target.c_str(), 0644), 0);
  expectReplaced();
}

// Folders

TEST_F(AtomicFile, MissingFolderIsAnErrorAndIsNotMade) {
  EXPECT_EQ(replaceFile(environment, folder.file("missing/target"), "new"), ENOENT);
  EXPECT_EQ(namesIn(folder.path()), Names());
}

TEST_F(AtomicFile, FileInTheFoldersPlaceIsAnError) {
  writeFile(folder.file("file"), "file");
  EXPECT_EQ(replaceFile(environment, folder.file("file/target"), "new"), ENOTDIR);
  EXPECT_EQ(contentOrMissing(folder.file("file")), "file");
}

TEST_F(AtomicFile, FolderMayBeReachedThroughALink) {
  ASSERT_EQ(::mkdir(folder.file("real").c_str(), 0755), 0);
  ASSERT_EQ(::symlink("real", folder.file("link").c_str()), 0);
  EXPECT_EQ(replaceFile(environment, folder.file("link/target"), "new"), 0);
  EXPECT_EQ(contentOrMissing(folder.file("real/target")), "new");
}

TEST_F(AtomicFile, NameAloneIsAFileInTheWorkingFolder) {
  const int result = exitOfChild([&] {
    if (::chdir(folder.path().c_str()) != 0) return 255;
    return replaceFile(environment, "target", "new");
  });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

TEST_F(AtomicFile, FolderThatMayNotBeWrittenIsAnErrorAndTheOldFileStays) {
  writeFile(target, "old");
  ::chmod(folder.path().c_str(), 0555);
  EXPECT_EQ(exitOfChild([&] { return becomeUnprivileged() ? replace("new") : 255; }), EACCES);
  ::chmod(folder.path().c_str(), 0755);
  EXPECT_EQ(contentOrMissing(target), "old");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

TEST_F(AtomicFile, FolderThatMayBeWrittenButNotReadTakesTheFile) {
  writeFile(target, "old");
  ::chmod(folder.path().c_str(), 0333);
  EXPECT_EQ(exitOfChild([&] { return becomeUnprivileged() ? replace("new") : 255; }), 0);
  ::chmod(folder.path().c_str(), 0755);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

// Full disks, as the system itself reports them

TEST_F(AtomicFile, LimitOfTheProcessOnFileSizesIsAnErrorAndTheOldFileStays) {
  writeFile(target, "old");
  const int result = exitOfChild([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    struct rlimit limit {};
    limit.rlim_cur = limit.rlim_max = 100000;
    return ::setrlimit(RLIMIT_FSIZE, &limit) == 0 ? replace(std::string(200000, 'x')) : 255;
  });
  EXPECT_EQ(result, EFBIG);
  EXPECT_EQ(contentOrMissing(target), "old");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

TEST_F(AtomicFile, FullDiskIsAnErrorAndTheOldFileStays) {
#ifdef __linux__
  constexpr int notPermitted = 254;
  // In a child with mounts of its own, so that nothing of this is left on the machine.
  const int result = exitOfChild([&] {
    if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", folder.path().c_str(), "tmpfs", 0, "size=256k") != 0) {
      return notPermitted;
    }
    if (replace("old") != 0) return 1;
    if (replace(std::string(std::size_t{1} << 20, 'x')) != ENOSPC) return 2;
    if (contentOrMissing(target) != "old") return 3;
    if (namesIn(folder.path()) != Names({"target"})) return 4;
    if (replace("new") != 0) return 5;
    return contentOrMissing(target) == "new" ? 0 : 6;
  });
  if (result == notPermitted) GTEST_SKIP() << "NOT TESTED: this user may not mount a small disk";
  EXPECT_EQ(result, 0);
#else
  GTEST_SKIP() << "NOT TESTED: small disks are mounted on Linux only";
#endif
}

// Names of temporary files

TEST_F(AtomicFile, TemporaryFilesStandHiddenBesideTheTargetEachUnderItsOwnNameAndAreNoConfigurations) {
  target = folder.file("name.epgconf");
  replace("new");
  replace("newer");
  ASSERT_EQ(temporaryPaths().size(), 2U);
  for (const std::string& path : temporaryPaths()) {
    const std::string start = folder.file(".name.epgconf.");
    EXPECT_EQ(path.substr(0, start.size()), start);
    EXPECT_EQ(path.substr(path.size() - 4), ".tmp");
  }
}

TEST_F(AtomicFile, NameMayBeAsLongAsTheSystemPermits) {
  target = folder.file(std::string(255, 'n'));
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(replace("newer"), 0);
  EXPECT_EQ(contentOrMissing(target), "newer");
  EXPECT_EQ(namesIn(folder.path()), Names({std::string(255, 'n')}));
}

TEST_F(AtomicFile, LongNameIsNotCutInsideACharacter) {
  for (int lead = 0; lead < 4; ++lead) {
    std::string name(static_cast<std::size_t>(lead), 'n');
    while (name.size() + 4 <= 255) name += "🎬";
    target = folder.file(name);
    EXPECT_EQ(replace("new"), 0);
  }
  for (const std::string& path : temporaryPaths()) EXPECT_TRUE(isUTF8(path)) << path;
}

TEST_F(AtomicFile, NameLongerThanTheSystemPermitsIsAnErrorAndLeavesNothing) {
  target = folder.file(std::string(256, 'n'));
  EXPECT_EQ(replace("new"), ENAMETOOLONG);
  EXPECT_EQ(namesIn(folder.path()), Names());
}

TEST_F(AtomicFile, NameMayHoldAnyCharacterButTheSlash) {
  for (const char* name : {" ", "a\nb", "'\"\\*?", "..a", "~", "-rf", "é節🎬", "\xFF\xFE", "a.tmp"}) {
    target = folder.file(name);
    EXPECT_EQ(replace(name), 0) << name;
    EXPECT_EQ(contentOrMissing(target), name);
  }
}

TEST_F(AtomicFile, ZeroByteInThePathIsAnErrorAndMakesNoFile) {
  writeFile(target, "old");
  target += std::string("\0.epgconf", 9);
  EXPECT_EQ(replace("new"), EINVAL);
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
  EXPECT_EQ(contentOrMissing(folder.file("target")), "old");
}

}  // namespace
}  // namespace epg::test
