#include "tests/support/PluginTest.h"

#include <utility>

namespace epg::test {

PluginTest::PluginTest()
    : dataFolder(folder.makeFolder("data")),
      exportFolder(folder.makeFolder("export")),
      homeFolder(folder.makeFolder("home")) {
  folder.makeFolder("home/Desktop");
  environment.setHomeFolder(homeFolder);
  configure("Test", {{ZRLEPGDSConfigExportPath, exportFolder}});
  start();
}

PluginTest::~PluginTest() {
  plugin.reset();
  environment.waitForThreads();
}

void PluginTest::start() {
  stop();
  plugin = EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, dataFolder, environment);
  plugin->setDelegate(&delegate);
}

void PluginTest::stop() {
  plugin.reset();
  environment.waitForThreads();
}

void PluginTest::put(const std::string& uniqueID, Entries entries) {
  plugin->epgItems()->setItem(uniqueID, itemWith(std::move(entries)));
}

PropertyListDictionary PluginTest::itemInStore(const std::string& uniqueID) const {
  const auto item = plugin->epgItems()->item(uniqueID);
  EXPECT_TRUE(item) << "no item " << uniqueID;
  return item ? item->values() : PropertyListDictionary();
}

void PluginTest::writeStoreFile(Entries entries) const {
  const auto content = propertyListXML(PropertyList(dictionaryOf(std::move(entries))));
  ASSERT_TRUE(content);
  writeFile(storePath(), *content);
}

PropertyListDictionary PluginTest::storeFile() const {
  std::string problem;
  const auto content = readPropertyListDictionary(Environment::standard(), storePath(), &problem);
  EXPECT_TRUE(content) << problem;
  return content ? *content : PropertyListDictionary();
}

std::vector<std::string> PluginTest::storedIDs() const {
  std::vector<std::string> ids;
  for (const auto& entry : storeFile()) ids.emplace_back(entry.first);
  return ids;
}

void PluginTest::save() {
  plugin->saveEPGItemsToFile();
  environment.waitForThreads();
}

void PluginTest::configure(const std::string& name, Entries entries) const {
  const auto content = propertyListXML(PropertyList(dictionaryOf(std::move(entries))));
  ASSERT_TRUE(content);
  writeFile(dataFolder + "/" + name + ".epgconf", *content);
}

void PluginTest::exportAndWait(const std::vector<EPGEvent>& events, const std::string& configuration) {
  plugin->exportEvents(events, configuration);
  environment.waitForThreads();
}

}  // namespace epg::test
