#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "store/ItemStoreFile.h"
#include "tests/host/CommandTest.h"

namespace epg::test {

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

class CommandLine : public CommandTest {
 protected:
  /// The IDs that `show` was understood to be given: each of them is unknown and told.
  std::vector<std::string> understoodIDs(const std::vector<std::string>& ids) {
    std::vector<std::string> arguments = {"show"};
    arguments.insert(arguments.end(), ids.begin(), ids.end());
    std::vector<std::string> understood;
    for (const std::string& line : linesOf(runWell(arguments).messages)) {
      understood.push_back(line.substr(0, line.find(": no such entry")));
    }
    return understood;
  }
};

const std::vector<std::string> commandNames = {"import",    "export", "configurations", "list", "remove",
                                               "duplicate", "check",  "show",           "edit"};

}  // namespace

TEST_F(CommandLine, HasHelpEverywhere) {
  const CommandResult all = runWell({"--help"});
  for (const std::string& command : commandNames) {
    EXPECT_THAT(all.output, HasSubstr("\n  " + command + " ")) << command;
    for (const char* help : {"--help", "-h"}) {
      const CommandResult own = runWell({command, help});
      EXPECT_THAT(own.output, HasSubstr("Usage: dorvaselin " + command)) << command;
      EXPECT_EQ(own.messages, "");
    }
  }
  EXPECT_FALSE(exists(dataFolder()));
}

TEST_F(CommandLine, TellsItsVersionEverywhere) {
  const std::string version = runWell({"--version"}).output;
  EXPECT_THAT(version, MatchesRegex("dorvaselin [0-9]+\\.[0-9]+\\.[0-9]+\n"));
  for (const std::string& command : commandNames) {
    const CommandResult own = runWell({command, "--version"});
    EXPECT_EQ(own.output, version) << command;
    EXPECT_EQ(own.messages, "");
  }
  EXPECT_EQ(runWell({"--version", "edit", "A", "--title", "T"}).output, version);
  EXPECT_EQ(understoodIDs({"--", "--version"}), std::vector<std::string>{"--version"});
  EXPECT_FALSE(exists(dataFolder()));
}

TEST_F(CommandLine, EndsWithTwoWhereItIsWrong) {
  const std::vector<std::string> wrong[] = {{},
                                            {"lst"},
                                            {"List"},
                                            {"--data-folder"},
                                            {"--data-folder", "", "list"},
                                            {"--no-such-option", "list"},
                                            {"list", "superfluous"},
                                            {"list", "--replace"},
                                            {"import"},
                                            {"import", "a", "b"},
                                            {"export"},
                                            {"export", "a", "--configuration"},
                                            {"remove"},
                                            {"duplicate", "A"},
                                            {"duplicate", "A", "B", "C"},
                                            {"check"},
                                            {"show"},
                                            {"edit", "--title", "T"},
                                            {"edit", "A", "--title"},
                                            {"edit", "A", "--title", "T", "--title", "U"},
                                            {"show", "-", "-"}};
  for (const std::vector<std::string>& arguments : wrong) {
    const CommandResult result = run(arguments);
    EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
    EXPECT_NE(result.messages, "") << testing::PrintToString(arguments);
    EXPECT_EQ(result.output, "") << testing::PrintToString(arguments);
  }
  EXPECT_FALSE(exists(dataFolder()));
}

TEST_F(CommandLine, AsksForACommandAsTheHelpCallsIt) {
  EXPECT_EQ(run({}).messages, "a COMMAND is required; --help lists them\n");
  EXPECT_EQ(run({"--data-folder", dataFolder()}).messages, "a COMMAND is required; --help lists them\n");
}

TEST_F(CommandLine, RefusesAnEmptyFileName) {
  EXPECT_EQ(run({"import", ""}).messages, "GUIDE is empty; it must name a file\n");
  for (const char* command : {"import", "export", "check"}) {
    const CommandResult result = run({command, ""});
    EXPECT_EQ(result.status, 2) << command;
    EXPECT_THAT(result.messages, HasSubstr(" is empty; it must name a file\n")) << command;
  }
  EXPECT_FALSE(exists(dataFolder()));
}

