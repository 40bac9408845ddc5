#include "platform/Paths.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "platform/Environment.h"

namespace epg::test {
namespace {

/// A machine with two users.
class TwoUsers : public Environment {
 public:
  std::string homeFolder() override { return "/homes/me/"; }
  std::optional<std::string> homeFolderOfUser(const std::string& user) override {
    if (user == "other") return "/homes/other";
    if (user == "top") return "/";
    return std::nullopt;
  }
};

std::string expanded(const std::string& path) {
  TwoUsers environment;
  return expandTilde(environment, path);
}

TEST(PathComponent, IsJoinedWithOneSlash) {
  EXPECT_EQ(appendPathComponent("/a/b", "c"), "/a/b/c");
  EXPECT_EQ(appendPathComponent("/a/b/", "c"), "/a/b/c");
  EXPECT_EQ(appendPathComponent("/a/b//", "//c"), "/a/b/c");
  EXPECT_EQ(appendPathComponent("a", "b/c"), "a/b/c");
}

TEST(PathComponent, IsJoinedToTheRoot) {
  EXPECT_EQ(appendPathComponent("/", "a"), "/a");
  EXPECT_EQ(appendPathComponent("/", "/a"), "/a");
  EXPECT_EQ(appendPathComponent("//", "a"), "/a");
}

TEST(PathComponent, OfAnEmptyPathStandsAlone) {
  EXPECT_EQ(appendPathComponent("", "a"), "a");
  EXPECT_EQ(appendPathComponent("", "/a"), "/a");
}

TEST(PathComponent, ThatIsEmptyAddsNothing) {
  EXPECT_EQ(appendPathComponent("/a", ""), "/a");
  EXPECT_EQ(appendPathComponent("/a/", ""), "/a");
  EXPECT_EQ(appendPathComponent("/a", "/"), "/a");
  EXPECT_EQ(appendPathComponent("/", ""), "/");
  EXPECT_EQ(appendPathComponent("", ""), "");
}

TEST(PathComponent, LosesSlashesAtItsEnd) { EXPECT_EQ(appendPathComponent("/a", "b//"), "/a/b"); }

TEST(PathComponent, MayHoldAnyOtherCharacter) { EXPECT_EQ(appendPathComponent("/a b", "é\n.."), "/a b/é\n.."); }

TEST(PathComponent, LastIsWhatStandsBehindTheLastSlash) {
  EXPECT_EQ(lastPathComponent("/a/b.c"), "b.c");
  EXPECT_EQ(lastPathComponent("/a/"), "a");
  EXPECT_EQ(lastPathComponent("a///"), "a");
  EXPECT_EQ(lastPathComponent("a"), "a");
  EXPECT_EQ(lastPathComponent("/a"), "a");
}

TEST(PathComponent, LastOfTheRootIsTheRoot) {
  EXPECT_EQ(lastPathComponent("/"), "/");
  EXPECT_EQ(lastPathComponent("///"), "/");
}

TEST(PathComponent, LastOfAnEmptyPathIsEmpty) { EXPECT_EQ(lastPathComponent(""), ""); }

TEST(PathExtension, IsWhatStandsBehindTheLastDot) {
  EXPECT_EQ(pathExtension("a.epgconf"), "epgconf");
  EXPECT_EQ(pathExtension("x.y.epgconf"), "epgconf");
  EXPECT_EQ(pathExtension("/a.b/c.d"), "d");
  EXPECT_EQ(pathExtension("a..b"), "b");
  EXPECT_EQ(pathExtension("a.b/"), "b");
}

TEST(PathExtension, IsEmptyWhereThereIsNone) {
  for (const char* name : {"", "a", "a.", "/", "/a.b/c", "a/", ".", "..", "..."})
    EXPECT_EQ(pathExtension(name), "") << name;
}

TEST(PathExtension, OfAHiddenNameIsNotTheName) {
  EXPECT_EQ(pathExtension(".epgconf"), "");
  EXPECT_EQ(pathExtension("/a/.epgconf"), "");
  EXPECT_EQ(pathExtension(".hidden.epgconf"), "epgconf");
}

TEST(PathExtension, KeepsItsLetters) { EXPECT_EQ(pathExtension("a.EPGConf"), "EPGConf"); }

TEST(PathExtension, IsTakenAway) {
  EXPECT_EQ(deletePathExtension("a.epgconf"), "a");
  EXPECT_EQ(deletePathExtension("x.y.epgconf"), "x.y");
  EXPECT_EQ(deletePathExtension("/a.b/c.d"), "/a.b/c");
  EXPECT_EQ(deletePathExtension("a..b"), "a.");
  EXPECT_EQ(deletePathExtension("a.b/"), "a");
}

TEST(PathExtension, IsNotTakenAwayWhereThereIsNone) {
  EXPECT_EQ(deletePathExtension(".epgconf"), ".epgconf");
  EXPECT_EQ(deletePathExtension("a."), "a.");
  EXPECT_EQ(deletePathExtension("a"), "a");
  EXPECT_EQ(deletePathExtension("a/"), "a");
  EXPECT_EQ(deletePathExtension("/a.b/c"), "/a.b/c");
  EXPECT_EQ(deletePathExtension(""), "");
  EXPECT_EQ(deletePathExtension("/"), "/");
}

TEST(PathExtension, IsAdded) {
  EXPECT_EQ(appendPathExtension("/a/b", "c"), "/a/b.c");
  EXPECT_EQ(appendPathExtension("a.b", "c"), "a.b.c");
  EXPECT_EQ(appendPathExtension("/a/b/", "c"), "/a/b.c");
  EXPECT_EQ(appendPathExtension("b.", "c"), "b..c");
}

TEST(PathExtension, AddedAndTakenAwayLeavesTheName) {
  for (const char* name : {"a", "x.y", ".hidden", "a b", "节目"}) {
    EXPECT_EQ(deletePathExtension(appendPathExtension(name, "epgconf")), name);
    EXPECT_EQ(pathExtension(appendPathExtension(name, "epgconf")), "epgconf");
  }
}

TEST(Tilde, AloneIsTheHomeFolder) {
  EXPECT_EQ(expanded("~"), "/homes/me");
  EXPECT_EQ(expanded("~/"), "/homes/me");
}

TEST(Tilde, LeadsIntoTheHomeFolder) {
  EXPECT_EQ(expanded("~/a/b"), "/homes/me/a/b");
  EXPECT_EQ(expanded("~//a/"), "/homes/me/a");
}

TEST(Tilde, WithANameIsThatUsersHomeFolder) {
  EXPECT_EQ(expanded("~other"), "/homes/other");
  EXPECT_EQ(expanded("~other/a"), "/homes/other/a");
  EXPECT_EQ(expanded("~top/a"), "/a");
}

TEST(Tilde, WithTheNameOfNobodyStaysAsItIs) {
  EXPECT_EQ(expanded("~nosuchuser"), "~nosuchuser");
  EXPECT_EQ(expanded("~nosuchuser/x/"), "~nosuchuser/x/");
}

TEST(Tilde, AnywhereElseStaysAsItIs) {
  for (const char* path : {"", "/", "/a/~", "a~", "./~/b", " ~/a", "/a/b/"}) EXPECT_EQ(expanded(path), path);
}

}  // namespace
}  // namespace epg::test
