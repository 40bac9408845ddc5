#include <time.h>

#include <cstdint>
#include <random>
#include <string>

#import "tests/cocoa/BundleUser.h"

// Local time in the bundle is that of Foundation's default time zone, whatever the C library takes for the zone.

namespace {

/// The platform's default zone and the C library's, which are another at the end.
class BundleZone : public BundlePlugin {
 protected:
  void SetUp() override {
    BundlePlugin::SetUp();
    before_ = [[NSTimeZone defaultTimeZone] retain];
  }
  void TearDown() override {
    [NSTimeZone setDefaultTimeZone:before_];
    [before_ release];
    BundlePlugin::TearDown();
  }

  static void useZone(NSString* name) {
    NSTimeZone* zone = [NSTimeZone timeZoneWithName:name];
    ASSERT_NE(zone, nil) << text(name);
    [NSTimeZone setDefaultTimeZone:zone];
  }

  /// Exports nothing, so that the export folder is known from now on.
  void nameExportFolder() {
    [plugin exportEvents:[NSArray array] configurationFilename:@"Test"];
    ASSERT_TRUE(eventually([&] { return [plugin retainCount] == 1; }));
  }
  void emptyExportFolder() {
    [[NSFileManager defaultManager] removeItemAtPath:exportFolder_ error:NULL];
    [[NSFileManager defaultManager] createDirectoryAtPath:exportFolder_
                              withIntermediateDirectories:YES
                                               attributes:nil
                                                    error:NULL];
  }

  std::string timeOf(NSDate* date) { return text([[plugin timeXMLElementWithDate:date] XMLString]); }

  NSTimeZone* before_ = nil;
};

NSDate* at(std::int64_t secondsSince1970) {
  return [NSDate dateWithTimeIntervalSince1970:static_cast<NSTimeInterval>(secondsSince1970)];
}

TEST_F(BundleZone, IsAskedForAfreshEachTime) {
  NSDate* date = at(1330904700);  // 4 March 2012, 23:45 UTC
  useZone(@"UTC");
  EXPECT_EQ(timeOf(date), "<time><hour>23</hour><minute>45</minute></time>");
  EXPECT_EQ(text([plugin shortDateStringWithDate:date]), "20120304");
  useZone(@"Europe/Rome");
  EXPECT_EQ(timeOf(date), "<time><hour>0</hour><minute>45</minute></time>");
  EXPECT_EQ(text([plugin shortDateStringWithDate:date]), "20120305");
  EXPECT_EQ(text([[plugin dateXMLElementWithDate:date] XMLString]),
            "<date><day>5</day><month>3</month><year>12</year></date>");
  useZone(@"Asia/Kathmandu");
  EXPECT_EQ(timeOf(date), "<time><hour>5</hour><minute>30</minute></time>");
}

TEST_F(BundleZone, DecidesWhatIsOneDay) {
  Class principal = [bundle_ principalClass];
  NSDate* evening = at(1330900200);  // 4 March 2012, 22:30 UTC
  NSDate* night = at(1330904700);    // 23:45 UTC
  useZone(@"UTC");
  EXPECT_TRUE([principal isDate:evening equalToDate:night]);
  useZone(@"Europe/Rome");
  EXPECT_FALSE([principal isDate:evening equalToDate:night]);
}

TEST_F(BundleZone, NamesAndFillsTheDayFile) {
  [[plugin epgItems] setObject:dictionary(@"title", @"One") forKey:@"E1"];
  NSDate* date = at(1330904700);
  useZone(@"Europe/Rome");
  ReportKeeper* keeper = [[[ReportKeeper alloc] init] autorelease];
  [plugin setDelegate:keeper];
  [plugin exportEvents:only(event(@"E1", @"P", date)) configurationFilename:@"Test"];
  ASSERT_TRUE(eventually([&] { return [keeper count] == 1; }));
  EXPECT_TRUE([keeper reportAtIndex:0].succeeded);
  const std::string file = text(dayFile());
  EXPECT_NE(file.find("dateFrom=\"05-03-2012\" dateTo=\"05-03-2012\""), std::string::npos) << file;
  EXPECT_NE(file.find("<hour>0</hour>"), std::string::npos) << file;
  ASSERT_TRUE([plugin writeXMLFileWithEvents:[NSArray array] forDate:date]);
  NSString* named = [exportFolder_ stringByAppendingPathComponent:@"20120305.xml"];
  EXPECT_TRUE([[NSFileManager defaultManager] fileExistsAtPath:named]);
}

TEST_F(BundleZone, IsFoundationsForEveryZoneAndTime) {
  std::mt19937_64 random(20120304);
  std::uniform_int_distribution<std::int64_t> seconds(-2208988800, 4102444800 - 1);  // 1900 to 2100
  NSArray* names = [NSTimeZone knownTimeZoneNames];
  ASSERT_GT([names count], 300u);
  for (NSUInteger index = 0; index < [names count]; ++index) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSTimeZone* zone = [NSTimeZone timeZoneWithName:[names objectAtIndex:index]];
    [NSTimeZone setDefaultTimeZone:zone];
    for (int round = 0; zone != nil && round < 30; ++round) {
      const std::int64_t drawn = seconds(random);
      const auto local = static_cast<time_t>(drawn + [zone secondsFromGMTForDate:at(drawn)]);
      struct tm expected {};
      ASSERT_NE(gmtime_r(&local, &expected), nullptr);
      char date[16];
      strftime(date, sizeof date, "%Y%m%d", &expected);
      ASSERT_EQ(text([plugin shortDateStringWithDate:at(drawn)]), date) << text([zone name]) << " " << drawn;
      const std::string time = "<time><hour>" + std::to_string(expected.tm_hour) + "</hour><minute>" +
                               std::to_string(expected.tm_min) + "</minute></time>";
      ASSERT_EQ(timeOf(at(drawn)), time) << text([zone name]) << " " << drawn;
    }
    [pool drain];
  }
}

