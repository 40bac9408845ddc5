// Every single allocation that a save, an export or the reading of a file makes fails once, alone and with all that
// follow.

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <pugixml.hpp>
#include <string>
#include <thread>
#include <vector>

#include "platform/Environment.h"
#include "plist/PropertyListFile.h"
#include "plugin/EPGDorvaSelinManagerPlugin.h"
#include "store/MemoryItem.h"
#include "tests/reliability/Shortage.h"
#include "tests/support/Dictionary.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TimeZone.h"

namespace epg::test {

namespace {

/// The real system with a clock that stands still. Nothing in it takes memory that the test would count.
class CountingEnvironment : public Environment {
 public:
  Instant now() override { return Instant::fromUnixTime(1330880400); }  // 4 March 2012, 17:00 UTC
  int flushFile(int /*descriptor*/) override { return 0; }
  void log(const std::string& line) override {
    ++lines;
    const char* const start = "An error occured while trying to write the EPG items to disk (";
    if (line.compare(0, std::char_traits<char>::length(start), start) != 0) ++otherLines;
  }
  void fileReplaced(const std::string& /*path*/, int error) override {
    lastError = error;
    ++told;
  }
  void clear() { lines = otherLines = told = lastError = 0; }

  std::atomic<int> lines{0};
  std::atomic<int> otherLines{0};
  std::atomic<int> told{0};
  std::atomic<int> lastError{0};
};

class CountingDelegate : public TelvarinManagerEPGPluginProtocol_Delegate {
 public:
  void epgExportEventCompleted(bool succeeded, const EPGError* error) override {
    ++reports;
    outcome = succeeded;
    rightError = succeeded ? error == nullptr
                           : error && error->localizedDescription == "EPG XML File Write Error" &&
                                 error->domain == longErrorDomain && error->code == EPGError::onlyCode;
  }

  std::atomic<int> reports{0};
  std::atomic<bool> outcome{false};
  std::atomic<bool> rightError{false};
};

class OutOfMemory : public testing::TestWithParam<Shortage::Failing> {
 protected:
  OutOfMemory() {
    pugi::set_memory_management_functions(Shortage::allocate, std::free);
    const auto configuration = propertyListXML(PropertyList(dictionaryOf({{"exportPath", exportFolder}})));
    writeFile(dataFolder + "/Test.epgconf", *configuration);
    plugin = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, dataFolder, environment);
    plugin->setDelegate(&delegate);
    for (int i = 0; i < 5; ++i) {
      auto item = std::make_shared<MemoryItem>();
      const std::string number = std::to_string(i);
      item->set("title", "A title that is too long to be kept without memory, number " + number);
      item->set("tags", PropertyList::Array{"Live", "A tag with quite a long name"});
      item->set("unknown", PropertyList(dictionaryOf({{"when", PropertyList::fromDate(Instant{0})}})));
      const std::string identifier = "an identifier of more than a few letters " + number;
      plugin->epgItems()->setItem(identifier, item);
      EPGEvent event;
      event.eventEPGUniqueID = identifier;
      event.eventEPGPlaybackUniqueID = "playback " + number;
      event.eventEPGStartDateTime = Instant::fromUnixTime(1330880400 - 60 * i);
      event.eventEPGEndDateTime = Instant::fromUnixTime(1330880460);
      events.push_back(event);
    }
  }
  ~OutOfMemory() override {
    pugi::set_memory_management_functions(std::malloc, std::free);
    plugin->setDelegate(nullptr);
    const auto end = plugin->end();
    plugin.reset();
    end->wait();
  }

  std::string storePath() const { return dataFolder + "/EPGItems.plist"; }
  std::string dayFilePath() const { return exportFolder + "/20120304.xml"; }

  TimeZone zone{"UTC"};
  TemporaryFolder folder;
  const std::string dataFolder = folder.makeFolder("data");
  const std::string exportFolder = folder.makeFolder("export");
  CountingEnvironment environment;
  CountingDelegate delegate;
  std::shared_ptr<EPGDorvaSelinManagerPlugin> plugin;
  std::vector<EPGEvent> events;
};

/// More than any of the operations here needs; a test that comes this far runs for ever.
constexpr std::size_t endless = 100000;

}  // namespace

