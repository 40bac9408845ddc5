// The host's thread, saves and exports at once, for many rounds. What it shows it shows under ThreadSanitizer; and
// everywhere, that the store ends as the host's own thread left it.

#include <algorithm>
#include <cstdlib>
#include <map>

#include "tests/support/PluginTest.h"
#include "tests/support/RandomText.h"

namespace epg::test {
namespace {

int rounds() {
  const char* const wanted = std::getenv("EPG_STRESS_ROUNDS");  // NOLINT(concurrency-mt-unsafe)
  return wanted ? std::atoi(wanted) : 2000;
}

class StressTest : public PluginTest {
 protected:
  StressTest() { environment.setFlushesToDisk(false); }

  /// One thing that a host may do, done to the plug-in and to the model of its store.
  void doSomething(std::mt19937& random) {
    const auto anyID = [&] { return "E" + std::to_string(random() % 40); };
    const std::string id = anyID();
    switch (random() % 6) {
      case 0: {
        const std::string target = anyID();
        plugin->duplicateEPGItemWithUniqueID(id, target);
        const auto source = model.find(id);
        if (source != model.end()) model[target] = PropertyListDictionary(source->second);
        break;
      }
      case 1: {
        const std::vector<std::string> ids = {id, anyID()};
        plugin->removeEPGItemsWithUniqueIDs(ids);
        for (const std::string& removed : ids) model.erase(removed);
        break;
      }
      case 2: {
        // Committed items are shared by the store and the list under edit until other IDs are named.
        plugin->setEditedEPGUniqueIDs({id});
        const auto item = plugin->editedItems()->at(0);
        const std::string title = randomText(random, 30);
        item->set(ZRLEPGDSTitleKey, title);
        plugin->commitEditing();
        item->set(ZRLEPGDSDescriptionKey, title);
        model[id].set(ZRLEPGDSUniqueIDKey, id);
        model[id].set(ZRLEPGDSTitleKey, title);
        model[id].set(ZRLEPGDSDescriptionKey, title);
        break;
      }
      case 3:
        plugin->exportEvents(events, "Test");
        ++exportsAsked;
        break;
      case 4:
        plugin->cancelExportEvents();
        plugin->setDelegate(&delegate);
        break;
      default:
        plugin->saveEPGItemsToFile();
        plugin->configurationFilenames();
        plugin->exportPath();
        break;
    }
  }

  std::vector<EPGEvent> events;
  std::map<std::string, PropertyListDictionary> model;
  std::size_t exportsAsked = 0;
};

TEST_F(StressTest, TheStoreEndsAsTheHostsThreadLeftIt) {
  for (int i = 0; i < 80; ++i) {
    events.push_back(withPlaybackID(eventAt("E" + std::to_string(i % 50), 1330905600 + i * 600), std::to_string(i)));
  }
  std::mt19937 random(20120304);
  for (int round = rounds(); round > 0; --round) doSomething(random);
  environment.waitForThreads();
  EXPECT_FALSE(plugin->busyWriting());
  EXPECT_FALSE(plugin->busyExporting());
  EXPECT_TRUE(environment.logged().empty());

  // Every export was reported once, accepted or refused.
  const auto outcomes = delegate.outcomes();
  EXPECT_EQ(exportsAsked, outcomes.size());
  for (const std::string& outcome : outcomes) EXPECT_TRUE(outcome == "YES" || outcome == busyRefusal) << outcome;
  const auto accepted = std::count(outcomes.begin(), outcomes.end(), "YES");
  EXPECT_GT(accepted, 0);
  RecordProperty("exportsAsked", static_cast<int>(exportsAsked));
  RecordProperty("exportsAccepted", static_cast<int>(accepted));
  RecordProperty("savesWritten", static_cast<int>(environment.replacements().size()) - static_cast<int>(accepted));

  save();
  const PropertyListDictionary stored = storeFile();
  EXPECT_EQ(model.size(), stored.size());
  for (const auto& [id, values] : model) {
    ASSERT_TRUE(stored.find(id)) << id;
    PropertyListDictionary carried;
    for (const auto& [key, value] : values) carried.set(key, asXMLCarries(std::string(*value.asString())));
    EXPECT_EQ(PropertyList(carried), *stored.find(id)) << id;
  }
  exportAndWait(events);
  dayFile();
  EXPECT_EQ((std::vector<std::string>{"EPGItems.plist", "Test.epgconf"}), namesIn(dataFolder));
  EXPECT_EQ(std::vector<std::string>{"20120304.xml"}, namesIn(exportFolder));
}

TEST_F(StressTest, ObjectsAreDroppedInTheMiddleOfSavesAndExports) {
  delegate.setResponds(false);
  for (int round = rounds() / 10; round > 0; --round) {
    auto dropped = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, dataFolder, environment);
    dropped->setDelegate(&delegate);
    dropped->epgItems()->setItem("E" + std::to_string(round % 7), itemTitled(std::to_string(round)));
    dropped->exportEvents({eventAt("E1", 1330905600), eventAt("E2", 1330905600)}, "Test");
    dropped->saveEPGItemsToFile();
    if (round % 3 == 0) dropped->removeEPGItemsWithUniqueIDs({"E1"});
    const auto end = dropped->end();
    dropped.reset();
    if (round % 2 == 0) end->wait();
  }
  environment.waitForThreads();
  dayFile();
  for (const auto& entry : storeFile()) EXPECT_TRUE(entry.second.asDictionary());
}

}  // namespace
}  // namespace epg::test
