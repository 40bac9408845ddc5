#include "platform/AtomicFile.h"

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sched.h>
#include <sys/mount.h>
#include <sys/xattr.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tests/platform/ChildProcess.h"
#include "tests/platform/Files.h"
#include "tests/support/FaultyEnvironment.h"
#include "tests/support/TemporaryFolder.h"
#include "xml/XMLText.h"

namespace epg::test {
namespace {

using Names = std::vector<std::string>;

/// Which permissions new files do not get, until this goes out of sight.
class FileCreationMask {
 public:
  explicit FileCreationMask(mode_t mask) : before_(::umask(mask)) {}
  FileCreationMask(const FileCreationMask&) = delete;
  FileCreationMask& operator=(const FileCreationMask&) = delete;
  ~FileCreationMask() { ::umask(before_); }

 private:
  mode_t before_;
};

class AtomicFile : public ::testing::Test {
 protected:
  /// Some tests go on as another user.
  void SetUp() override { ::chmod(folder.path().c_str(), 0777); }

  int replace(const std::string& content) { return replaceFile(environment, target, content); }

  /// The temporary files' paths that were made so far.
  std::vector<std::string> temporaryPaths() const {
    std::vector<std::string> paths;
    for (const auto& call : environment.calls()) {
      if (call.name != "openFile" || call.path == folder.path()) continue;
      if (std::find(paths.begin(), paths.end(), call.path) == paths.end()) paths.push_back(call.path);
    }
    return paths;
  }

  TemporaryFolder folder;
  std::string target = folder.file("target");
  FaultyEnvironment environment;
};

TEST_F(AtomicFile, NewFileHoldsTheContent) {
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

TEST_F(AtomicFile, OldContentIsReplaced) {
  writeFile(target, "something longer than the new content");
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
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

// Mode and owner

TEST_F(AtomicFile, NewFileHasTheModeOfAnyNewFile) {
  for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{027}, mode_t{077}}) {
    const FileCreationMask here(mask);
    ::unlink(target.c_str());
    EXPECT_EQ(replace("new"), 0);
    EXPECT_EQ(infoOf(target).mode, 0666 & ~mask);
  }
}

TEST_F(AtomicFile, ReplacedFileKeepsItsMode) {
  const FileCreationMask here(022);
  for (const mode_t mode : {mode_t{0600}, mode_t{0444}, mode_t{0664}, mode_t{0755}, mode_t{0644}}) {
    ::unlink(target.c_str());
    writeFile(target, "old");
    ::chmod(target.c_str(), mode);
    EXPECT_EQ(replace("new"), 0);
    EXPECT_EQ(infoOf(target).mode, mode);
    EXPECT_EQ(contentOrMissing(target), "new");
  }
}

TEST_F(AtomicFile, ReplacedFileDoesNotKeepTheRightToRunAsItsOwner) {
  writeFile(target, "old");
  ::chmod(target.c_str(), 06755);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(infoOf(target).mode, mode_t{0755});
}

TEST_F(AtomicFile, ReplacedFileKeepsItsOwnerWhereThatIsPermitted) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  writeFile(target, "old");
  ASSERT_EQ(::chown(target.c_str(), 1234, 2345), 0);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(infoOf(target).owner, 1234U);
  EXPECT_EQ(infoOf(target).group, 2345U);
}

TEST_F(AtomicFile, FileOfAnotherUserIsReplacedWhereTheFolderPermitsIt) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs root to make a file of another user";
  writeFile(target, "old");
  ::chmod(target.c_str(), 0600);
  const int result = exitOfChild([&] { return becomeUnprivileged() ? replace("new") : 255; });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_NE(infoOf(target).owner, 0U);
  EXPECT_EQ(infoOf(target).mode, mode_t{0600});
}

/// What the child that replaces the file is: somebody without special rights, but in the group.
bool becomeMemberOf(gid_t group) {
  return ::setgroups(1, &group) == 0 && ::setresgid(100, 100, 100) == 0 && ::setresuid(3002, 3002, 3002) == 0;
}

TEST_F(AtomicFile, FileOfAnotherUserKeepsItsGroupWhereTheWriterIsInIt) {
  if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: needs root to make a file of another user";
  writeFile(target, "old");
  ASSERT_EQ(::chown(target.c_str(), 3001, 4000), 0);
  ::chmod(target.c_str(), 0664);
  EXPECT_EQ(exitOfChild([&] { return becomeMemberOf(4000) ? replace("new") : 255; }), 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(infoOf(target).owner, 3002U);
  EXPECT_EQ(infoOf(target).group, 4000U);
  EXPECT_EQ(infoOf(target).mode, mode_t{0664});
}

TEST_F(AtomicFile, GroupThatCannotBeHandedOnGivesNobodyARight) {
  if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: needs root to make a file of another user";
  const struct {
    mode_t before, after;
  } cases[] = {{0660, 0600}, {0664, 0604}, {0604, 0600}, {0646, 0604}, {0600, 0600}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.before);
    writeFile(target, "old");
    ASSERT_EQ(::chown(target.c_str(), 3001, 4000), 0);
    ::chmod(target.c_str(), one.before);
    EXPECT_EQ(exitOfChild([&] { return becomeMemberOf(4001) ? replace("new") : 255; }), 0);
    EXPECT_EQ(contentOrMissing(target), "new");
    EXPECT_EQ(infoOf(target).group, 100U);
    EXPECT_EQ(infoOf(target).mode, one.after);
    ::unlink(target.c_str());
  }
}

