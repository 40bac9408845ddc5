#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "store/ItemStoreFile.h"
#include "tests/host/CommandTest.h"

namespace epg::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The one entry "a", escape, line feed. The binary form can hold what the XML form cannot.
std::string storeWithAnIDThatXMLCannotHold() {
  return std::string("bplist00\xD1\x01\x02\x53") + "a\x1B\n" + std::string("\xD1\x03\x04\x55") + "title" +
         std::string("\x65\0A\0\t\0\x9B\0\\\0\xE9", 11) + std::string("\x08\x0B\x0F\x12\x18", 5) +
         std::string(6, '\0') + "\x01\x01" + std::string(7, '\0') + "\x05" + std::string(8, '\0') +
         std::string(7, '\0') + "\x23";
}

/// list, configurations, remove and duplicate.
class EntryCommands : public CommandTest {
 protected:
  EntryCommands() {
    writeItemStore(storeOf(
        {item("E2", {{"title", "Two"}}), item("E1", {{"title", "One"}, {"tags", names({"Live"})}}), item("E3", {})}));
  }
};

}  // namespace

TEST_F(EntryCommands, ListIDsAndTitlesByID) { EXPECT_EQ(runWell({"list"}).output, "E1\tOne\nE2\tTwo\nE3\t\n"); }

TEST_F(EntryCommands, ListNothingOfAFolderWithoutAStore) {
  writeFile(file("resources/nothing to do with it"), "");
  EXPECT_EQ(runWell({"--data-folder", file("resources"), "list"}).output, "");
  EXPECT_EQ(runWell({"--data-folder", file("resources"), "configurations"}).output, "Default EPG Settings\n");
  removeAll(dataFolder());
  EXPECT_EQ(runWell({"list"}).output, "");  // Nobody named this one.
  EXPECT_FALSE(exists(dataFolder()));
}

TEST_F(EntryCommands, RefuseAFolderThatSomebodyNamedAndThatIsNotThere) {
  const std::string events = write("events.plist", "<plist><array/></plist>");
  const std::vector<std::string> commands[] = {
      {"list"},          {"configurations"}, {"show", "E1"},           {"remove", "E1"},
      {"check", events}, {"export", events}, {"duplicate", "E1", "E9"}};
  for (std::vector<std::string> command : commands) {
    command.insert(command.end(), {"--data-folder", file("none")});
    const CommandResult result = run(command);
    EXPECT_EQ(result.status, 1) << command[0];
    EXPECT_EQ(result.messages, file("none") + ": there is no such data folder\n") << command[0];
    EXPECT_EQ(result.output, "") << command[0];
  }
  EXPECT_FALSE(exists(file("none")));
}

TEST_F(EntryCommands, TellAnEntryThatIsNoneFromOneThatIsNotThere) {
  PropertyListDictionary strange = store();
  strange.set("b", "kept by another tool");
  writeItemStore(strange);
  const std::string words = "the store holds something under b that is no entry; it is left as it is (EPGItems.plist)";
  EXPECT_EQ(run({"edit", "b", "--title", "T"}).messages, words + "\n");
  EXPECT_EQ(run({"show", "b"}).messages, words + "; the editor shows it empty\n");
  EXPECT_EQ(run({"remove", "b"}).messages, words + "\n");
  EXPECT_EQ(run({"duplicate", "b", "E9"}).messages, words + "\n");
  EXPECT_EQ(run({"duplicate", "E1", "b"}).messages, words + "\n");
  EXPECT_EQ(store(), strange);
}

TEST_F(EntryCommands, ListKeepsToOneLineAnEntryAndLeavesTheTerminalAlone) {
  writeFile(storePath(), storeWithAnIDThatXMLCannotHold());
  EXPECT_EQ(runWell({"list"}).output, "a\\x1B\\n\tA\\t\\xC2\\x9B\\\\é\n");
}

TEST_F(EntryCommands, DoNotChangeAnEntryUnderAnIDThatTheFileWouldNotGiveBack) {
  const std::string id = "a\x1B\n";
  const std::string before = storeWithAnIDThatXMLCannotHold();
  writeFile(storePath(), before);
  const std::vector<std::string> commands[] = {{"edit", id, "--tag", "Live"},
                                               {"edit", "E1", id, "--title", "T"},
                                               {"edit", id, "--title", "T", "--dry-run"},
                                               {"duplicate", id, id}};
  for (const std::vector<std::string>& command : commands) {
    const CommandResult result = run(command);
    EXPECT_EQ(result.status, 1) << testing::PrintToString(command);
    EXPECT_EQ(result.messages, "a\\x1B\\n: an entry cannot be saved under an ID with such control characters\n");
    EXPECT_EQ(contentOf(storePath()), before);
  }
  EXPECT_EQ(linesOf(runWell({"show", id}).output)[0], "Title: A\\t\\xC2\\x9B\\\\é");
  EXPECT_EQ(runWell({"remove", id}).messages, "");
  EXPECT_EQ(store().size(), 0U);
}