TEST_P(OutOfMemory, WhileTheStoreIsWrittenLeavesAWholeFileAndTheMarkCleared) {
  const std::shared_ptr<const EPGItemStoreSnapshot> snapshot = plugin->epgItems()->snapshot();
  plugin->saveEPGItemsToFileThread(*snapshot);
  const std::string written = contentOf(storePath());
  ASSERT_FALSE(written.empty());

  std::size_t number = 0;
  for (; number < endless; ++number) {
    SCOPED_TRACE(number);
    writeFile(storePath(), "old");
    environment.clear();
    {
      const Shortage shortage(number, GetParam());
      plugin->saveEPGItemsToFileThread(*snapshot);
    }
    ASSERT_FALSE(plugin->busyWriting());
    ASSERT_EQ(0, environment.otherLines);
    ASSERT_EQ((std::vector<std::string>{"EPGItems.plist", "Test.epgconf"}), namesIn(dataFolder));
    const std::string content = contentOf(storePath());
    if (Shortage::failures() == 0) {
      ASSERT_EQ(written, content);
      ASSERT_EQ(0, environment.lines);
      break;
    }
    // What comes after the file has taken its place is tidying up, and no reason to call the save a failure.
    if (content == written) {
      ASSERT_EQ(0, environment.lines);
      ASSERT_EQ(1, environment.told);
      ASSERT_EQ(0, environment.lastError);
      continue;
    }
    ASSERT_EQ("old", content);
    if (GetParam() == Shortage::Failing::Once) {
      ASSERT_EQ(1, environment.lines);
      ASSERT_EQ(1, environment.told);
      ASSERT_EQ(ENOMEM, environment.lastError);
    }
  }
  EXPECT_GT(number, 10U) << "a save that takes no memory has shown nothing";
  EXPECT_LT(number, endless);
}

TEST_P(OutOfMemory, DuringAnExportIsReportedAndLeavesAWholeFile) {
  plugin->exportEvents(events, "Test");
  while (plugin->busyExporting()) std::this_thread::yield();
  const std::string written = contentOf(dayFilePath());
  ASSERT_FALSE(written.empty());

  std::size_t number = 0;
  for (; number < endless; ++number) {
    SCOPED_TRACE(number);
    writeFile(dayFilePath(), "old");
    delegate.reports = 0;
    std::vector<EPGEvent> given = events;
    {
      const Shortage shortage(number, GetParam());
      plugin->exportEventsThread(std::move(given));
    }
    ASSERT_FALSE(plugin->busyExporting());
    ASSERT_EQ(1, delegate.reports);
    ASSERT_TRUE(delegate.rightError);
    ASSERT_EQ(delegate.outcome ? written : "old", contentOf(dayFilePath()));
    ASSERT_EQ(1U, namesIn(exportFolder).size());
    if (Shortage::failures() == 0) {
      ASSERT_TRUE(delegate.outcome);
      break;
    }
  }
  EXPECT_GT(number, 10U) << "an export that takes no memory has shown nothing";
  EXPECT_LT(number, endless);
}

TEST_P(OutOfMemory, WhenAnExportIsAskedForIsReportedAndLeavesTheNextOneFree) {
  std::size_t number = 0;
  for (; number < endless; ++number) {
    SCOPED_TRACE(number);
    delegate.reports = 0;
    {
      std::vector<EPGEvent> given = events;
      const std::string configuration = "Test";
      const Shortage shortage(number, GetParam());
      plugin->exportEvents(std::move(given), configuration);
    }
    while (plugin->busyExporting()) std::this_thread::yield();
    ASSERT_EQ(1, delegate.reports);
    ASSERT_TRUE(delegate.rightError);
    if (Shortage::failures() == 0) {
      ASSERT_TRUE(delegate.outcome);
      break;
    }
  }
  EXPECT_GT(number, 5U);
  EXPECT_LT(number, endless);
}

TEST_P(OutOfMemory, WhenASaveIsAskedForIsLoggedAndLeavesTheNextOneFree) {
  std::size_t number = 0;
  for (; number < endless; ++number) {
    SCOPED_TRACE(number);
    environment.clear();
    {
      const Shortage shortage(number, GetParam());
      plugin->saveEPGItemsToFile();
    }
    while (environment.told == 0 && Shortage::failures() == 0) std::this_thread::yield();
    ASSERT_EQ(0, environment.otherLines);
    if (Shortage::failures() == 0) break;
    if (GetParam() == Shortage::Failing::Once) {
      ASSERT_EQ(1, environment.told);
    }
  }
  EXPECT_EQ(0, environment.lastError);
  EXPECT_GT(number, 1U);
  EXPECT_LT(number, endless);
}

TEST_P(OutOfMemory, WhileAPropertyListIsReadIsNotTakenForAMalformedOne) {
  const auto list = propertyListXML(PropertyList(dictionaryOf({{"key", "a text of more than a few letters"}})));
  ASSERT_TRUE(list);
  std::string large = *list;
  large.insert(large.find("<dict>"), std::string(200000, ' '));  // More than one of the parser's pages.
  for (const std::string& bytes : {*list, large}) {
    std::size_t number = 0;
    for (; number < endless; ++number) {
      SCOPED_TRACE(number);
      bool read = false;
      std::string problem;
      try {
        const Shortage shortage(number, GetParam());
        read = parsePropertyList(bytes, &problem).has_value();
      } catch (const std::bad_alloc&) {
        ASSERT_GT(Shortage::failures(), 0U);
        continue;
      }
      ASSERT_TRUE(read) << problem;
      if (Shortage::failures() == 0) break;
    }
    EXPECT_GT(number, 3U);
    EXPECT_LT(number, endless);
  }
}

INSTANTIATE_TEST_SUITE_P(Short, OutOfMemory, testing::Values(Shortage::Failing::Once, Shortage::Failing::FromThenOn),
                         [](const auto& one) { return one.param == Shortage::Failing::Once ? "Once" : "FromThenOn"; });

}  // namespace epg::test