TEST_F(CommandLine, NamesACommandThatThereIsNot) {
  EXPECT_EQ(run({"lst", "x"}).messages, "there is no command \"lst\"; --help lists them\n");
  EXPECT_EQ(run({"--", "[x]"}).messages, "there is no command \"[x]\"; --help lists them\n");
}

TEST_F(CommandLine, RefusesIDsAndTextsThatAreNotUTF8) {
  for (const char* argument : {"\xFF", "caf\xE9", "\xED\xA0\x80", "\xC0\xAF"}) {
    const std::vector<std::string> all[] = {{"edit", "A", "--title", argument},
                                            {"edit", "A", "--description", argument},
                                            {"edit", "A", "--image-url", argument},
                                            {"edit", "A", "--tag", argument},
                                            {"edit", "A", "--untag", argument},
                                            {"edit", "A", argument},
                                            {"show", "--", argument},
                                            {"remove", argument},
                                            {"duplicate", "A", argument},
                                            {"duplicate", argument, "A"}};
    for (const std::vector<std::string>& arguments : all) {
      const CommandResult result = run(arguments);
      EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments);
      EXPECT_THAT(result.messages, HasSubstr("is not UTF-8")) << testing::PrintToString(arguments);
    }
  }
  EXPECT_THAT(run({"edit", "caf\xE9"}).messages, HasSubstr("caf\\xE9"));
  EXPECT_FALSE(exists(dataFolder()));
}

TEST_F(CommandLine, TakesFileNamesOfAnyBytes) {
  const std::string folder = file("caf\xE9");
  const std::string guide = write("g\xFFide.xml", "<tv><programme start='2001'><title>T</title></programme></tv>");
  EXPECT_EQ(runWell({"import", guide, "--data-folder", folder}).output, "1 programme, 1 new entry, 0 kept entries\n");
  EXPECT_TRUE(exists(folder + "/EPGItems.plist"));
  configureExport("Evening");
  writeFile(dataFolder() + "/\xE9vening.epgconf", contentOf(dataFolder() + "/Evening.epgconf"));
  EXPECT_EQ(run({"check", guide}).status, 1);
  runWell({"export", guide, "--configuration", "\xE9vening"});
  EXPECT_THAT(run({"import", file("none\xFF")}).messages, HasSubstr("none\\xFF: No such file or directory"));
}

TEST_F(CommandLine, DoesNotLetAnArgumentSteerTheTerminal) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"\x1B[2J"}, {"list", "\x1B[2J"}, {"list", "--\x1B[2J"}, {"import", "\x1B[2J"}}) {
    EXPECT_THAT(run(arguments).messages, AllOf(HasSubstr("\\x1B[2J"), Not(HasSubstr("\x1B"))));
  }
}

TEST_F(CommandLine, TakesEveryIDAsItIs) {
  const std::vector<std::string> ids = {"[a,b]", "[]", "{}",  "++",       "%%", "list", "edit",
                                        "a b",   "=",  "a=b", "\xC3\xA9", "5",  "-5"};
  EXPECT_EQ(understoodIDs(ids), ids);
  for (const std::string& id : ids) EXPECT_EQ(understoodIDs({id}), std::vector<std::string>{id});
}

TEST_F(CommandLine, NamesAnOptionThatThereIsNotAndSaysHowToNameSuchAnID) {
  const std::string rest = "; --help lists them. An ID or a file name that begins with - goes behind --\n";
  EXPECT_EQ(run({"show", "-abc"}).messages, "there is no option \"-abc\"" + rest);
  EXPECT_EQ(run({"show", "A", "-abc"}).messages, "there is no option \"-abc\"" + rest);
  EXPECT_EQ(run({"edit", "A", "--titel", "T"}).messages, "there is no option \"--titel\"" + rest);
  EXPECT_EQ(run({"import", "-x.xml"}).messages, "there is no option \"-x.xml\"" + rest);
  EXPECT_EQ(run({"list", "--all"}).messages, "there is no option \"--all\"; --help lists them\n");
  EXPECT_EQ(run({"--all"}).messages, "there is no option \"--all\"; --help lists them\n");
  EXPECT_THAT(run({"show"}).messages, HasSubstr("ID is required"));
}

