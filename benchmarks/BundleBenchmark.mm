// BundleBenchmark --load          measures how long an AppKit process takes to load the bundle
// BundleBenchmark --load-once     does that once, in this process, and prints the seconds
// BundleBenchmark --create        measures the creation of a plug-in object
// BundleBenchmark --host-thread   measures how long the host's thread is away when it calls the plug-in

#import <AppKit/AppKit.h>
#include <sys/stat.h>

#include <exception>
#include <functional>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/ChildProcess.h"
#include "benchmarks/PluginUser.h"
#include "benchmarks/SampleData.h"
#include "benchmarks/StoreReading.h"
#include "benchmarks/Table.h"
#include "benchmarks/Timing.h"
#include "benchmarks/WorkFolder.h"
#import "cocoa/TelvarinManagerEPGPluginProtocol.h"

using namespace epg::benchmarks;

namespace {

NSString* toString(const std::string& text) { return [NSString stringWithUTF8String:text.c_str()]; }

Class principalClassOfBundle() {
  NSBundle* bundle = [NSBundle bundleWithPath:[NSString stringWithUTF8String:EPG_BUNDLE_PATH]];
  return [bundle load] ? [bundle principalClass] : Nil;
}

void loadOnce() {
  [NSApplication sharedApplication];
  const Stopwatch stopwatch(wallSeconds);
  if (principalClassOfBundle() == Nil) throw std::runtime_error("the bundle cannot be loaded");
  std::cout << stopwatch.seconds() << '\n';
}

void measureLoading() {
  constexpr int processes = 15;
  constexpr double limit = 5;
  std::vector<double> seconds;
  for (int i = 0; i < processes; ++i) {
    seconds.push_back(std::stod(runProgram({ownProgram(), "--load-once"}).output));
  }
  Table().figure("load the bundle into an AppKit process (wall)", median(seconds) * 1000, limit, "ms");
}

/// Changes whenever the file is replaced; zero while there is none.
ino_t identity(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 ? info.st_ino : 0;
}

}  // namespace

/// Counts the reports of exports, from whatever thread.
@interface ReportCounter : NSObject <TelvarinManagerEPGPluginProtocol_Delegate> {
 @private
  int _reports;
  int _failures;
}
- (int)reports;
- (int)failures;
@end

@implementation ReportCounter

- (int)reports {
  @synchronized(self) {
    return _reports;
  }
}

- (int)failures {
  @synchronized(self) {
    return _failures;
  }
}

- (void)epgExportEventCompleted:(BOOL)succeeded error:(NSError*)error {
  (void)error;
  @synchronized(self) {
    ++_reports;
    if (!succeeded) ++_failures;
  }
}

@end

namespace {

constexpr std::size_t count = 100000;
constexpr double limit = 0.001;
constexpr int callsAtRest = 10;
constexpr int exportsAtWork = 10;
// This program, the save and the export.
constexpr NSUInteger holdersAtWork = 3;
const NSTimeInterval betweenLooks = 0.001;
const NSTimeInterval betweenCalls = 0.001;

NSArray* eventsOfHost() {
  NSMutableArray* events = [NSMutableArray array];
  for (const epg::EPGEvent& event : sampleEvents(count)) {
    const auto date = [](epg::Instant instant) { return [NSDate dateWithTimeIntervalSince1970:instant.unixTime()]; };
    [events addObject:[NSDictionary
                          dictionaryWithObjectsAndKeys:toString(*event.eventEPGUniqueID), @"eventEPGUniqueID",
                                                       toString(*event.eventEPGPlaybackUniqueID),
                                                       @"eventEPGPlaybackUniqueID", date(*event.eventEPGStartDateTime),
                                                       @"eventEPGStartDateTime", date(*event.eventEPGEndDateTime),
                                                       @"eventEPGEndDateTime", nil]];
  }
  return [[NSArray alloc] initWithArray:events];
}

class HostThread {
 public:
  HostThread() : counter_([[ReportCounter alloc] init]), events_(eventsOfHost()) {
    writeSampleData(folder_, count);
    Class principal = principalClassOfBundle();
    NSBundle* bundle = [NSBundle bundleForClass:principal];
    plugin_ = [[principal alloc] initWithBundle:bundle dataFolderPath:toString(folder_.path())];
    if (plugin_ == nil) throw std::runtime_error("the bundle makes no plug-in");
    [plugin_ setDelegate:counter_];
    configuration_ = [toString(configurationName) retain];
    storePath_ = folder_.file(storeFileName);
  }
  HostThread(const HostThread&) = delete;
  HostThread& operator=(const HostThread&) = delete;
  ~HostThread() {
    waitForThreads();
    [plugin_ setDelegate:nil];
    [plugin_ release];
    [counter_ release];
    [events_ release];
    [configuration_ release];
  }

