// Random operations on the store, held against a plain map.

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <string>

#include "store/MemoryItem.h"
#include "tests/support/PluginTest.h"
#include "tests/support/Property.h"
#include "tests/support/RandomText.h"

namespace epg::test {
namespace {

/// The fixture's parts without its test.
class Running : public PluginTest {
 public:
  Running() { environment.setFlushesToDisk(false); }
  void TestBody() override {}
  using PluginTest::environment;
  using PluginTest::plugin;
  using PluginTest::put;
  using PluginTest::save;
  using PluginTest::start;
  using PluginTest::storeFile;
};

using Model = std::map<std::string, PropertyListDictionary>;

PropertyListDictionary asDictionary(const Model& model) {
  PropertyListDictionary dictionary;
  for (const auto& [id, values] : model) dictionary.set(id, PropertyList(values));
  return dictionary;
}

TEST(StoreProperties, AnyOrderOfOperationsEndsAsInAMap) {
  expectForCases(usualCases, [] {
    Running running;
    Model model;
    for (Times steps(0, sizeOfCase()); steps.next();) {
      const auto step = static_cast<std::uint32_t>(between(0, std::numeric_limits<std::uint32_t>::max()));
      tell("step", step);
      const std::string id = std::to_string(step / 8 % 5);
      const std::string other = std::to_string(step / 64 % 5);
      switch (step % 8) {
        case 0:
        case 1:
          running.plugin->duplicateEPGItemWithUniqueID(id, other);
          if (model.count(id)) model[other] = PropertyListDictionary(model[id]);
          break;
        case 2:
          running.plugin->removeEPGItemsWithUniqueIDs({id, other, id});
          model.erase(id);
          model.erase(other);
          break;
        case 3:
          // What a start finds is what the last save wrote.
          running.environment.waitForThreads();
          running.save();
          running.start();
          break;
        default: {
          const PropertyListDictionary values = dictionaryOf(
              {{ZRLEPGDSTitleKey, asXMLCarries(characterFrom(step))}, {"step", PropertyList::fromUnsigned(step)}});
          running.plugin->epgItems()->setItem(id, std::make_shared<MemoryItem>(values));
          model[id] = values;
          break;
        }
      }
    }
    running.environment.waitForThreads();
    running.save();
    HOLDS(running.storeFile() == asDictionary(model));
    HOLDS(running.plugin->epgItems()->size() == model.size());
  });
}

}  // namespace
}  // namespace epg::test
