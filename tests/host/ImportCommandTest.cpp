#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

#include "host/guide/EPGUniqueID.h"
#include "host/guide/XMLTVGuide.h"
#include "store/ItemStoreFile.h"
#include "tests/host/CommandTest.h"
#include "tests/host/GzipData.h"
#include "tests/host/WholeGuide.h"

namespace epg::test {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

const char* const twoProgrammes =
    "<programme start='20261114060000' stop='20261114063000' channel='one'><title>Kids' Corner</title>"
    "<desc>Q&amp;A</desc><category>News</category><category>Live</category><icon src='http://i/1.png'/></programme>\n"
    "<programme start='20261114063000' stop='20261114070000' channel='one'><title>Bare</title></programme>\n";

class ImportCommand : public CommandTest {
 protected:
  /// The ID of the guide's programme.
  static std::string idOf(const std::string& path, std::size_t index) {
    return epgUniqueID(wholeGuide(contentOf(path), path).programmes.at(index));
  }
};

/// A disk that is full, or fails otherwise, whenever something is written.
class FailingDisk : public ReportingEnvironment {
 public:
  FailingDisk(Messages& messages, int error) : ReportingEnvironment(messages), error_(error) {}
  int writeFile(int /*descriptor*/, const char* /*bytes*/, std::size_t /*size*/, std::size_t* /*written*/) override {
    return error_;
  }

 private:
  int error_;
};

}  // namespace

TEST_F(ImportCommand, MakesAnEntryOfEachProgramme) {
  const std::string guide = writeGuide(twoProgrammes);
  const CommandResult result = runWell({"import", guide});
  EXPECT_EQ(result.output, "2 programmes, 2 new entries, 0 kept entries\n");
  EXPECT_EQ(result.messages, "");
  EXPECT_EQ(store(), storeOf({item(idOf(guide, 0), {{"title", "Kids' Corner"},
                                                    {"description", "Q&A"},
                                                    {"imageURL", "http://i/1.png"},
                                                    {"tags", names({"News", "Live"})}}),
                              item(idOf(guide, 1), {{"title", "Bare"}})}));
}

TEST_F(ImportCommand, MakesTheDataFolderAndThoseAboveIt) {
  runWell({"--data-folder", file("a/b/c"), "import", writeGuide(twoProgrammes)});
  EXPECT_TRUE(exists(file("a/b/c/EPGItems.plist")));
}

TEST_F(ImportCommand, MakesOneEntryOfAProgrammeThatIsShownTwice) {
  const CommandResult result =
      runWell({"import", writeGuide("<programme start='2001' channel='one'><title>T</title></programme>"
                                    "<programme start='2002' channel='two'><title> T </title></programme>")});
  EXPECT_EQ(result.output, "2 programmes, 1 new entry, 0 kept entries\n");
}

TEST_F(ImportCommand, CountsAnEntryOnceHoweverFarApartItsProgrammeIsShown) {
  // Larger than what one thread reads where there are others.
  const std::string description(std::size_t{1} << 17, 'd');
  std::string programmes;
  for (int i = 0; i < 60; ++i) {
    programmes += "<programme start='2001'><title>" + std::to_string(i % 20) + "</title><desc>" + description +
                  "</desc></programme>\n";
  }
  const std::string guide = writeGuide(programmes);
  EXPECT_EQ(runWell({"import", guide}).output, "60 programmes, 20 new entries, 0 kept entries\n");
  const PropertyListDictionary imported = store();
  EXPECT_EQ(imported.size(), 20U);
  EXPECT_EQ(runWell({"import", guide}).output, "60 programmes, 0 new entries, 20 kept entries\n");

  runWell({"remove", idOf(guide, 0)});
  runWell({"edit", idOf(guide, 1), "--title", "Edited"});
  PropertyListDictionary changed = store();
  changed.set(idOf(guide, 2), "no entry");
  writeItemStore(changed);
  const CommandResult result = runWell({"import", guide, "--replace"});
  EXPECT_EQ(result.output, "60 programmes, 1 new entry, 18 kept entries, 1 replaced entry\n");
  EXPECT_EQ(std::count(result.messages.begin(), result.messages.end(), '\n'), 1) << result.messages;
  PropertyListDictionary wanted = imported;
  wanted.set(idOf(guide, 2), "no entry");
  EXPECT_EQ(store(), wanted);
}