  void callAtRest() {
    for (int i = 0; i < callsAtRest; ++i) {
      NSString* entry = toString(sampleID(static_cast<std::size_t>(i)));
      saveAndWait("saveEPGItemsToFile", [&] { [plugin_ performSelector:@selector(saveEPGItemsToFile)]; });
      [plugin_ setEditedEPGUniqueIDs:[NSArray arrayWithObject:entry]];
      saveAndWait("commitEditing", [&] { [plugin_ commitEditing]; });
      saveAndWait("duplicate", [&] { [plugin_ duplicateEPGItemWithUniqueID:entry toItemWithUniqueID:@"copy"]; });
      saveAndWait("remove", [&] { [plugin_ removeEPGItemsWithUniqueIDs:[NSArray arrayWithObject:@"copy"]]; });
      const int before = [counter_ reports];
      call("exportEvents", [&] { [plugin_ exportEvents:events_ configurationFilename:configuration_]; });
      waitFor([&] { return [counter_ reports] != before; });
      waitForThreads();
      if ([counter_ failures] > 0) throw std::runtime_error("the day file was not written");
    }
  }

  /// Saves and exports follow one another all the time, each started while the other one runs. The entries are changed
  /// while both do.
  void callAtWork() {
    std::size_t number = 0;
    for (int exports = 0; exports < exportsAtWork; ++exports) {
      NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
      const int before = [counter_ reports];
      call("exportEvents", [&] { [plugin_ exportEvents:events_ configurationFilename:configuration_]; });
      call("saveEPGItemsToFile", [&] { [plugin_ performSelector:@selector(saveEPGItemsToFile)]; });
      while ([counter_ reports] == before) {
        // A save counts as running when its thread begins; until then, every call would start another one.
        if ([plugin_ retainCount] <= holdersAtWork) {
          changeEntry(toString(sampleID(number++ % count)));
        }
        [NSThread sleepForTimeInterval:betweenCalls];
      }
      waitForThreads();
      [pool drain];
    }
  }

  /// Shows what was measured since the last time.
  void show(Table& table, const std::string& situation) {
    for (const auto& [operation, calls] : calls_) table.calls("bundle: " + operation + ", " + situation, calls, limit);
    calls_.clear();
  }

 private:
  void changeEntry(NSString* entry) {
    [plugin_ setEditedEPGUniqueIDs:[NSArray arrayWithObject:entry]];
    call("commitEditing", [&] { [plugin_ commitEditing]; });
    call("duplicate", [&] { [plugin_ duplicateEPGItemWithUniqueID:entry toItemWithUniqueID:@"copy"]; });
    call("remove", [&] { [plugin_ removeEPGItemsWithUniqueIDs:[NSArray arrayWithObject:@"copy"]]; });
  }

  void call(const std::string& operation, const std::function<void()>& work) { calls_[operation].measure(work); }

  void saveAndWait(const std::string& operation, const std::function<void()>& work) {
    const ino_t before = identity(storePath_);
    call(operation, work);
    waitFor([&] { return identity(storePath_) != before; });
    waitForThreads();
  }

  /// Saves and exports hold the plug-in while they run.
  void waitForThreads() {
    waitFor([&] { return [plugin_ retainCount] == 1; });
  }

  static void waitFor(const std::function<bool()>& condition) {
    while (!condition()) [NSThread sleepForTimeInterval:betweenLooks];
  }

  WorkFolder folder_;
  std::string storePath_;
  ReportCounter* counter_;
  NSArray* events_;
  NSString* configuration_;
  NSObject<TelvarinManagerEPGPluginProtocol>* plugin_;
  std::map<std::string, Calls> calls_;
};

void measureCreation() {
  const WorkFolder folder;
  writeSampleData(folder, count);
  Class principal = principalClassOfBundle();
  NSBundle* bundle = [NSBundle bundleForClass:principal];
  NSString* path = toString(folder.path());
  const auto creation = [&] {
    const Stopwatch stopwatch(processorSeconds);
    id plugin = [[principal alloc] initWithBundle:bundle dataFolderPath:path];
    const double seconds = stopwatch.seconds();
    [plugin release];
    return seconds;
  };
  const auto reading = [&] {
    const Stopwatch stopwatch(processorSeconds);
    const auto store = readStore(folder.file(storeFileName));
    return stopwatch.seconds();
  };
  Table().atMost("bundle: create the plug-in object", inTurns(5, {creation, reading}), 1, "read the store", 1.1);
}

void measureHostThread() {
  Table table;
  HostThread host;
  host.callAtRest();
  host.show(table, "at rest");
  host.callAtWork();
  host.show(table, "at work");
}

}  // namespace

int main(int argc, char** argv) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  const std::string what = argc == 2 ? argv[1] : "";
  int status = 0;
  try {
    if (what == "--load-once") {
      loadOnce();
    } else if (what == "--load") {
      measureLoading();
    } else if (what == "--create") {
      measureCreation();
    } else if (what == "--host-thread") {
      measureHostThread();
    } else {
      std::cerr << "usage: BundleBenchmark --load | --create | --host-thread\n";
      status = 2;
    }
  } catch (const std::exception& exception) {
    std::cerr << "BundleBenchmark: " << exception.what() << '\n';
    status = 1;
  }
  [pool drain];
  return status;
}