TEST_F(CommandLine, TakesADashForAnIDBehindTwoDashesOnly) {
  EXPECT_EQ(understoodIDs({"--", "-"}), std::vector<std::string>{"-"});
  EXPECT_EQ(linesOf(runWell({"show", "-", "--", "-", "-"}, "one\n").messages),
            (std::vector<std::string>{"one: no such entry; the editor shows it empty",
                                      "-: no such entry; the editor shows it empty"}));
  runWell({"edit", "--title", "Dash", "--", "-"});
  EXPECT_EQ(runWell({"list"}).output, "-\tDash\n");
  runWell({"remove", "--", "-"});
  EXPECT_EQ(runWell({"list"}).output, "");
}

TEST_F(CommandLine, TakesIDsThatLookLikeOptionsBehindTwoDashes) {
  EXPECT_EQ(understoodIDs({"A", "--", "--title", "-x", "--tag="}),
            (std::vector<std::string>{"A", "--title", "-x", "--tag="}));
}

TEST_F(CommandLine, TakesEveryTextAsItIs) {
  for (const char* title :
       {"[a,b]", "{}", "%%", "++", "--tag", "--", "-", "-x", "list", "", "a=b", "=", "\"quoted\"", "$HOME"}) {
    EXPECT_EQ(linesOf(runWell({"edit", "A", "--title", title, "--dry-run"}).output)[1],
              std::string("Title:") + (*title == '\0' ? "" : " ") + title);
    EXPECT_EQ(linesOf(runWell({"edit", "A", "--title=" + std::string(title), "--dry-run"}).output)[1],
              std::string("Title:") + (*title == '\0' ? "" : " ") + title);
  }
}

TEST_F(CommandLine, TakesTheValueOfEveryOptionAsItIs) {
  const std::string events = write("events.plist", "<plist><array/></plist>");
  EXPECT_EQ(run({"edit", "E1", "--dry-run", "--tag", "--help"}).messages, "the tag catalogue has no \"--help\"\n");
  EXPECT_EQ(run({"edit", "E1", "--dry-run", "--untag", "-h"}).messages, "the tag catalogue has no \"-h\"\n");
  EXPECT_THAT(run({"export", events, "--configuration", "--help"}).messages,
              HasSubstr("there is no export configuration \"--help\""));
  EXPECT_EQ(run({"list", "--data-folder", "--help"}).messages, "--help: there is no such data folder\n");
}

TEST_F(CommandLine, DoesNotTakeWhatFollowsAnEmptyTextForIt) {
  const std::vector<std::string> lines =
      linesOf(runWell({"edit", "A", "--title=", "--tag", "Live", "--dry-run"}).output);
  EXPECT_EQ(lines[1], "Title:");
  EXPECT_EQ(lines[4], "[x] Live");
}

TEST_F(CommandLine, TakesOneNameForEachTagOption) {
  const std::vector<std::string> lines =
      linesOf(runWell({"edit", "--tag", "Live", "A", "--tag", "News", "B", "--dry-run"}).output);
  EXPECT_EQ(lines[0], "Would be a new entry: A");
  EXPECT_EQ(lines[1], "Would be a new entry: B");
}

TEST_F(CommandLine, TakesTheDataFolderBeforeAndBehindTheCommand) {
  writeItemStore(storeOf({item("E1", {{"title", "One"}})}));
  EXPECT_EQ(runWell({"--data-folder", dataFolder(), "list"}).output, "E1\tOne\n");
  EXPECT_EQ(runWell({"list", "--data-folder", dataFolder()}).output, "E1\tOne\n");
  EXPECT_EQ(runWell({"--data-folder=" + dataFolder() + "/", "list"}).output, "E1\tOne\n");
}

TEST_F(CommandLine, RefusesADataFolderThatIsAFile) {
  const std::string path = write("file", "x");
  const std::vector<std::string> all[] = {{"list"}, {"configurations"}, {"edit", "A"}, {"remove", "A"}, {"show", "A"}};
  for (std::vector<std::string> arguments : all) {
    arguments.insert(arguments.begin(), {"--data-folder", path});
    const CommandResult result = run(arguments);
    EXPECT_EQ(result.status, 1) << arguments[2];
    EXPECT_THAT(result.messages, HasSubstr("Not a directory")) << arguments[2];
  }
  EXPECT_EQ(contentOf(path), "x");
}

}  // namespace epg::test
