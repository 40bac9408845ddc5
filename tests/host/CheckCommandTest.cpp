#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "store/ItemStoreFile.h"
#include "tests/host/CommandTest.h"
#include "tests/support/TimeZone.h"

namespace epg::test {

namespace {

using testing::HasSubstr;

class CheckCommand : public CommandTest {
 protected:
  CheckCommand() {
    writeItemStore(storeOf({item("E1", {{"title", "One"}, {"description", "D"}, {"tags", names({"Live"})}}),
                            item("E2", {{"title", "Two"}, {"tags", names({"Lvie"})}})}));
  }

  static std::string event(const std::string& id, const std::string& start, const std::string& end) {
    return "<dict><key>eventEPGUniqueID</key><string>" + id +
           "</string><key>eventEPGStartDateTime</key><date>2026-11-14T" + start +
           ":00Z</date><key>eventEPGEndDateTime</key><date>2026-11-14T" + end + ":00Z</date></dict>";
  }
  std::string writeEvents(const std::string& events) const {
    return write("events.plist", "<plist><array>" + events + "</array></plist>");
  }

 private:
  const TimeZone zone_{"Europe/Berlin"};
};

}  // namespace

TEST_F(CheckCommand, FindsNothingWrongWithACompleteDay) {
  const CommandResult result =
      runWell({"check", writeEvents(event("E1", "06:00", "07:00") + event("E1", "07:00", "08:00"))});
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.messages, "");
}

TEST_F(CheckCommand, PrintsTimeIDAndFindingInOrderOfTime) {
  const CommandResult result = run({"check", writeEvents(event("E3", "09:00", "10:00") + event("E2", "06:30", "08:00") +
                                                         event("E1", "06:00", "07:00"))});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output,
            "2026-11-14 07:30:00 +0100\tE2\toverlaps E1, which ends at 2026-11-14 08:00:00 +0100\n"
            "2026-11-14 07:30:00 +0100\tE2\tno description\n"
            "2026-11-14 07:30:00 +0100\tE2\tnot in the tag catalogue: \"Lvie\"\n"
            "2026-11-14 09:00:00 +0100\tE2\tgap of 1:00:00 after this event, until E3\n"
            "2026-11-14 10:00:00 +0100\tE3\tno item: left out of the export\n");
}

TEST_F(CheckCommand, PutsEventsWithoutStartLast) {
  const CommandResult result = run({"check", writeEvents("<dict/>" + event("E3", "09:00", "10:00"))});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output,
            "2026-11-14 10:00:00 +0100\tE3\tno item: left out of the export\n"
            "-\t-\tno start\n-\t-\tno end\n-\t-\tno EPG unique ID: left out of the export\n");
}

TEST_F(CheckCommand, LooksAtTheChannelsOfAGuide) {
  const std::string guide = writeGuide(
      "<channel id='1'><display-name>Channel One</display-name></channel>"
      "<programme start='20261114060000' stop='20261114070000' channel='1'><title>A</title><desc>D</desc></programme>"
      "<programme start='20261114063000' stop='20261114070000' channel='2'><title>B</title><desc>D</desc></programme>"
      "<programme start='20261114063000' stop='20261114070000' channel='1'><title>C</title><desc>D</desc></programme>");
  runWell({"import", guide});
  const CommandResult result = run({"check", guide});
  EXPECT_EQ(result.status, 1);
  ASSERT_EQ(linesOf(result.output).size(), 1U) << result.output;
  EXPECT_THAT(result.output, AllOf(HasSubstr("\toverlaps xmltv-"), HasSubstr("(Channel One)\n")));
}

TEST_F(CheckCommand, CountsWhatItCannotUseAsAFinding) {
  const CommandResult result = run({"check", writeGuide("<programme start='soon'><title>A</title></programme>")});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.messages, HasSubstr("guide.xml: line 3, column 1: programme skipped"));
}

TEST_F(CheckCommand, ChangesNothing) {
  const std::string before = contentOf(storePath());
  run({"check", writeEvents(event("E3", "06:00", "07:00"))});
  EXPECT_EQ(contentOf(storePath()), before);
}

TEST_F(CheckCommand, RefusesWithoutATagCatalogue) {
  useResourceFolder(file("none"));
  const CommandResult result = run({"check", writeEvents("")});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.messages, HasSubstr("no tag catalogue"));
}

TEST_F(CheckCommand, KeepsToOneLineAFinding) {
  const CommandResult result =
      run({"check", writeEvents(event("E\n3", "06:00", "07:00") + event("E\t4", "06:00", "07:00"))});
  EXPECT_EQ(linesOf(result.output).size(), 3U) << result.output;
}

}  // namespace epg::test
