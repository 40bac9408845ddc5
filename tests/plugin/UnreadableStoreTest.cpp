#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const char* const bad = "<plist><dict><key>E1</key>";

/// A store file that cannot be read, and an object that found it.
class UnreadableStoreTest : public PluginTest {
 protected:
  UnreadableStoreTest() { begin(bad); }

  void begin(const std::string& content) {
    writeFile(storePath(), content);
    start();
    put("E2", {});
  }
  std::string keptName(const std::string& number = "") const {
    return "EPGItems (unreadable, 2012-03-04 17.00.00)" + number + ".plist";
  }
  void refuseSecondNameAndCopy() {
    environment.failOn(Call::Link, "EPGItems (unreadable", EPERM);
    environment.failOn(Call::Open, "EPGItems (unreadable", ENOSPC);
  }
  /// What the data folder holds besides the configuration of all tests.
  std::vector<std::string> files() const {
    std::vector<std::string> names = namesIn(dataFolder);
    names.erase(std::remove(names.begin(), names.end(), "Test.epgconf"), names.end());
    return names;
  }
};

TEST_F(UnreadableStoreTest, IsKeptBesideTheFirstSavesFile) {
  EXPECT_THAT(files(), ElementsAre("EPGItems.plist")) << "nothing is kept before there is a save";
  save();
  EXPECT_THAT(files(), UnorderedElementsAre("EPGItems.plist", keptName()));
  EXPECT_EQ(bad, contentOf(dataFolder + "/" + keptName()));
  EXPECT_THAT(storedIDs(), ElementsAre("E2"));
  EXPECT_THAT(environment.logged(), IsEmpty());
}

TEST_F(UnreadableStoreTest, IsKeptOnce) {
  save();
  save();
  start();
  put("E3", {});
  save();
  EXPECT_THAT(files(), UnorderedElementsAre("EPGItems.plist", keptName()));
}

TEST_F(UnreadableStoreTest, TakesNoNameThatIsTaken) {
  writeFile(dataFolder + "/" + keptName(), "of before");
  save();
  EXPECT_THAT(files(), UnorderedElementsAre("EPGItems.plist", keptName(), keptName(" 2")));
  EXPECT_EQ("of before", contentOf(dataFolder + "/" + keptName()));
  EXPECT_EQ(bad, contentOf(dataFolder + "/" + keptName(" 2")));
}

TEST_F(UnreadableStoreTest, IsNotKeptWhereItIsNoMore) {
  const std::string another = dataFolder + "/another";
  writeFile(another, "another");
  ASSERT_EQ(0, std::rename(another.c_str(), storePath().c_str()));
  save();
  EXPECT_THAT(files(), ElementsAre("EPGItems.plist"));
}

TEST_F(UnreadableStoreTest, KeepsNothingOfAnAbsentOrEmptyFileNorOfOneThatWasRead) {
  for (const char* const content : {"", "<plist><dict/></plist>"}) {
    begin(content);
    save();
    EXPECT_THAT(files(), ElementsAre("EPGItems.plist")) << content;
    removeAll(storePath());
  }
  start();
  put("E2", {});
  save();
  EXPECT_THAT(files(), ElementsAre("EPGItems.plist"));
}

TEST_F(UnreadableStoreTest, IsKeptWhenOnlyItsReadingFailed) {
  writeStoreFile({{"E1", dictionaryOf({})}});
  const std::string good = contentOf(storePath());
  environment.failOn(Call::Read, "EPGItems.plist", EIO);
  start();
  environment.letAllCallsPass();
  put("E2", {});
  save();
  EXPECT_EQ(good, contentOf(dataFolder + "/" + keptName()));
}

TEST_F(UnreadableStoreTest, StaysAloneWhereTheSaveFails) {
  for (const Call call : {Call::Write, Call::Flush, Call::Exchange}) {
    environment.failOn(call, "EPGItems.plist", ENOSPC);
    save();
    EXPECT_THAT(files(), ElementsAre("EPGItems.plist"));
    EXPECT_EQ(bad, contentOf(storePath()));
    environment.letAllCallsPass();
  }
  save();
  EXPECT_THAT(files(), UnorderedElementsAre("EPGItems.plist", keptName()));
}

TEST_F(UnreadableStoreTest, IsCopiedWhereFilesHaveNoSecondName) {
  for (const int error : {EPERM, ENOTSUP, EMLINK}) {
    begin(bad);
    environment.failOn(Call::Link, "EPGItems (unreadable", error);
    save();
    environment.letAllCallsPass();
    EXPECT_THAT(files(), UnorderedElementsAre("EPGItems.plist", keptName()));
    EXPECT_EQ(bad, contentOf(dataFolder + "/" + keptName()));
    removeAll(dataFolder + "/" + keptName());
  }
}

TEST_F(UnreadableStoreTest, IsMovedWhereItTakesNoSecondNameAndNoCopy) {
  refuseSecondNameAndCopy();
  save();
  EXPECT_THAT(storedIDs(), ElementsAre("E2"));
  EXPECT_THAT(files(), UnorderedElementsAre("EPGItems.plist", keptName()));
  EXPECT_EQ(bad, contentOf(dataFolder + "/" + keptName()));
}

TEST_F(UnreadableStoreTest, IsMovedBackWhereTheSaveFails) {
  refuseSecondNameAndCopy();
  environment.failOn(Call::Flush, "EPGItems.plist", ENOSPC);
  save();
  EXPECT_THAT(files(), ElementsAre("EPGItems.plist"));
  EXPECT_EQ(bad, contentOf(storePath()));
}

TEST_F(UnreadableStoreTest, DoesNotKeepASaveFromBeingMadeWhereNothingCanBeKept) {
  refuseSecondNameAndCopy();
  environment.failOn(Call::Rename, "EPGItems (unreadable", EPERM);
  save();
  EXPECT_THAT(storedIDs(), ElementsAre("E2"));
  EXPECT_THAT(files(), ElementsAre("EPGItems.plist"));
}

TEST_F(UnreadableStoreTest, StandsUnderItsSecondNameBeforeItsOwnNameGoes) {
  std::vector<std::string> atExchange;
  environment.before(Call::Exchange, "EPGItems.plist", [&] {
    atExchange = files();
    return 0;
  });
  save();
  EXPECT_THAT(atExchange, testing::Contains(keptName()));
}

}  // namespace
}  // namespace epg::test
