// Two processes on one data folder: neither knows of the other, the last rename wins, and whoever reads finds a store
// that one of them wrote whole.

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

constexpr int rounds = 200;

/// Saves again and again, each time all entries with the same title.
void saveManyStores(const std::string& dataFolder, const std::string& title) {
  Environment& environment = Environment::standard();
  for (int round = 0; round < rounds; ++round) {
    const auto plugin = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, dataFolder, environment);
    for (int i = 0; i < 20; ++i) plugin->epgItems()->setItem("E" + std::to_string(i), itemTitled(title));
    plugin->saveEPGItemsToFileThread(*plugin->epgItems()->snapshot());
  }
}

class TwoProcessesTest : public PluginTest {};

TEST_F(TwoProcessesTest, OnOneFolderLeaveAWholeStoreAtEveryMoment) {
  stop();
  saveManyStores(dataFolder, "first");
  std::vector<pid_t> children;
  for (const char* const title : {"first", "second"}) {
    const pid_t child = ::fork();
    if (child == 0) {
      saveManyStores(dataFolder, title);
      ::_exit(0);
    }
    children.push_back(child);
  }
  int running = 2;
  while (running > 0) {
    std::string problem;
    const auto store = readPropertyListDictionary(Environment::standard(), storePath(), &problem);
    ASSERT_TRUE(store) << problem;
    ASSERT_EQ(20U, store->size());
    const std::string title(*stringValue(*store->begin()->second.asDictionary(), ZRLEPGDSTitleKey));
    for (const auto& entry : *store) {
      ASSERT_EQ(title, *stringValue(*entry.second.asDictionary(), ZRLEPGDSTitleKey));
    }
    while (running > 0 && ::waitpid(-1, nullptr, WNOHANG) > 0) --running;
  }
  EXPECT_EQ((std::vector<std::string>{"EPGItems.plist"}), [this] {
    std::vector<std::string> names = namesIn(dataFolder);
    names.erase(std::remove_if(names.begin(), names.end(),
                               [](const std::string& name) { return name.find(".epgconf") != std::string::npos; }),
                names.end());
    return names;
  }());
}

}  // namespace
}  // namespace epg::test