#ifdef __linux__

const char* const accessList = "system.posix_acl_access";

/// rw for the owner and for user 3001, nothing for the group and others, as the system keeps it (acl(5)).
std::string listWithUser3001() {
  const std::uint32_t version = 2;
  const struct {
    std::uint16_t tag, permissions;
    std::uint32_t id;
  } entries[] = {{1, 6, ~0U}, {2, 6, 3001}, {4, 0, ~0U}, {0x10, 6, ~0U}, {0x20, 0, ~0U}};
  return std::string(reinterpret_cast<const char*>(&version), sizeof version) +
         std::string(reinterpret_cast<const char*>(entries), sizeof entries);
}

/// Empty where the file has none.
std::string accessListOf(const std::string& path) {
  char list[1024];
  const ssize_t size = ::getxattr(path.c_str(), accessList, list, sizeof list);
  return size < 0 ? std::string() : std::string(list, static_cast<std::size_t>(size));
}

bool setList(const std::string& path, const char* attribute) {
  const std::string list = listWithUser3001();
  return ::setxattr(path.c_str(), attribute, list.data(), list.size(), 0) == 0;
}

TEST_F(AtomicFile, ReplacedFileKeepsItsAccessList) {
  writeFile(target, "old");
  if (!setList(target, accessList)) GTEST_SKIP() << "NOT TESTED: no access lists on this volume";
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(accessListOf(target), listWithUser3001());
  EXPECT_EQ(infoOf(target).mode, mode_t{0660});
}

TEST_F(AtomicFile, ReplacedFileWithoutAnAccessListGetsNoneFromItsFolder) {
  writeFile(target, "old");
  ::chmod(target.c_str(), 0640);
  if (!setList(folder.path(), "system.posix_acl_default")) GTEST_SKIP() << "NOT TESTED: no access lists here";
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(accessListOf(target), "");
  EXPECT_EQ(infoOf(target).mode, mode_t{0640});
}

TEST_F(AtomicFile, AccessListOfAnotherUsersFileDoesNotOpenItToTheWritersGroup) {
  if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: needs root to make a file of another user";
  writeFile(target, "old");
  ASSERT_EQ(::chown(target.c_str(), 3003, 4000), 0);
  if (!setList(target, accessList)) GTEST_SKIP() << "NOT TESTED: no access lists on this volume";
  EXPECT_EQ(exitOfChild([&] { return becomeMemberOf(4001) ? replace("new") : 255; }), 0);
  EXPECT_EQ(infoOf(target).mode, mode_t{0600});
}

#endif

// What else can stand under the name

TEST_F(AtomicFile, SymbolicLinkIsReplacedAndNotFollowed) {
  TemporaryFolder elsewhere;
  writeFile(elsewhere.file("linked"), "linked");
  ASSERT_EQ(::symlink(elsewhere.file("linked").c_str(), target.c_str()), 0);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(infoOf(target).kind, Environment::FileKind::Regular);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(contentOrMissing(elsewhere.file("linked")), "linked");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

TEST_F(AtomicFile, DanglingLinkIsReplacedAndNothingIsMadeWhereItPoints) {
  TemporaryFolder elsewhere;
  ASSERT_EQ(::symlink(elsewhere.file("nothing").c_str(), target.c_str()), 0);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(infoOf(target).kind, Environment::FileKind::Regular);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(namesIn(elsewhere.path()), Names());
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
}

TEST_F(AtomicFile, LinkToAFolderIsReplacedAndTheFolderStaysAsItIs) {
  TemporaryFolder elsewhere;
  ASSERT_EQ(::symlink(elsewhere.path().c_str(), target.c_str()), 0);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(namesIn(elsewhere.path()), Names());
}

TEST_F(AtomicFile, ModeOfWhatALinkPointsToIsNotTakenOver) {
  const FileCreationMask here(022);
  writeFile(folder.file("linked"), "linked");
  ::chmod(folder.file("linked").c_str(), 0600);
  ASSERT_EQ(::symlink("linked", target.c_str()), 0);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(infoOf(target).mode, mode_t{0644});
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
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(infoOf(target).kind, Environment::FileKind::Regular);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(namesIn(folder.path()), Names({"target"}));
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

TEST_F(AtomicFile, TemporaryFileStandsHiddenBesideTheTargetAndIsNoConfiguration) {
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

TEST_F(AtomicFile, TemporaryFilesNeverShareAName) {
  replace("new");
  replace("newer");
  EXPECT_EQ(temporaryPaths().size(), 2U);
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
