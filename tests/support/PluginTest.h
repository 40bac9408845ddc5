#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/KeyConstants.h"
#include "plist/PropertyListFile.h"
#include "plugin/EPGDorvaSelinManagerPlugin.h"
#include "tests/support/DayFileReader.h"
#include "tests/support/Dictionary.h"
#include "tests/support/Events.h"
#include "tests/support/Gate.h"
#include "tests/support/Items.h"
#include "tests/support/RecordingDelegate.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestEnvironment.h"
#include "tests/support/TimeZone.h"

namespace epg::test {

using Call = TestEnvironment::Call;

/// A plug-in object with a data folder, an export folder and a home folder of its own. The zone is UTC, and the clock
/// stands at 4 March 2012, 17:00.
class PluginTest : public testing::Test {
 protected:
  PluginTest();
  ~PluginTest() override;

  /// Makes the object anew, as a host does when it starts: what the data folder holds now is what it knows.
  void start();
  /// Drops the object and waits until it is gone.
  void stop();

  /// Puts an item into the store of the running object, without saving.
  void put(const std::string& uniqueID, Entries entries);
  /// The entries of the item in the store; the test fails when there is none.
  PropertyListDictionary itemInStore(const std::string& uniqueID) const;

  std::string storePath() const { return dataFolder + "/EPGItems.plist"; }
  void writeStoreFile(Entries entries) const;
  /// What the store's file holds, read anew.
  PropertyListDictionary storeFile() const;
  /// The keys in the store's file.
  std::vector<std::string> storedIDs() const;
  void save();

  /// Writes a configuration into the data folder.
  void configure(const std::string& name, Entries entries) const;
  /// Exports with the configuration "Test", which names the export folder, and waits until the thread has ended.
  void exportAndWait(const std::vector<EPGEvent>& events, const std::string& configuration = "Test");
  std::string dayFilePath() const { return exportFolder + "/20120304.xml"; }
  DayFile dayFile() const { return dayFileFrom(contentOf(dayFilePath())); }

  TimeZone zone{"UTC"};
  TemporaryFolder folder;
  std::string dataFolder;
  std::string exportFolder;
  std::string homeFolder;
  TestEnvironment environment;
  RecordingDelegate delegate;
  std::shared_ptr<EPGDorvaSelinManagerPlugin> plugin;
};

}  // namespace epg::test
