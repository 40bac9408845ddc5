#pragma once

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#import "cocoa/EPGDorvaSelinManagerPlugin.h"
#import "cocoa/EPGDorvaSelinViewController.h"
#import "cocoa/NSString+HTML.h"

// The tests see the bundle as a host does: loaded at run time, its classes found by name.

/// The bundle, loaded.
NSBundle* loadedBundle();
/// Runs the run loop until the condition holds; false when it does not within the time that a test may take.
bool eventually(const std::function<bool()>& condition);

/// In UTF-8; "nil" for none.
std::string text(NSString* string);
/// A list of nothing else.
NSArray* only(id object);
/// A dictionary of nothing else.
NSMutableDictionary* dictionary(NSString* key, id value);

/// The platform's implementation pointers as the functions that they are, and back.
template <typename Function>
IMP implementationOf(Function* function) {
  return reinterpret_cast<IMP>(reinterpret_cast<void (*)()>(function));
}
template <typename Function>
Function* functionOf(IMP implementation) {
  return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(implementation));
}

/// One report of an export.
struct Report {
  bool succeeded = false;
  std::string domain;
  NSInteger code = 0;
  std::string message;
  bool onMainThread = false;
  NSUInteger userInfoEntries = 0;
};

/// A delegate that keeps every report, from any thread.
@interface ReportKeeper : NSObject <TelvarinManagerEPGPluginProtocol_Delegate> {
 @private
  void* _reports;
  id _exporter;
}
- (NSUInteger)count;
- (Report)reportAtIndex:(NSUInteger)index;
/// A plug-in that is asked for another export from inside the first report. Not retained.
- (void)setExporter:(id<TelvarinManagerEPGPluginProtocol>)exporter;
/// From now on no report returns to its export, until they are let go.
- (void)holdReports;
- (void)letReportsGo;
@end

/// A data folder, an export folder, a configuration "Test" that names it, and an autorelease pool for one test.
class BundleUser : public testing::Test {
 protected:
  BundleUser();
  ~BundleUser() override;

  /// A new plug-in object; the caller owns it.
  EPGDorvaSelinManagerPlugin* newPlugin();
  NSString* storePath() const;
  /// The store file as it is, nil when it cannot be read.
  NSDictionary* savedStore() const;
  bool eventuallySaved(NSDictionary* expected) const;
  bool writeStore(NSDictionary* store) const;
  /// The one day file of the export folder, nil when there is none.
  NSString* dayFile() const;
  /// A playback that lasts half an hour.
  static NSDictionary* event(NSString* uniqueID, NSString* playbackID, NSDate* start);
  static NSDate* localDate(int year, int month, int day, int hour, int minute);

  NSAutoreleasePool* pool_;
  NSString* dataFolder_;
  NSString* exportFolder_;
  NSBundle* bundle_;
};

/// The same with a new plug-in object, which the test does not own.
class BundlePlugin : public BundleUser {
 protected:
  void SetUp() override { plugin = newPlugin(); }
  void TearDown() override {
    [plugin setDelegate:nil];
    [plugin release];
  }

  EPGDorvaSelinManagerPlugin* plugin = nil;
};