TEST_F(EntryCommands, TellOfIDsThatASaveDoesNotGiveBack) {
  writeFile(storePath(), storeWithAnIDThatXMLCannotHold());
  EXPECT_EQ(
      runWell({"duplicate", "a\x1B\n", "good"}).messages,
      storePath() + ": 1 ID with control characters that the file cannot hold; U+FFFD stands there now: a\\x1B\\n\n");
  EXPECT_EQ(store().size(), 2U);
  EXPECT_TRUE(store().find("a\xEF\xBF\xBD\n"));
  EXPECT_EQ(runWell({"edit", "good", "--title", "T"}).messages, "");
}

TEST_F(EntryCommands, DoNotTakeALinkThatLeadsNowhereForAStoreThatIsNotThere) {
  ASSERT_EQ(unlink(storePath().c_str()), 0);
  ASSERT_EQ(symlink("../elsewhere.plist", storePath().c_str()), 0);
  const std::string guide = writeGuide("<programme start='2001'><title>T</title></programme>");
  const std::vector<std::string> commands[] = {
      {"list"}, {"show", "E1"}, {"remove", "E1"}, {"edit", "E1", "--title", "T"}, {"import", guide}};
  for (const std::vector<std::string>& command : commands) {
    const CommandResult result = run(command);
    EXPECT_EQ(result.status, 1) << command[0];
    EXPECT_EQ(result.messages, storePath() + ": a link to a file that is not there\n") << command[0];
    EXPECT_EQ(result.output, "") << command[0];
  }
  char target[64] = {};
  EXPECT_GT(readlink(storePath().c_str(), target, sizeof target - 1), 0) << "the link was replaced";
  EXPECT_STREQ(target, "../elsewhere.plist");
  writeFile(file("elsewhere.plist"), "<plist><dict><key>E7</key><dict/></dict></plist>");
  EXPECT_EQ(runWell({"list"}).output, "E7\t\n");
}