TEST_F(ImportCommand, ChangesNothingTheSecondTime) {
  const std::string guide = writeGuide(twoProgrammes);
  runWell({"import", guide});
  const std::string before = contentOf(storePath());
  writeFile(storePath(), before + "\n<!-- not rewritten -->");
  const CommandResult result = runWell({"import", guide});
  EXPECT_EQ(result.output, "2 programmes, 0 new entries, 2 kept entries\n");
  EXPECT_EQ(contentOf(storePath()), before + "\n<!-- not rewritten -->");
  runWell({"import", guide, "--replace"});
  EXPECT_EQ(contentOf(storePath()), before + "\n<!-- not rewritten -->");
}

TEST_F(ImportCommand, LeavesWhatTheOperatorEdited) {
  const std::string guide = writeGuide(twoProgrammes);
  runWell({"import", guide});
  runWell({"edit", idOf(guide, 0), "--title", "Edited"});
  const PropertyListDictionary before = store();
  runWell({"import", guide});
  EXPECT_EQ(store(), before);
}

TEST_F(ImportCommand, ReplacesTheMetadataWhenToldAndNothingElse) {
  const std::string guide = writeGuide(twoProgrammes);
  writeItemStore(
      storeOf({item(idOf(guide, 0), {{"title", "Edited"},
                                     {"description", "Edited"},
                                     {"tags", names({"Sport"})},
                                     {"archiveNumber", PropertyList::fromInteger(7)}}),
               item(idOf(guide, 1), {{"title", "Bare"}, {"description", "Added"}, {"tags", names({"Sport"})}}),
               item("other", {{"title", "Not in the guide"}})}));
  const CommandResult result = runWell({"import", "--replace", guide});
  EXPECT_EQ(result.output, "2 programmes, 0 new entries, 0 kept entries, 2 replaced entries\n");
  EXPECT_EQ(store(),
            storeOf({item(idOf(guide, 0), {{"title", "Kids' Corner"},
                                           {"description", "Q&A"},
                                           {"imageURL", "http://i/1.png"},
                                           {"tags", names({"News", "Live"})},
                                           {"archiveNumber", PropertyList::fromInteger(7)}}),
                     item(idOf(guide, 1), {{"title", "Bare"}}), item("other", {{"title", "Not in the guide"}})}));
}

TEST_F(ImportCommand, KeepsWhatIsInTheStoreBesides) {
  PropertyListDictionary before = storeOf({item("E1", {{"title", "One"}, {"x", PropertyList::fromReal(1.5)}})});
  before.set("no item", "a string");
  writeItemStore(before);
  runWell({"import", writeGuide(twoProgrammes)});
  PropertyListDictionary after = store();
  EXPECT_EQ(after.size(), 4U);
  EXPECT_EQ(*after.find("E1"), *before.find("E1"));
  EXPECT_EQ(*after.find("no item"), *before.find("no item"));
}

TEST_F(ImportCommand, WarnsOfWhatItSkipsAndIsDone) {
  const CommandResult result = runWell(
      {"import", writeGuide("<programme start='2001'/>\n<programme start='2001'><title>T</title></programme>")});
  EXPECT_EQ(result.output, "1 programme, 1 new entry, 0 kept entries\n");
  EXPECT_EQ(result.messages, file("guide.xml") + ": line 3, column 1: programme skipped: it has no title\n");
}

TEST_F(ImportCommand, TouchesNothingWhenTheGuideCannotBeRead) {
  for (const std::string& content : {std::string("<tv>"), std::string("<html/>"), std::string("\x1f\x8b")}) {
    const CommandResult result = run({"import", write("guide.xml", content)});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.messages, HasSubstr(file("guide.xml") + ": "));
    EXPECT_EQ(result.output, "");
  }
  EXPECT_EQ(run({"import", file("none.xml")}).messages, file("none.xml") + ": No such file or directory\n");
  EXPECT_FALSE(exists(dataFolder()));
}

TEST_F(ImportCommand, ReadsACompressedGuide) {
  const std::string guide = write("guide.xml.gz", gzipData("<tv>" + std::string(twoProgrammes) + "</tv>"));
  EXPECT_EQ(runWell({"import", guide}).output, "2 programmes, 2 new entries, 0 kept entries\n");
}

