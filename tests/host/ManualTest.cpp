#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/manual/Documents.h"
#include "host/manual/Options.h"
#include "host/manual/Roff.h"
#include "host/manual/ShellText.h"

namespace epg::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

ArgumentDescription argument(std::vector<std::string> names, ValueKind kind, const std::string& description) {
  return {std::move(names), kind == ValueKind::None ? "" : "X", description, kind, false};
}

/// Two commands that share a paragraph, with texts that every format has to take care of.
ProgramDescription trickyDescription() {
  ProgramDescription description;
  description.program = {"dorvaselin",
                         "Tricky: it's all here.",
                         {argument({"-h", "--help"}, ValueKind::None, "Help")},
                         {},
                         {"Of the program."}};
  for (const char* name : {"first", "second"}) {
    CommandDescription command{name, "It's [one]: C:\\new; and more", description.program.options, {}, {}};
    command.options.push_back(argument({"--odd"}, ValueKind::Text, "Isn't\n.SH it?"));
    command.positionals.push_back({{"ID"}, "", "'quoted", ValueKind::Entry, true});
    command.paragraphs = {"Of the program.", std::string("Only of ") + name, "Shared by all."};
    description.commands.push_back(std::move(command));
  }
  return description;
}

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t found = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
  return found;
}

}  // namespace

TEST(Roff, EscapesWhatPrintersTakeForSomethingElse) {
  EXPECT_EQ(roffText("--data-folder"), "\\-\\-data\\-folder");
  EXPECT_EQ(roffText("\\n"), "\\(rsn");
  EXPECT_EQ(roffText("`a' \"b\" ^ ~"), "\\(gaa\\(aq \\(dqb\\(dq \\(ha \\(ti");
  EXPECT_EQ(roffText("caf\xC3\xA9 \xF0\x9F\x93\xBA"), "caf\\[u00E9] \\[u1F4FA]");
}

TEST(Roff, LetsNoLineBeARequest) {
  EXPECT_EQ(roffText(".SH a\n.b\n'c\n d. .e"), "\\&.SH a\n\\&.b\n\\(aqc\n\\& d. .e");
  EXPECT_EQ(roffBold(".-"), "\\fB\\&.\\-\\fP");
}

TEST(ShellText, QuotesForShells) {
  EXPECT_EQ(shellQuoted("a b"), "'a b'");
  EXPECT_EQ(shellQuoted("it's $HOME"), "'it'\\''s $HOME'");
  EXPECT_EQ(briefly("One; two; three"), "One");
  EXPECT_EQ(briefly("One"), "One");
}

TEST(ManualOptions, TellsWhichTakeAValueOnce) {
  EXPECT_THAT(optionsWithValue(trickyDescription()), ElementsAre("--odd"));
}

TEST(ManualPage, SaysOnceWhatSeveralCommandsSay) {
  const std::string page = manualPage(trickyDescription());
  EXPECT_EQ(count(page, "Shared by all."), 1U);
  EXPECT_EQ(count(page, "Of the program."), 1U);
  EXPECT_EQ(count(page, "Only of first"), 1U);
  EXPECT_EQ(count(page, "Only of second"), 1U);
  EXPECT_LT(page.find("Only of second"), page.find("\n.SH LISTINGS AND IDS\nShared by all.\n"));
  EXPECT_LT(page.find("Shared by all."), page.find("\n.SH EXIT STATUS\nOf the program.\n"));
}

TEST(ManualPage, EscapesEveryText) {
  const std::string page = manualPage(trickyDescription());
  EXPECT_THAT(page, HasSubstr("\ndorvaselin \\- it\\(aqs all here\n"));
  EXPECT_THAT(page, HasSubstr("\nIt\\(aqs [one]: C:\\(rsnew; and more.\n"));
  EXPECT_THAT(page, HasSubstr("\n\\fB\\-\\-odd\\fP \\fIX\\fP\nIsn\\(aqt\n\\&.SH it?\n"));
  EXPECT_THAT(page, Not(HasSubstr("\n.SH it?")));
  EXPECT_THAT(page, HasSubstr("[\\fB\\-\\-odd\\fP \\fIX\\fP] \\fIID\\fP...\n"));
}

TEST(Completions, QuoteEveryText) {
  EXPECT_THAT(zshCompletion(trickyDescription()), HasSubstr("'first:It'\\''s [one]: C:\\new'\n"));
  EXPECT_THAT(zshCompletion(trickyDescription()), HasSubstr("'(--odd)--odd=[Isn'\\''t\n.SH it?]:X: '"));
  EXPECT_THAT(fishCompletion(trickyDescription()), HasSubstr(" -a first -d 'It\\'s [one]: C:\\\\new'\n"));
  EXPECT_THAT(bashCompletion(trickyDescription()), HasSubstr("\n    first) REPLY='-h --help --odd' ;;\n"));
}

}  // namespace epg::test
