#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "store/ItemStoreFile.h"
#include "tests/host/CommandTest.h"

namespace epg::test {

namespace {

using testing::HasSubstr;

/// show and edit.
class EditCommand : public CommandTest {
 protected:
  EditCommand() {
    writeItemStore(storeOf({item("A", {{"title", "Alpha"}, {"description", "Same"}, {"tags", names({"Live", "News"})}}),
                            item("B", {{"title", "Beta"}, {"description", "Same"}, {"tags", names({"News", "Old"})}}),
                            item("C", {{"title", "Alpha"}, {"extra", PropertyList::fromBoolean(true)}})}));
  }

  PropertyListDictionary entry(const std::string& id) {
    const PropertyListDictionary all = store();
    const PropertyList* const value = all.find(id);
    return value && value->asDictionary() ? *value->asDictionary() : PropertyListDictionary();
  }
};

}  // namespace

TEST_F(EditCommand, ShowOneEntry) {
  EXPECT_EQ(
      runWell({"show", "A"}).output,
      "Title: Alpha\nDescription: Same\nImage URL:\n[x] Live\n[ ] Repeat\n[x] News\n[ ] News Magazine\n[ ] Sport\n");
}

TEST_F(EditCommand, ShowSeveralEntriesAtOnce) {
  EXPECT_EQ(
      runWell({"show", "A", "B"}).output,
      "Title: <Multiple Values>\nDescription: Same\nImage URL:\n[-] Live\n[ ] Repeat\n[x] News\n[ ] News Magazine\n"
      "[ ] Sport\n");
}

TEST_F(EditCommand, ShowAnIDWithoutEntryAsTheEditorDoes) {
  const CommandResult result = runWell({"show", "new\x1B"});
  EXPECT_EQ(result.messages, "new\\x1B: no such entry; the editor shows it empty\n");
  EXPECT_EQ(linesOf(result.output)[0], "Title:");
  EXPECT_EQ(store().size(), 3U);
}

TEST_F(EditCommand, ShowTextsOnOneLine) {
  writeItemStore(storeOf({item("A", {{"description", "Two\nlines \\ and \xC2\x9B"}})}));
  EXPECT_THAT(linesOf(runWell({"show", "A"}).output),
              testing::Contains("Description: Two\\nlines \\\\ and \\xC2\\x9B"));
}

TEST_F(EditCommand, ShowTheFieldsWhereThereIsNoCatalogue) {
  useResourceFolder(file("none"));
  const CommandResult result = runWell({"show", "A"});
  EXPECT_EQ(result.output, "Title: Alpha\nDescription: Same\nImage URL:\n");
  EXPECT_THAT(result.messages, HasSubstr("no tag catalogue was found in " + file("none")));
}

TEST_F(EditCommand, TakesIDsFromStandardInput) {
  EXPECT_EQ(runWell({"show", "-"}, "A\nB\n").output, runWell({"show", "A", "B"}).output);
  runWell({"edit", "-", "--title", "Both"}, "A\nB\n");
  EXPECT_EQ(*entry("A").find("title"), PropertyList("Both"));
  EXPECT_EQ(*entry("B").find("title"), PropertyList("Both"));
}

TEST_F(EditCommand, SetsTexts) {
  EXPECT_EQ(runWell({"edit", "A", "--title", "New", "--description", "", "--image-url", "http://i"}).output,
            "1 entry edited\n");
  EXPECT_EQ(
      entry("A"),
      item("A", {{"title", "New"}, {"description", ""}, {"imageURL", "http://i"}, {"tags", names({"Live", "News"})}}));
}

TEST_F(EditCommand, LeavesFieldsThatAreNotGivenAsAnOperatorLeavesThem) {
  // The descriptions are equal and written back; the image URLs are both absent and become empty; the titles differ
  // and each stays.
  runWell({"edit", "A", "B", "--tag", "Sport"});
  EXPECT_EQ(entry("A"), item("A", {{"title", "Alpha"},
                                   {"description", "Same"},
                                   {"imageURL", ""},
                                   {"tags", names({"Live", "News", "Sport"})}}));
  EXPECT_EQ(
      entry("B"),
      item("B",
           {{"title", "Beta"}, {"description", "Same"}, {"imageURL", ""}, {"tags", names({"News", "Old", "Sport"})}}));
}

TEST_F(EditCommand, GivesAllEntriesTheTextThatTheFirstWithOneHas) {
  writeItemStore(storeOf({item("A", {}), item("B", {{"imageURL", "X"}})}));
  runWell({"edit", "A", "B", "--tag", "Live"});
  EXPECT_EQ(*entry("A").find("imageURL"), PropertyList("X"));
}

TEST_F(EditCommand, TurnsTagsOnAndOff) {
  runWell({"edit", "A", "B", "C", "--tag", "Live", "--tag", "Repeat", "--untag", "News"});
  EXPECT_EQ(*entry("A").find("tags"), names({"Live", "Repeat"}));
  EXPECT_EQ(*entry("B").find("tags"), names({"Old", "Live", "Repeat"}));
  EXPECT_EQ(*entry("C").find("tags"), names({"Live", "Repeat"}));
}

TEST_F(EditCommand, KeepsWhatItDoesNotKnow) {
  runWell({"edit", "C", "--title", "x"});
  EXPECT_EQ(*entry("C").find("extra"), PropertyList::fromBoolean(true));
}

TEST_F(EditCommand, CannotEmptyTextsThatDifferAndSaysSo) {
  const CommandResult result = runWell({"edit", "A", "B", "--title", "", "--description", ""});
  EXPECT_EQ(result.messages,
            "the entries differ in their titles; an empty text leaves each as it is (a text that they share can be "
            "emptied)\n");
  EXPECT_EQ(*entry("A").find("title"), PropertyList("Alpha"));
  EXPECT_EQ(*entry("A").find("description"), PropertyList(""));
}

TEST_F(EditCommand, MakesNewEntriesAndSaysSo) {
  const CommandResult result = runWell({"edit", "N1", "A", "N\n2", "N1", "--title", "T"});
  EXPECT_EQ(result.output, "New entry: N1\nNew entry: N\\n2\n3 entries edited\n");
  EXPECT_EQ(entry("N1"), item("N1", {{"title", "T"}, {"imageURL", ""}}));
}

TEST_F(EditCommand, RefusesNewEntriesThatTheFileWouldNotGiveBack) {
  const std::string before = contentOf(storePath());
  EXPECT_EQ(run({"edit", "A", "", "--title", "T"}).status, 1);
  EXPECT_EQ(run({"edit", "-", "--title", "T"}, "A\nB\\x01\n").messages,
            "B\\x01: an entry cannot be saved under an ID with such control characters\n");
  EXPECT_EQ(contentOf(storePath()), before);
}

TEST_F(EditCommand, RefusesTagsOutsideTheCatalogueAndNamesTheNearOnes) {
  const std::string before = contentOf(storePath());
  const CommandResult result = run({"edit", "A", "--title", "T", "--tag", "live", "--untag", "Old", "--tag", "Sport"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.messages, "the tag catalogue has no \"live\"; near it: \"Live\"\n");
  EXPECT_EQ(run({"edit", "A", "--untag", "Old"}).messages, "the tag catalogue has no \"Old\"\n");
  EXPECT_EQ(contentOf(storePath()), before);
}

TEST_F(EditCommand, NamesWhatIsWrongWithACatalogue) {
  const std::string path = file("resources/Tags.plist");
  const std::pair<const char*, const char*> catalogues[] = {
      {"<plist><dict>\n<key>tags</key>\n<array><string>Live</array>", ": not a property list: line 3, column "},
      {"<plist><array/></plist>", ": a property list, but its top level is not a dictionary\n"},
      {"<plist><dict><key>Tags</key><array/></dict></plist>", ": no tag catalogue, it has no \"tags\"\n"},
      {"<plist><dict><key>tags</key><string/></dict></plist>", ": no tag catalogue, its \"tags\" are no array\n"},
      {"<plist><dict><key>tags</key><array><true/></array></dict></plist>", ": a tag catalogue without tags\n"}};
  const std::string before = contentOf(storePath());
  for (const auto& [content, problem] : catalogues) {
    writeFile(path, content);
    const CommandResult edit = run({"edit", "A", "--tag", "Live"});
    EXPECT_EQ(edit.status, 1);
    EXPECT_THAT(edit.messages, testing::StartsWith(path + problem));
    EXPECT_EQ(runWell({"show", "A"}).messages, edit.messages);
    EXPECT_EQ(run({"check", write("events.plist", "<plist><array/></plist>")}).messages, edit.messages);
  }
  EXPECT_EQ(contentOf(storePath()), before);
}

TEST_F(EditCommand, RefusesTagsWhereThereIsNoCatalogue) {
  useResourceFolder(file("none"));
  EXPECT_THAT(run({"edit", "A", "--tag", "Live"}).messages, HasSubstr("no tag catalogue was found"));
  runWell({"edit", "A", "--title", "T"});
}

TEST_F(EditCommand, RefusesContradictionsAndTextsThatCannotBeKept) {
  const std::string before = contentOf(storePath());
  EXPECT_EQ(run({"edit", "A", "--tag", "Live", "--untag", "Live"}).status, 2);
  const CommandResult result = run({"edit", "A", "--description", "a\x1B[2J"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.messages, "the text \"a\\x1B[2J\" holds control characters that no entry can keep\n");
  EXPECT_EQ(contentOf(storePath()), before);
}

TEST_F(EditCommand, ShowsWhatWouldComeOfItAndCommitsNothing) {
  const std::string before = contentOf(storePath());
  const CommandResult result =
      runWell({"edit", "A", "B", "--title", "T", "--tag", "Live", "--untag", "News", "--dry-run"});
  EXPECT_EQ(result.output,
            "Title: T\nDescription: Same\nImage URL:\n[x] Live\n[ ] Repeat\n[ ] News\n[ ] News Magazine\n[ ] Sport\n");
  EXPECT_EQ(linesOf(runWell({"edit", "A", "B", "--dry-run"}).output)[0], "Title: <Multiple Values>");
  EXPECT_EQ(linesOf(runWell({"edit", "N", "--dry-run"}).output)[0], "Would be a new entry: N");
  EXPECT_EQ(contentOf(storePath()), before);
}

TEST_F(EditCommand, TellsOfADataFolderThatItMakesOrWouldMake) {
  EXPECT_EQ(runWell({"edit", "N", "--dry-run", "--data-folder", file("none")}).messages,
            "Would be a new data folder: " + file("none") + "\n");
  EXPECT_FALSE(exists(file("none")));
  EXPECT_EQ(runWell({"edit", "N", "--data-folder", file("none")}).messages, "New data folder: " + file("none") + "\n");
  EXPECT_TRUE(exists(file("none/EPGItems.plist")));
}

TEST_F(EditCommand, ShowsTheSameBeforeAndAfterACommit) {
  const std::vector<std::string> edit = {"edit", "A", "B", "C", "--description", "D", "--tag", "Sport"};
  std::vector<std::string> rehearsal = edit;
  rehearsal.emplace_back("--dry-run");
  const std::string expected = runWell(rehearsal).output;
  runWell(edit);
  EXPECT_EQ(runWell({"show", "A", "B", "C"}).output, expected);
}

TEST_F(EditCommand, SetsTheIDOfADuplicateRight) {
  runWell({"duplicate", "A", "D"});
  EXPECT_EQ(*entry("D").find("uniqueID"), PropertyList("A"));
  runWell({"edit", "D", "--title", "D"});
  EXPECT_EQ(*entry("D").find("uniqueID"), PropertyList("D"));
}

TEST_F(EditCommand, EditsAHundredThousandEntriesAtOnce) {
  std::vector<PropertyListDictionary::Entry> entries;
  std::string ids;
  for (int i = 0; i < 100000; ++i) {
    const std::string id = "E" + std::to_string(i);
    entries.emplace_back(id, item(id, {{"title", "Title " + std::to_string(i)}, {"tags", names({"News"})}}));
    ids += id + "\n";
  }
  writeItemStore(PropertyListDictionary(std::move(entries)));
  const CommandResult result = runWell({"edit", "-", "--description", "D", "--tag", "Live"}, ids + "new\n");
  EXPECT_EQ(result.output, "New entry: new\n100001 entries edited\n");
  const PropertyListDictionary after = store();
  EXPECT_EQ(after.size(), 100001U);
  EXPECT_EQ(
      *after.find("E99999"),
      PropertyList(
          item("E99999",
               {{"title", "Title 99999"}, {"description", "D"}, {"imageURL", ""}, {"tags", names({"News", "Live"})}})));
}

TEST_F(EditCommand, LeavesWhatIsNoEntryAsItIs) {
  PropertyListDictionary content;
  content.set("b", "kept by another tool");
  writeItemStore(content);
  const CommandResult result = run({"edit", "b", "--title", "X"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.messages, HasSubstr("under b that is no entry"));
  EXPECT_EQ(*store().find("b")->asString(), "kept by another tool");
}

}  // namespace epg::test