TEST_F(ImportCommand, RefusesAStoreThatCannotBeRead) {
  const std::string guide = writeGuide(twoProgrammes);
  const std::pair<const char*, const char*> stores[] = {
      {"", "not a property list: line 1"},
      {"<plist><dict><key>E1</key>\n<string>cut", "not a property list: line "},
      {"<plist><array/></plist>", "its top level is not a dictionary"},
      {"bplist00", "not a property list: "}};
  for (const auto& [content, problem] : stores) {
    writeItemStore({});
    writeFile(storePath(), content);
    const CommandResult result = run({"import", guide});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.messages, testing::StartsWith(storePath() + ": "));
    EXPECT_THAT(result.messages, HasSubstr(problem));
    EXPECT_EQ(contentOf(storePath()), content);
  }
  removeAll(storePath());
  writeItemStore({});
  removeAll(storePath());
  ASSERT_EQ(run({"--data-folder", file("data/EPGItems.plist/x"), "import", guide}).status, 0);
  EXPECT_EQ(run({"import", guide}).messages, storePath() + ": Not a regular file\n");
}

TEST_F(ImportCommand, ReportsASaveThatFailed) {
  const std::string guide = writeGuide(twoProgrammes);
  writeItemStore(storeOf({item("E1", {{"title", "One"}})}));
  const std::string before = contentOf(storePath());
  useEnvironment([](Messages& messages) { return std::make_unique<FailingDisk>(messages, ENOSPC); });
  const CommandResult result = run({"import", guide});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages, storePath() + ": not saved: No space left on device\n");
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(contentOf(storePath()), before);
  EXPECT_THAT(namesIn(dataFolder()), testing::ElementsAre("EPGItems.plist"));
}

TEST_F(ImportCommand, CountsAnEmptyGuide) {
  EXPECT_EQ(runWell({"import", writeGuide("")}).output, "0 programmes, 0 new entries, 0 kept entries\n");
  EXPECT_THAT(namesIn(dataFolder()), IsEmpty());
}

TEST_F(ImportCommand, SettlesWhereAGuideHoldsWhatTheStoreCannotKeep) {
  const std::string guide = writeGuide(
      "<programme start='2001'><title>a&#1;b</title><desc>c&#x1B;</desc><icon src='d&#xFFFE;'/>"
      "<category>e&#1;</category><category>e&#2;</category><category>f</category></programme>");
  runWell({"import", guide});
  EXPECT_EQ(store(), storeOf({item(idOf(guide, 0), {{"title",
                                                     "a\xEF\xBF\xBD"
                                                     "b"},
                                                    {"description", "c\xEF\xBF\xBD"},
                                                    {"imageURL", "d\xEF\xBF\xBD"},
                                                    {"tags", names({"e\xEF\xBF\xBD", "f"})}})}));
  EXPECT_EQ(runWell({"import", "--replace", guide}).output,
            "1 programme, 0 new entries, 1 kept entry, 0 replaced entries\n");
}

TEST_F(ImportCommand, LeavesWhatIsNoEntryAsItIs) {
  const std::string guide = writeGuide(twoProgrammes);
  const std::string id = idOf(guide, 0);
  PropertyListDictionary before;
  before.set(id, "kept by another tool");
  writeItemStore(before);
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"import", guide}, {"import", guide, "--replace"}}) {
    EXPECT_THAT(runWell(arguments).messages, HasSubstr("the store holds something under " + id + " that is no entry"));
    EXPECT_EQ(*store().find(id), PropertyList("kept by another tool"));
  }
}

TEST_F(ImportCommand, TellsOfADataFolderThatItMakes) {
  const std::string guide = writeGuide(twoProgrammes);
  EXPECT_EQ(runWell({"import", guide, "--data-folder", file("a/b")}).messages,
            "New data folder: " + file("a/b") + "\n");
  EXPECT_EQ(runWell({"import", guide, "--data-folder", file("a/b")}).messages, "");
}

TEST_F(ImportCommand, MakesTwoEntriesOfProgrammesThatDifferInWhatCannotBeRead) {
  const CommandResult result = runWell(
      {"import", writeGuide("<programme start='2001'><title>T</title><sub-title>Caf&eacute;</sub-title></programme>"
                            "<programme start='2002'><title>T</title><sub-title>R&eacute;tro</sub-title></programme>"
                            "<programme start='2003'><title>T</title><sub-title>Caf&eacute;</sub-title></programme>"
                            "<programme start='2004'><title>T</title></programme>")});
  EXPECT_EQ(result.output, "4 programmes, 3 new entries, 0 kept entries\n");
}

}  // namespace epg::test
