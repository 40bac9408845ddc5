// A save that fails is silent, leaves the old file as it was and nothing beside it, and the next save works.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <new>
#include <stdexcept>

#include "tests/support/PluginTest.h"
#include "tests/support/UnprivilegedUser.h"

namespace epg::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SaveFailureTest : public PluginTest {
 protected:
  SaveFailureTest() {
    put("old", {});
    save();
    old = contentOf(storePath());
    names = namesIn(dataFolder);
    put("E1", {{ZRLEPGDSTitleKey, "Title"}});
  }

  /// Saves, which has to fail, and then again without the hindrance, which has to work.
  void expectOldFileAndSilence() {
    save();
    EXPECT_FALSE(plugin->busyWriting());
    EXPECT_EQ(old, contentOf(storePath()));
    EXPECT_EQ(names, namesIn(dataFolder)) << "something was left behind";
    EXPECT_THAT(environment.logged(), IsEmpty());
    EXPECT_THAT(delegate.reports(), IsEmpty());
    EXPECT_EQ("Title", textOf(*plugin->epgItems()->item("E1"), ZRLEPGDSTitleKey));
    environment.letAllCallsPass();
  }
  void expectNextSaveWorks() {
    save();
    EXPECT_THAT(storedIDs(), ElementsAre("E1", "old"));
  }

  std::string old;
  std::vector<std::string> names;
};

TEST_F(SaveFailureTest, AnErrorOfAnyFileCallLeavesTheOldFile) {
  for (const Call call : {Call::Open, Call::Write, Call::Flush, Call::Exchange}) {
    for (const int error : {ENOSPC, EIO, EACCES, EROFS, EDQUOT}) {
      environment.failOn(call, "EPGItems.plist", error);
      expectOldFileAndSilence();
    }
  }
  expectNextSaveWorks();
}

TEST_F(SaveFailureTest, AFolderThatCannotBeFlushedLeavesTheOldFile) {
  // The file is flushed first, then the folder.
  environment.before(Call::Flush, dataFolder, [count = 0]() mutable { return ++count == 2 ? EIO : 0; });
  expectOldFileAndSilence();
  EXPECT_EQ(EIO, environment.replacements().back().error);
  expectNextSaveWorks();
}

TEST_F(SaveFailureTest, ARenameThatFailsWhereFilesCannotBeExchangedLeavesTheOldFile) {
  environment.failOn(Call::Exchange, "EPGItems.plist", ENOTSUP);
  environment.failOn(Call::Rename, "EPGItems.plist", EIO);
  expectOldFileAndSilence();
  environment.failOn(Call::Exchange, "EPGItems.plist", ENOTSUP);
  expectNextSaveWorks();
}

TEST_F(SaveFailureTest, AFullDiskInTheMiddleOfTheFileLeavesTheOldFile) {
  // Long enough for more than one write.
  put("large", {{ZRLEPGDSDescriptionKey, std::string(1 << 20, 'x')}});
  ASSERT_NE(SIG_ERR, std::signal(SIGXFSZ, SIG_IGN));
  struct rlimit before {};
  ASSERT_EQ(0, ::getrlimit(RLIMIT_FSIZE, &before));
  struct rlimit small = before;
  small.rlim_cur = 4096;
  ASSERT_EQ(0, ::setrlimit(RLIMIT_FSIZE, &small));
  save();
  ASSERT_EQ(0, ::setrlimit(RLIMIT_FSIZE, &before));
  EXPECT_NE(0, environment.replacements().back().error);
  EXPECT_EQ(old, contentOf(storePath()));
  EXPECT_EQ(names, namesIn(dataFolder));
  EXPECT_THAT(environment.logged(), IsEmpty());
  EXPECT_FALSE(plugin->busyWriting());
  save();
  EXPECT_THAT(storedIDs(), ElementsAre("E1", "large", "old"));
}

TEST_F(SaveFailureTest, ADeletedDataFolderIsNotMadeAgain) {
  removeAll(dataFolder);
  save();
  EXPECT_FALSE(exists(dataFolder));
  EXPECT_FALSE(plugin->busyWriting());
  EXPECT_THAT(environment.logged(), IsEmpty());
  EXPECT_THAT(delegate.reports(), IsEmpty());
  folder.makeFolder("data");
  expectNextSaveWorks();
}

TEST_F(SaveFailureTest, ADataFolderDeletedWhileASaveIsWritingIsNoHarm) {
  Gate gate;
  environment.holdBefore(Call::Flush, "EPGItems.plist", gate);
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  removeAll(dataFolder);
  gate.open();
  environment.waitForThreads();
  EXPECT_FALSE(plugin->busyWriting());
  EXPECT_FALSE(exists(dataFolder));
  EXPECT_THAT(environment.logged(), IsEmpty());
}

TEST_F(SaveFailureTest, AFolderThatMayNotBeWrittenLeavesTheOldFile) {
  ASSERT_EQ(0, ::chmod(dataFolder.c_str(), 0555));
  {
    const UnprivilegedUser user;
    expectOldFileAndSilence();
    EXPECT_EQ(EACCES, environment.replacements().back().error);
  }
  ASSERT_EQ(0, ::chmod(dataFolder.c_str(), 0755));
  expectNextSaveWorks();
}

TEST_F(SaveFailureTest, AStoreFileThatMayNotBeReadGivesAnEmptyStore) {
  ASSERT_EQ(0, ::chmod(storePath().c_str(), 0));
  const UnprivilegedUser user;
  start();
  EXPECT_EQ(0U, plugin->epgItems()->size());
  EXPECT_THAT(environment.logged(), IsEmpty());
}