/// An export asks the platform once for several hours, so the times around each change of clocks are what it may
/// get wrong.
TEST_F(BundleZone, IsFoundationsAroundEveryChangeOfClocks) {
  nameExportFolder();
  for (NSString* name : {@"Europe/Berlin", @"America/New_York", @"Australia/Lord_Howe", @"Africa/Casablanca",
                         @"America/Caracas", @"Pacific/Apia", @"Asia/Pyongyang"}) {
    useZone(name);
    emptyExportFolder();
    NSTimeZone* zone = [NSTimeZone defaultTimeZone];
    NSMutableArray* events = [NSMutableArray array];
    [[plugin epgItems] setObject:dictionary(@"title", @"One") forKey:@"E1"];
    std::string expected;
    NSInteger before = [zone secondsFromGMTForDate:at(1009843200)];
    int changes = 0;
    for (std::int64_t hour = 1009843200; hour < 1609459200; hour += 3600) {  // 2002 to 2020
      const NSInteger now = [zone secondsFromGMTForDate:at(hour)];
      if (now == before) continue;
      before = now;
      ++changes;
      for (std::int64_t moment = hour - 4 * 3600; moment <= hour + 4 * 3600; moment += 900) {
        [events addObject:event(@"E1", @"P", at(moment))];
        const std::int64_t local = moment + [zone secondsFromGMTForDate:at(moment)];
        expected += std::to_string(local % 86400 / 3600) + ":" + std::to_string(local % 3600 / 60) + " ";
      }
    }
    EXPECT_GT(changes, 0) << text(name);
    ASSERT_TRUE([plugin writeXMLFileWithEvents:events forDate:at(1609459200)]);
    const std::string file = text(dayFile());
    std::string written;
    for (std::size_t at = file.find("<hour>"); at != std::string::npos; at = file.find("<hour>", at + 1)) {
      const std::size_t minute = file.find("<minute>", at);
      written += file.substr(at + 6, file.find('<', at + 6) - at - 6) + ":" +
                 file.substr(minute + 8, file.find('<', minute + 8) - minute - 8) + " ";
    }
    EXPECT_EQ(written, expected) << text(name);
  }
}

}  // namespace
