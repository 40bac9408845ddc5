#import "tests/cocoa/BundleUser.h"

#include <stdlib.h>
#include <time.h>

#include <condition_variable>
#include <mutex>
#include <vector>

namespace {

/// Far more than any test needs, so that only a hang gets there.
const NSTimeInterval longest = 600;
const NSTimeInterval betweenLooks = 0.002;

struct Reports {
  std::mutex mutex;
  std::vector<Report> all;
  bool held = false;
  std::condition_variable letGo;
};

NSString* newFolder() {
  NSString* pattern = [NSTemporaryDirectory() stringByAppendingPathComponent:@"epg-bundle-XXXXXX"];
  std::string path = [pattern fileSystemRepresentation];
  return mkdtemp(path.data()) != nullptr ? [[NSString alloc] initWithUTF8String:path.c_str()] : nil;
}

}  // namespace

std::string text(NSString* string) { return string != nil ? [string UTF8String] : "nil"; }

NSArray* only(id object) { return [NSArray arrayWithObject:object]; }

NSMutableDictionary* dictionary(NSString* key, id value) {
  return [NSMutableDictionary dictionaryWithObject:value forKey:key];
}

NSBundle* loadedBundle() {
  NSBundle* bundle = [NSBundle bundleWithPath:[NSString stringWithUTF8String:EPG_BUNDLE_PATH]];
  return [bundle load] ? bundle : nil;
}

bool eventually(const std::function<bool()>& condition) {
  NSDate* end = [NSDate dateWithTimeIntervalSinceNow:longest];
  while (!condition()) {
    if ([end timeIntervalSinceNow] < 0) {
      return false;
    }
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSDate* soon = [NSDate dateWithTimeIntervalSinceNow:betweenLooks];
    if (![[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:soon]) {
      [NSThread sleepUntilDate:soon];
    }
    [pool drain];
  }
  return true;
}

@implementation ReportKeeper

- (id)init {
  self = [super init];
  if (self != nil) {
    _reports = new Reports;
  }
  return self;
}

- (void)dealloc {
  delete static_cast<Reports*>(_reports);
  [super dealloc];
}

- (NSUInteger)count {
  Reports& reports = *static_cast<Reports*>(_reports);
  const std::lock_guard<std::mutex> lock(reports.mutex);
  return reports.all.size();
}

- (Report)reportAtIndex:(NSUInteger)index {
  Reports& reports = *static_cast<Reports*>(_reports);
  const std::lock_guard<std::mutex> lock(reports.mutex);
  return reports.all.at(index);
}

- (void)setExporter:(id<TelvarinManagerEPGPluginProtocol>)exporter {
  _exporter = exporter;
}

- (void)holdReports {
  Reports& reports = *static_cast<Reports*>(_reports);
  const std::lock_guard<std::mutex> lock(reports.mutex);
  reports.held = true;
}

- (void)letReportsGo {
  Reports& reports = *static_cast<Reports*>(_reports);
  const std::lock_guard<std::mutex> lock(reports.mutex);
  reports.held = false;
  reports.letGo.notify_all();
}

- (void)epgExportEventCompleted:(BOOL)succeeded error:(NSError*)error {
  // A test that has seen the report may let go before this returns.
  [self retain];
  Report report;
  report.succeeded = succeeded != NO;
  report.domain = text([error domain]);
  report.code = [error code];
  report.message = error != nil ? text([error localizedDescription]) : std::string();
  report.userInfoEntries = [[error userInfo] count];
  report.onMainThread = [NSThread isMainThread] != NO;
  {
    Reports& reports = *static_cast<Reports*>(_reports);
    std::unique_lock<std::mutex> lock(reports.mutex);
    reports.all.push_back(report);
    reports.letGo.wait(lock, [&] { return !reports.held; });
  }
  id exporter = _exporter;
  _exporter = nil;
  [exporter exportEvents:[NSArray array] configurationFilename:@"Test"];
  [self release];
}

@end

BundleUser::BundleUser()
    : pool_([[NSAutoreleasePool alloc] init]),
      dataFolder_(newFolder()),
      exportFolder_(newFolder()),
      bundle_([loadedBundle() retain]) {
  NSString* configuration = [NSString
      stringWithFormat:@"<plist version=\"1.0\"><dict><key>exportPath</key><string>%@</string></dict></plist>",
                       exportFolder_];
  [configuration writeToFile:[dataFolder_ stringByAppendingPathComponent:@"Test.epgconf"]
                  atomically:YES
                    encoding:NSUTF8StringEncoding
                       error:NULL];
}

BundleUser::~BundleUser() {
  [[NSFileManager defaultManager] removeItemAtPath:dataFolder_ error:NULL];
  [[NSFileManager defaultManager] removeItemAtPath:exportFolder_ error:NULL];
  [dataFolder_ release];
  [exportFolder_ release];
  [bundle_ release];
  [pool_ drain];
}

EPGDorvaSelinManagerPlugin* BundleUser::newPlugin() {
  return [[[bundle_ principalClass] alloc] initWithBundle:bundle_ dataFolderPath:dataFolder_];
}

NSString* BundleUser::storePath() const { return [dataFolder_ stringByAppendingPathComponent:@"EPGItems.plist"]; }

NSDictionary* BundleUser::savedStore() const { return [NSDictionary dictionaryWithContentsOfFile:storePath()]; }

bool BundleUser::eventuallySaved(NSDictionary* expected) const {
  return eventually([&] { return [savedStore() isEqual:expected] != NO; });
}

bool BundleUser::writeStore(NSDictionary* store) const {
  NSData* data = [NSPropertyListSerialization dataFromPropertyList:store
                                                            format:NSPropertyListXMLFormat_v1_0
                                                  errorDescription:NULL];
  return [data writeToFile:storePath() atomically:YES] != NO;
}

NSString* BundleUser::dayFile() const {
  // The file that is still being written is hidden beside it.
  NSArray* names = [[[NSFileManager defaultManager] contentsOfDirectoryAtPath:exportFolder_ error:NULL]
      pathsMatchingExtensions:[NSArray arrayWithObject:@"xml"]];
  if ([names count] != 1) {
    return nil;
  }
  return [NSString stringWithContentsOfFile:[exportFolder_ stringByAppendingPathComponent:[names lastObject]]
                                   encoding:NSUTF8StringEncoding
                                      error:NULL];
}

NSDictionary* BundleUser::event(NSString* uniqueID, NSString* playbackID, NSDate* start) {
  NSMutableDictionary* event = [NSMutableDictionary dictionary];
  [event setObject:uniqueID forKey:@"eventEPGUniqueID"];
  if (playbackID != nil) {
    [event setObject:playbackID forKey:@"eventEPGPlaybackUniqueID"];
  }
  [event setObject:start forKey:@"eventEPGStartDateTime"];
  [event setObject:[start dateByAddingTimeInterval:1800] forKey:@"eventEPGEndDateTime"];
  return event;
}

NSDate* BundleUser::localDate(int year, int month, int day, int hour, int minute) {
  struct tm parts {};
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  parts.tm_mday = day;
  parts.tm_hour = hour;
  parts.tm_min = minute;
  NSTimeZone* zone = [NSTimeZone defaultTimeZone];
  const NSInteger inUTC = timegm(&parts);
  const auto date = [&](NSInteger seconds) {
    return [NSDate dateWithTimeIntervalSince1970:static_cast<NSTimeInterval>(seconds)];
  };
  return date(inUTC - [zone secondsFromGMTForDate:date(inUTC - [zone secondsFromGMTForDate:date(inUTC)])]);
}