TEST_F(EntryCommands, DoNotTakeAStoreForNoneThatCameWhileTheyLookedForIt) {
  class ComesLater : public ReportingEnvironment {
   public:
    using ReportingEnvironment::ReportingEnvironment;
    int openFile(const std::string& path, int flags, mode_t mode, int* descriptor) override {
      const std::string name = "EPGItems.plist";
      const bool isStore = path.size() > name.size() && path.substr(path.size() - name.size()) == name;
      return isStore ? ENOENT : ReportingEnvironment::openFile(path, flags, mode, descriptor);
    }
  };
  const std::string before = contentOf(storePath());
  useEnvironment([](Messages& messages) { return std::make_unique<ComesLater>(messages); });
  const CommandResult result = run({"edit", "E9", "--title", "T"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages, storePath() + ": was not there at the first try\n");
  EXPECT_EQ(contentOf(storePath()), before);
}

TEST_F(EntryCommands, DoNotSayThatThereIsNoConfigurationWhereTheFolderCannotBeListed) {
  class Unlisted : public ReportingEnvironment {
   public:
    using ReportingEnvironment::ReportingEnvironment;
    int listFolder(const std::string& /*path*/, std::vector<std::string>* /*names*/) override { return EACCES; }
  };
  const std::string folder = configureExport("Evening");
  const std::string events = write("events.plist", "<plist><array/></plist>");
  useEnvironment([](Messages& messages) { return std::make_unique<Unlisted>(messages); });
  const std::vector<std::string> commands[] = {
      {"configurations"}, {"export", events}, {"export", events, "--configuration", "Evening"}};
  for (const std::vector<std::string>& command : commands) {
    const CommandResult result = run(command);
    EXPECT_EQ(result.status, 1) << testing::PrintToString(command);
    EXPECT_EQ(result.messages, dataFolder() + ": the export configurations cannot be listed: Permission denied\n");
    EXPECT_EQ(result.output, "");
  }
  EXPECT_THAT(namesIn(folder), testing::IsEmpty());
}

TEST_F(EntryCommands, ListsIDsThatRemoveTakesBack) {
  const std::string odd = "a\nb\t\\ -\xE2\x80\xAE";
  writeItemStore(storeOf({item(odd, {{"title", "Odd"}}), item("E1", {{"title", "One"}})}));
  const std::string listing = runWell({"list"}).output;
  const std::string line = linesOf(listing)[1];
  runWell({"remove", "-"}, line.substr(0, line.find('\t')) + "\n");
  EXPECT_EQ(store(), storeOf({item("E1", {{"title", "One"}})}));
}

TEST_F(EntryCommands, ConfigurationsNameTheFiles) {
  configureExport("Morning");
  configureExport("Evening");
  writeFile(dataFolder() + "/Night.EPGCONF", "");
  EXPECT_EQ(runWell({"configurations"}).output, "Evening\nMorning\n");
}

TEST_F(EntryCommands, RemoveEntries) {
  EXPECT_EQ(runWell({"remove", "E1", "E3"}).output, "2 entries removed\n");
  EXPECT_EQ(store(), storeOf({item("E2", {{"title", "Two"}})}));
}

TEST_F(EntryCommands, RemoveTellsOfUnknownIDsAndRemovesTheOthers) {
  const CommandResult result = runWell({"remove", "E9", "E1", "E1", "E9"});
  EXPECT_EQ(result.messages, "E9: no such entry\n");
  EXPECT_EQ(result.output, "1 entry removed\n");
}

TEST_F(EntryCommands, RemoveFailsWhereNoneOfTheIDsHasAnEntry) {
  const std::string before = contentOf(storePath()) + "\n";
  writeFile(storePath(), before);
  const CommandResult result = run({"remove", "E8", "e1"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages, "E8: no such entry\ne1: no such entry\n");
  EXPECT_EQ(contentOf(storePath()), before);
}

TEST_F(EntryCommands, DuplicateAnEntry) {
  EXPECT_EQ(runWell({"duplicate", "E1", "E9"}).output, "New entry: E9\n");
  const PropertyListDictionary after = store();
  EXPECT_EQ(after.size(), 4U);
  // The copy goes on naming its source until it is edited.
  EXPECT_EQ(*after.find("E9"), *after.find("E1"));
}

TEST_F(EntryCommands, DuplicateOntoAnEntryReplacesIt) {
  EXPECT_EQ(runWell({"duplicate", "E1", "E2"}).output, "Replaced entry: E2\n");
  EXPECT_EQ(*store().find("E2"), *store().find("E1"));
}

TEST_F(EntryCommands, DuplicateRefusesASourceWithoutEntry) {
  const std::string before = contentOf(storePath());
  const CommandResult result = run({"duplicate", "E9", "E1"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages, "E9: no such entry\n");
  EXPECT_EQ(contentOf(storePath()), before);
}

TEST_F(EntryCommands, DuplicateRefusesATargetThatTheFileWouldNotGiveBack) {
  for (const char* target : {"", "a\x1B"}) {
    EXPECT_EQ(run({"duplicate", "E1", target}).status, 1);
  }
  EXPECT_THAT(run({"duplicate", "E1", "a\x1B"}).messages, HasSubstr("a\\x1B: "));
  EXPECT_EQ(store().size(), 3U);
}

TEST_F(EntryCommands, KeepTheirHandsOffAStoreThatCannotBeRead) {
  writeFile(storePath(), "<plist><dict><key>E1</key>");
  const std::vector<std::string> commands[] = {{"list"},         {"configurations"},
                                               {"remove", "E1"}, {"duplicate", "E1", "E2"},
                                               {"show", "E1"},   {"edit", "E1", "--title", "x"}};
  for (const std::vector<std::string>& command : commands) {
    const CommandResult result = run(command);
    EXPECT_EQ(result.status, 1) << command[0];
    EXPECT_THAT(result.messages, testing::StartsWith(storePath() + ": not a property list: line 1")) << command[0];
    EXPECT_EQ(result.output, "") << command[0];
  }
  EXPECT_EQ(contentOf(storePath()), "<plist><dict><key>E1</key>");
}

TEST_F(EntryCommands, DoNotTakeAStoreForEmptyThatCouldNotBeReadOnce) {
  class FailsOnce : public ReportingEnvironment {
   public:
    using ReportingEnvironment::ReportingEnvironment;
    int readFile(int descriptor, char* buffer, std::size_t capacity, std::size_t* count) override {
      if (!std::exchange(hasFailed_, true)) return EIO;
      return ReportingEnvironment::readFile(descriptor, buffer, capacity, count);
    }

   private:
    bool hasFailed_ = false;
  };
  const std::string before = contentOf(storePath());
  useEnvironment([](Messages& messages) { return std::make_unique<FailsOnce>(messages); });
  const CommandResult result = run({"edit", "E9", "--title", "T"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages, storePath() + ": could not be read at the first try; nothing was done\n");
  EXPECT_EQ(contentOf(storePath()), before);
}

TEST_F(EntryCommands, WorkOnAStoreThatHoldsNoItems) {
  writeItemStore({});
  EXPECT_EQ(runWell({"list"}).output, "");
  PropertyListDictionary strange;
  strange.set("E1", "no item");
  writeItemStore(strange);
  EXPECT_EQ(runWell({"list"}).output, "");
  runWell({"edit", "E2", "--title", "T"});
  EXPECT_EQ(store().size(), 2U);
}

TEST_F(EntryCommands, WaitForNobodyWhenTheyOnlyRead) {
  class Locked : public ReportingEnvironment {
   public:
    using ReportingEnvironment::ReportingEnvironment;
    int openFile(const std::string& path, int flags, mode_t mode, int* descriptor) override {
      EXPECT_EQ(path.find("EPGItems.plist") == std::string::npos && path.find("Tags.plist") == std::string::npos, false)
          << path;
      return ReportingEnvironment::openFile(path, flags, mode, descriptor);
    }
  };
  useEnvironment([](Messages& messages) { return std::make_unique<Locked>(messages); });
  runWell({"list"});
  runWell({"configurations"});
  runWell({"show", "E1"});
  runWell({"edit", "E1", "--tag", "Live", "--dry-run"});
}

}  // namespace epg::test
