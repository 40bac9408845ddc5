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

struct Joined {
  const char* path;
  const char* component;
  const char* expected;
};

TEST(PathComponent, IsJoinedWithOneSlash) {
  const Joined rows[] = {{"/a/b", "c", "/a/b/c"},
                         {"/a/b/", "c", "/a/b/c"},
                         {"/a/b//", "//c", "/a/b/c"},
                         {"a", "b/c", "a/b/c"},
                         // To the root.
                         {"/", "a", "/a"},
                         {"/", "/a", "/a"},
                         {"//", "a", "/a"},
                         // To an empty path it stands alone.
                         {"", "a", "a"},
                         {"", "/a", "/a"},
                         // An empty one adds nothing.
                         {"/a", "", "/a"},
                         {"/a/", "", "/a"},
                         {"/a", "/", "/a"},
                         {"/", "", "/"},
                         {"", "", ""},
                         // Slashes at its end are lost, any other character stays.
                         {"/a", "b//", "/a/b"},
                         {"/a b", "é\n..", "/a b/é\n.."}};
  for (const Joined& row : rows) {
    EXPECT_EQ(appendPathComponent(row.path, row.component), row.expected) << row.path << " and " << row.component;
  }
}

TEST(PathComponent, LastIsWhatStandsBehindTheLastSlash) {
  const char* const rows[][2] = {{"/a/b.c", "b.c"}, {"/a/", "a"}, {"a///", "a"}, {"a", "a"},
                                 {"/a", "a"},       {"/", "/"},   {"///", "/"},  {"", ""}};
  for (const auto& row : rows) EXPECT_EQ(lastPathComponent(row[0]), row[1]) << row[0];
}

TEST(PathExtension, IsWhatStandsBehindTheLastDotAndCanBeTakenAway) {
  const struct {
    const char* path;
    const char* extension;
    const char* without;
  } rows[] = {{"a.epgconf", "epgconf", "a"},
              {"x.y.epgconf", "epgconf", "x.y"},
              {"/a.b/c.d", "d", "/a.b/c"},
              {"a..b", "b", "a."},
              {"a.b/", "b", "a"},
              {"a.EPGConf", "EPGConf", "a"},
              {".hidden.epgconf", "epgconf", ".hidden"},
              // None, also where a hidden name is all that stands behind the dot.
              {".epgconf", "", ".epgconf"},
              {"/a/.epgconf", "", "/a/.epgconf"},
              {"", "", ""},
              {"a", "", "a"},
              {"a.", "", "a."},
              {"/", "", "/"},
              {"/a.b/c", "", "/a.b/c"},
              {"a/", "", "a"},
              {".", "", "."},
              {"..", "", ".."},
              {"...", "", "..."}};
  for (const auto& row : rows) {
    EXPECT_EQ(pathExtension(row.path), row.extension) << row.path;
    EXPECT_EQ(deletePathExtension(row.path), row.without) << row.path;
  }
}

TEST(PathExtension, IsAddedBehindADot) {
  const Joined rows[] = {{"/a/b", "c", "/a/b.c"}, {"a.b", "c", "a.b.c"}, {"/a/b/", "c", "/a/b.c"}, {"b.", "c", "b..c"}};
  for (const Joined& row : rows) EXPECT_EQ(appendPathExtension(row.path, row.component), row.expected) << row.path;
}

TEST(PathExtension, AddedAndTakenAwayLeavesTheName) {
  for (const char* name : {"a", "x.y", ".hidden", "a b", "节目"}) {
    EXPECT_EQ(deletePathExtension(appendPathExtension(name, "epgconf")), name);
    EXPECT_EQ(pathExtension(appendPathExtension(name, "epgconf")), "epgconf");
  }
}

TEST(Tilde, AtTheStartIsAHomeFolder) {
  const char* const rows[][2] = {{"~", "/homes/me"},
                                 {"~/", "/homes/me"},
                                 {"~/a/b", "/homes/me/a/b"},
                                 {"~//a/", "/homes/me/a"},
                                 // Of the user who is named.
                                 {"~other", "/homes/other"},
                                 {"~other/a", "/homes/other/a"},
                                 {"~top/a", "/a"},
                                 // Of nobody.
                                 {"~nosuchuser", "~nosuchuser"},
                                 {"~nosuchuser/x/", "~nosuchuser/x/"}};
  TwoUsers environment;
  for (const auto& row : rows) EXPECT_EQ(expandTilde(environment, row[0]), row[1]) << row[0];
}

TEST(Tilde, AnywhereElseStaysAsItIs) {
  TwoUsers environment;
  for (const char* path : {"", "/", "/a/~", "a~", "./~/b", " ~/a", "/a/b/"}) {
    EXPECT_EQ(expandTilde(environment, path), path);
  }
}

}  // namespace
}  // namespace epg::test