TEST_F(SaveFailureTest, AFolderThatMayNotBeEnteredOffersTheDefaultConfiguration) {
  ASSERT_EQ(0, ::chmod(dataFolder.c_str(), 0));
  {
    const UnprivilegedUser user;
    EXPECT_THAT(plugin->configurationFilenames(), ElementsAre("Default EPG Settings"));
    plugin->exportEvents({}, "Test");
    environment.waitForThreads();
    EXPECT_EQ(homeFolder + "/Desktop", plugin->exportPath());
  }
  ASSERT_EQ(0, ::chmod(dataFolder.c_str(), 0755));
}

TEST_F(SaveFailureTest, AFolderInTheFilesPlaceStaysThere) {
  removeAll(storePath());
  folder.makeFolder("data/EPGItems.plist");
  writeFile(storePath() + "/inside", "kept");
  save();
  EXPECT_NE(0, environment.replacements().back().error);
  EXPECT_EQ("kept", contentOf(storePath() + "/inside"));
  EXPECT_EQ(names, namesIn(dataFolder));
  EXPECT_THAT(environment.logged(), IsEmpty());
  EXPECT_FALSE(plugin->busyWriting());
}

TEST_F(SaveFailureTest, APipeInTheFilesPlaceIsReplaced) {
  removeAll(storePath());
  ASSERT_EQ(0, ::mkfifo(storePath().c_str(), 0666));
  expectNextSaveWorks();
}

TEST_F(SaveFailureTest, ALinkInTheFilesPlaceIsReplacedAndNotFollowed) {
  const std::string outside = folder.file("outside");
  writeFile(outside, "untouched");
  removeAll(storePath());
  ASSERT_EQ(0, ::symlink(outside.c_str(), storePath().c_str()));
  expectNextSaveWorks();
  EXPECT_EQ("untouched", contentOf(outside));
  struct stat status {};
  ASSERT_EQ(0, ::lstat(storePath().c_str(), &status));
  EXPECT_TRUE(S_ISREG(status.st_mode));
}

TEST_F(SaveFailureTest, TextsAndKeysThatAreNotUTF8StopNoSave) {
  put("bad", {{ZRLEPGDSTitleKey, "caf\xE9"}, {"\xC3", "x"}});
  put("\xFF", {});
  save();
  EXPECT_EQ(0, environment.replacements().back().error);
  EXPECT_THAT(storedIDs(), ElementsAre("E1", "bad", "old", "\xEF\xBF\xBD"));
  EXPECT_THAT(contentOf(storePath()), testing::HasSubstr("<string>caf\xEF\xBF\xBD</string>"));
  EXPECT_EQ("caf\xE9", textOf(*plugin->epgItems()->item("bad"), ZRLEPGDSTitleKey)) << "the item itself stays";
}

TEST_F(SaveFailureTest, AValueThatIsNoPropertyListLeavesTheOldFile) {
  class HostsOwn : public ForeignValue {};
  put("bad", {{"window", PropertyList::fromForeign(std::make_shared<HostsOwn>())}});
  expectOldFileAndSilence();
  plugin->epgItems()->removeItem("bad");
  expectNextSaveWorks();
}

TEST_F(SaveFailureTest, TooDeepANestingLeavesTheOldFile) {
  PropertyList nested = "inside";
  for (int depth = 0; depth < PropertyList::maximumDepth; ++depth) nested = PropertyList::Array{nested};
  put("bad", {{"nested", nested}});
  expectOldFileAndSilence();
}

TEST_F(SaveFailureTest, AnExceptionLeavesOneLineInTheLogAndTheOldFile) {
  environment.before(Call::Write, "EPGItems.plist", []() -> int { throw std::runtime_error("the disk is on fire"); });
  save();
  EXPECT_THAT(environment.logged(),
              ElementsAre("An error occured while trying to write the EPG items to disk (the disk is on fire)"));
  EXPECT_FALSE(plugin->busyWriting());
  EXPECT_EQ(old, contentOf(storePath()));
  EXPECT_EQ(names, namesIn(dataFolder));
  environment.letAllCallsPass();
  expectNextSaveWorks();
  EXPECT_EQ(1U, environment.logged().size());
}

TEST_F(SaveFailureTest, RunningOutOfMemoryLeavesOneLineInTheLogAndTheOldFile) {
  environment.before(Call::Open, "EPGItems.plist", []() -> int { throw std::bad_alloc(); });
  save();
  EXPECT_THAT(environment.logged(),
              ElementsAre("An error occured while trying to write the EPG items to disk (std::bad_alloc)"));
  EXPECT_FALSE(plugin->busyWriting());
  EXPECT_EQ(old, contentOf(storePath()));
  environment.letAllCallsPass();
  expectNextSaveWorks();
}

TEST_F(SaveFailureTest, AnExceptionOfAnotherKindIsNotCaught) {
  environment.before(Call::Open, "EPGItems.plist", []() -> int { throw 7; });
  EXPECT_THROW(plugin->saveEPGItemsToFileThread(*plugin->epgItems()->snapshot()), int);
  EXPECT_THAT(environment.logged(), IsEmpty());
  EXPECT_EQ(old, contentOf(storePath()));
}

TEST_F(SaveFailureTest, AFailureDuringASaveThatIsWritingIsStillADroppedSave) {
  Gate gate;
  environment.before(Call::Write, "EPGItems.plist", [pass = gate.passing()] {
    pass();
    return ENOSPC;
  });
  plugin->saveEPGItemsToFile();
  gate.waitUntilHolding();
  const std::size_t threads = environment.threadsStarted();
  plugin->saveEPGItemsToFile();
  EXPECT_EQ(threads, environment.threadsStarted());
  gate.open();
  environment.waitForThreads();
  EXPECT_EQ(old, contentOf(storePath()));
}

}  // namespace
}  // namespace epg::test
