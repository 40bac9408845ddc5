// Mode, owner and access list of a file that is replaced.

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/xattr.h>
#endif

#include <cstdint>
#include <string>

#include "tests/platform/AtomicFileTest.h"
#include "tests/platform/ChildProcess.h"

namespace epg::test {
namespace {

using AtomicFileMode = AtomicFile;

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

TEST_F(AtomicFileMode, NewFileHasTheModeOfAnyNewFile) {
  for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{027}, mode_t{077}}) {
    const FileCreationMask here(mask);
    ::unlink(target.c_str());
    EXPECT_EQ(replace("new"), 0);
    EXPECT_EQ(infoOf(target).mode, 0666 & ~mask);
  }
}

TEST_F(AtomicFileMode, ReplacedFileKeepsItsMode) {
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

TEST_F(AtomicFileMode, ModeOfWhatALinkPointsToIsNotTakenOver) {
  const FileCreationMask here(022);
  writeFile(folder.file("linked"), "linked");
  ::chmod(folder.file("linked").c_str(), 0600);
  ASSERT_EQ(::symlink("linked", target.c_str()), 0);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(infoOf(target).mode, mode_t{0644});
}

TEST_F(AtomicFileMode, ReplacedFileDoesNotKeepTheRightToRunAsItsOwner) {
  writeFile(target, "old");
  ::chmod(target.c_str(), 06755);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(infoOf(target).mode, mode_t{0755});
}

TEST_F(AtomicFileMode, ReplacedFileKeepsItsOwnerWhereThatIsPermitted) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  writeFile(target, "old");
  ASSERT_EQ(::chown(target.c_str(), 1234, 2345), 0);
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(infoOf(target).owner, 1234U);
  EXPECT_EQ(infoOf(target).group, 2345U);
}

TEST_F(AtomicFileMode, FileOfAnotherUserIsReplacedWhereTheFolderPermitsIt) {
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

TEST_F(AtomicFileMode, FileOfAnotherUserKeepsItsGroupWhereTheWriterIsInIt) {
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

TEST_F(AtomicFileMode, GroupThatCannotBeHandedOnGivesNobodyARight) {
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

TEST_F(AtomicFileMode, ReplacedFileKeepsItsAccessList) {
  writeFile(target, "old");
  if (!setList(target, accessList)) GTEST_SKIP() << "NOT TESTED: no access lists on this volume";
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(contentOrMissing(target), "new");
  EXPECT_EQ(accessListOf(target), listWithUser3001());
  EXPECT_EQ(infoOf(target).mode, mode_t{0660});
}

TEST_F(AtomicFileMode, ReplacedFileWithoutAnAccessListGetsNoneFromItsFolder) {
  writeFile(target, "old");
  ::chmod(target.c_str(), 0640);
  if (!setList(folder.path(), "system.posix_acl_default")) GTEST_SKIP() << "NOT TESTED: no access lists here";
  EXPECT_EQ(replace("new"), 0);
  EXPECT_EQ(accessListOf(target), "");
  EXPECT_EQ(infoOf(target).mode, mode_t{0640});
}

TEST_F(AtomicFileMode, AccessListOfAnotherUsersFileDoesNotOpenItToTheWritersGroup) {
  if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: needs root to make a file of another user";
  writeFile(target, "old");
  ASSERT_EQ(::chown(target.c_str(), 3003, 4000), 0);
  if (!setList(target, accessList)) GTEST_SKIP() << "NOT TESTED: no access lists on this volume";
  EXPECT_EQ(exitOfChild([&] { return becomeMemberOf(4001) ? replace("new") : 255; }), 0);
  EXPECT_EQ(infoOf(target).mode, mode_t{0600});
}

#endif

}  // namespace
}  // namespace epg::test
