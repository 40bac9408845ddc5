// Random operations on the store, held against a plain map.

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <map>

#include "tests/support/PluginTest.h"
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

RC_GTEST_PROP(StoreProperties, AnyOrderOfOperationsEndsAsInAPlainMap, ()) {
  Running running;
  Model model;
  const auto steps = *rc::gen::container<std::vector<std::uint32_t>>(rc::gen::arbitrary<std::uint32_t>());
  for (const std::uint32_t step : steps) {
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
        running.plugin->epgItems()->setItem(id, std::make_shared<EPGItem>(values));
        model[id] = values;
        break;
      }
    }
  }
  running.environment.waitForThreads();
  running.save();
  RC_ASSERT(running.storeFile() == asDictionary(model));
  RC_ASSERT(running.plugin->epgItems()->size() == model.size());
}

}  // namespace
}  // namespace epg::test
