#include "host/LocalTimeZone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "host/LocalTimeText.h"
#include "host/Refusal.h"
#include "platform/Environment.h"
#include "platform/LocalCalendar.h"
#include "tests/host/CommandTest.h"
#include "tests/host/EnvironmentVariable.h"
#include "tests/support/TimeZone.h"

namespace epg::test {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

/// Empty where the zone is taken.
std::string refusalOf(const std::string& zone) {
  const TimeZone used(zone);
  try {
    refuseUnknownTimeZone(Environment::standard());
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return {};
}

/// "+0100": how far from UTC the system is there on 14 November 2026.
std::string offsetIn(const std::string& zone) {
  const TimeZone used(zone);
  const std::string text = localTimeText(LocalCalendar(), Instant::fromUnixTime(1794636000));
  return text.substr(text.size() - 5);
}

class LocalTimeZoneOfCommands : public CommandTest {};

}  // namespace

TEST(LocalTimeZone, MayBeAZoneFileARuleOrUTCAndMeansWhatItSays) {
  const std::pair<const char*, const char*> zones[] = {{"Europe/Berlin", "+0100"},
                                                       {":Europe/Berlin", "+0100"},
                                                       {"/usr/share/zoneinfo/Europe/Berlin", "+0100"},
                                                       {":/usr/share/zoneinfo/Europe/Berlin", "+0100"},
                                                       {"EST5EDT", "-0500"},
                                                       {"CET-1CEST,M3.5.0,M10.5.0/3", "+0100"},
                                                       {":CET-1CEST,M3.5.0,M10.5.0/3", "+0100"},
                                                       {"CET-01:00:00CEST-2,M3.5.0/2:00,M10.5.0/3:00:00", "+0100"},
                                                       {"AAA-1BBB,J60,J300/-1", "+0100"},
                                                       {"AAA-1BBB,0,365/167", "+0200"},
                                                       {"<+03>-3", "+0300"},
                                                       {"<-02>2<-01>,M3.5.0/-1,M10.5.0/0", "-0200"},
                                                       {"IST-5:30", "+0530"},
                                                       {"XXX24", "-2400"},
                                                       {"UTC", "+0000"},
                                                       {"UTC0", "+0000"},
                                                       {"Etc/UTC", "+0000"},
                                                       {"GMT", "+0000"},
                                                       {":", "+0000"},
                                                       {"", "+0000"}};
  for (const auto& [zone, offset] : zones) {
    EXPECT_EQ(refusalOf(zone), "") << zone;
    EXPECT_EQ(offsetIn(zone), offset) << zone;
  }
}

TEST(LocalTimeZone, MayBeLeftToTheMachine) {
  const EnvironmentVariable none("TZ", std::nullopt);
  EXPECT_NO_THROW(refuseUnknownTimeZone(Environment::standard()));
  EXPECT_EQ(refusalOf("/etc/localtime"), "");
  EXPECT_EQ(refusalOf(":/etc/localtime"), "");
}

TEST(LocalTimeZone, IsRefusedWhereItNamesNone) {
  for (const char* zone : {"Europe/Berln",
                           ":Europe/Berln",
                           "europe/berlin",
                           "Europe",
                           "/usr/share/zoneinfo/Europe/Berln",
                           "/usr/share/zoneinfo",
                           "zone.tab",
                           "Europe/Berlin ",
                           " UTC",
                           "+1",
                           "UTC+",
                           "AB-1",
                           "<+3>-3",
                           "<+03-3",
                           "CET-1CEST,M3.5.0",
                           "CET-1CEST,M13.5.0,M10.5.0",
                           "CET-1CEST,M3.6.0,M10.5.0",
                           "CET-1CEST,M3.5.7,M10.5.0",
                           "CET-1CEST,J0,J300",
                           "CET-1CEST,366,300",
                           "CET-1CEST,M3.5.0,M10.5.0/",
                           "CET-1CEST,M3.5.0,M10.5.0/168",
                           "CET-1CEST,M3.5.0,M10.5.0/3x",
                           "CET-25",
                           "CET-1:60"}) {
    EXPECT_THAT(refusalOf(zone), testing::StartsWith("TZ=" + std::string(zone) + ": no such time zone")) << zone;
  }
  EXPECT_THAT(refusalOf(std::string(1 << 20, 'A') + "0"), HasSubstr("no such time zone"));
}

TEST(LocalTimeZone, IsLookedForWhereTheSystemDoes) {
  const TemporaryFolder folder;
  folder.makeFolder("Harbour");
  writeFile(folder.file("Harbour/Good"), "TZif2 and what follows");
  writeFile(folder.file("Harbour/Bad"), "# a list of zones");
  const EnvironmentVariable zones("TZDIR", folder.path());
  EXPECT_EQ(refusalOf("Harbour/Good"), "");
  EXPECT_THAT(refusalOf("Harbour/Bad"), HasSubstr(folder.path()));
  EXPECT_THAT(refusalOf("Europe/Berlin"), HasSubstr(folder.path()));
}

TEST_F(LocalTimeZoneOfCommands, IsRefusedBeforeATimeIsTold) {
  const std::string folder = configureExport("Evening");
  const std::string events = write("events.plist", "<plist><array/></plist>");
  const TimeZone unknown("Europe/Berln");
  for (const char* command : {"export", "check"}) {
    const CommandResult result = run({command, events});
    EXPECT_EQ(result.status, 1) << command;
    EXPECT_EQ(result.messages,
              "TZ=Europe/Berln: no such time zone in /usr/share/zoneinfo, and no rule like "
              "CET-1CEST,M3.5.0,M10.5.0/3; all times would be told in UTC\n")
        << command;
    EXPECT_EQ(result.output, "") << command;
  }
  EXPECT_THAT(namesIn(folder), IsEmpty());
  runWell({"list"});
  runWell({"import", writeGuide("<programme start='2001'><title>T</title></programme>")});
}

}  // namespace epg::test
