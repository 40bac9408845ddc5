#include "host/terminal/LocalTimeZone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <utility>

#include "host/terminal/LocalTimeText.h"
#include "platform/Environment.h"
#include "platform/LocalCalendar.h"
#include "tests/host/CommandTest.h"
#include "tests/host/EnvironmentVariable.h"
#include "tests/host/RefusalOf.h"
#include "tests/support/TimeZone.h"

namespace epg::test {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

/// Empty where the zone is taken.
std::string zoneRefusal(const std::string& zone) {
  const TimeZone used(zone);
  return refusalOf([] { refuseUnknownTimeZone(Environment::standard()); });
}

/// "+0100": how far from UTC the system is there on 14 November 2026.
std::string offsetIn(const std::string& zone) {
  const TimeZone used(zone);
  const std::string text = localTimeText(LocalCalendar(), Instant::fromUnixTime(1794636000));
  return text.substr(text.size() - 5);
}

/// One part of a zone file that is in UTC, with leap seconds that nobody reads; `version` is 0 where it is the only
/// one.
std::string zonePart(char version, std::uint8_t leapSeconds) {
  // Times and counts of the second part have 8 bytes, of the only one 4; here its changes are none.
  std::string header = std::string("TZif") + version + std::string(15, '\0');
  for (const std::uint8_t count :
       {std::uint8_t{1}, std::uint8_t{1}, leapSeconds, std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{4}}) {
    header += std::string(3, '\0') + static_cast<char>(count);
  }
  return header + std::string(6, '\0') + std::string("UTC\0", 4) + std::string(std::size_t{8} * leapSeconds, '\0') +
         std::string(2, '\0');
}

/// A zone file of two parts, with a change and its kinds of time in the first so that the second does not follow soon.
std::string zoneFile(std::uint8_t leapSeconds, std::uint8_t leapSecondsOfSecondPart) {
  std::string first = zonePart('2', leapSeconds);
  first[35] = 3;  // Changes: five bytes each.
  first.insert(44, 15, '\0');
  return first + zonePart('2', leapSecondsOfSecondPart) + std::string(std::size_t{4} * leapSecondsOfSecondPart, '\0') +
         "\nUTC0\n";
}

/// Finds the machine's zone under another name.
class MachineIn : public Environment {
 public:
  explicit MachineIn(std::string zone) : zone_(std::move(zone)) {}
  int openFile(const std::string& path, int flags, mode_t mode, int* descriptor) override {
    return Environment::openFile(path == "/etc/localtime" ? zone_ : path, flags, mode, descriptor);
  }

 private:
  std::string zone_;
};

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
    EXPECT_EQ(zoneRefusal(zone), "not refused") << zone;
    EXPECT_EQ(offsetIn(zone), offset) << zone;
  }
}

TEST(LocalTimeZone, MayBeLeftToTheMachine) {
  const EnvironmentVariable none("TZ", std::nullopt);
  EXPECT_NO_THROW(refuseUnknownTimeZone(Environment::standard()));
  EXPECT_EQ(zoneRefusal("/etc/localtime"), "not refused");
  EXPECT_EQ(zoneRefusal(":/etc/localtime"), "not refused");
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
    EXPECT_THAT(zoneRefusal(zone), testing::StartsWith("TZ=" + std::string(zone) + ": no such time zone")) << zone;
  }
  EXPECT_THAT(zoneRefusal(std::string(1 << 20, 'A') + "0"), HasSubstr("no such time zone"));
}

TEST(LocalTimeZone, IsLookedForWhereTheSystemDoes) {
  const TemporaryFolder folder;
  folder.makeFolder("Harbour");
  writeFile(folder.file("Harbour/Good"), zoneFile(0, 0));
  writeFile(folder.file("Harbour/Bad"), "# a list of zones");
  const EnvironmentVariable zones("TZDIR", folder.path());
  EXPECT_EQ(zoneRefusal("Harbour/Good"), "not refused");
  EXPECT_THAT(zoneRefusal("Harbour/Bad"), HasSubstr(folder.path()));
  EXPECT_THAT(zoneRefusal("Europe/Berlin"), HasSubstr(folder.path()));
}

TEST(LocalTimeZone, IsRefusedWhereItsFileIsCutOff) {
  const TemporaryFolder folder;
  const EnvironmentVariable zones("TZDIR", folder.path());
  const std::string whole = zoneFile(0, 0);
  for (const std::size_t size :
       {std::size_t{4}, std::size_t{43}, std::size_t{44}, whole.size() / 2, whole.size() - 70}) {
    writeFile(folder.file("Cut"), whole.substr(0, size));
    EXPECT_THAT(zoneRefusal("Cut"), HasSubstr("no such time zone")) << size;
  }
  std::string huge = whole;
  huge.replace(20, 24, std::string(24, '\xFF'));
  writeFile(folder.file("Huge"), huge);
  EXPECT_THAT(zoneRefusal("Huge"), HasSubstr("no such time zone"));
  writeFile(folder.file("Old"), zonePart('\0', 0));
  EXPECT_EQ(zoneRefusal("Old"), "not refused");
}

TEST(LocalTimeZone, IsRefusedWhereItCountsLeapSeconds) {
  const TemporaryFolder folder;
  const EnvironmentVariable zones("TZDIR", folder.path());
  const std::string words =
      ": a time zone that counts leap seconds, as the system's clock does not; times would be wrong";
  writeFile(folder.file("Both"), zoneFile(27, 27));
  writeFile(folder.file("Second"), zoneFile(0, 27));
  writeFile(folder.file("First"), zoneFile(27, 0));
  writeFile(folder.file("Old"), zonePart('\0', 27));
  for (const char* name : {"Both", "Second", "First", "Old"}) {
    EXPECT_EQ(zoneRefusal(name), "TZ=" + std::string(name) + words);
    EXPECT_EQ(zoneRefusal(":" + folder.file(name)), "TZ=:" + folder.file(name) + words);
  }
}

TEST(LocalTimeZone, IsRefusedWhereTheMachinesCountsLeapSeconds) {
  const TemporaryFolder folder;
  MachineIn machine(folder.file("localtime"));
  const std::string words =
      "/etc/localtime: a time zone that counts leap seconds, as the system's clock does not; times would be wrong";
  for (const auto& zone : {std::optional<std::string>(), std::optional<std::string>("/etc/localtime")}) {
    const EnvironmentVariable variable("TZ", zone);
    removeAll(folder.file("localtime"));
    EXPECT_NO_THROW(refuseUnknownTimeZone(machine)) << "without the file it is in UTC";
    writeFile(folder.file("localtime"), zoneFile(0, 0));
    EXPECT_NO_THROW(refuseUnknownTimeZone(machine));
    writeFile(folder.file("localtime"), zoneFile(0, 27));
    try {
      refuseUnknownTimeZone(machine);
      ADD_FAILURE() << "not refused";
    } catch (const Refusal& refusal) {
      EXPECT_EQ(refusal.what(), (zone ? "TZ=" : "") + words);
    }
  }
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
