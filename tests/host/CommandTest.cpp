#include "tests/host/CommandTest.h"

#include <sys/stat.h>

#include <sstream>

#include "host/commands/CommandLine.h"
#include "host/terminal/Messages.h"
#include "model/KeyConstants.h"
#include "plist/PropertyListFile.h"
#include "store/ItemStoreFile.h"

namespace epg::test {

CommandTest::CommandTest() : resourceFolder_(folder_.makeFolder("resources")) {
  PropertyListDictionary catalogue;
  catalogue.set("tags", names({"Live", "Repeat", "News", "News Magazine", "Sport"}));
  writeFile(resourceFolder_ + "/Tags.plist", propertyListXML(PropertyList(catalogue)).value_or(""));
  makeEnvironment_ = [](Messages& messages) { return std::make_unique<ReportingEnvironment>(messages); };
}

CommandResult CommandTest::run(const std::vector<std::string>& arguments, const std::string& input) {
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  Messages messages(err, false);
  const std::unique_ptr<ReportingEnvironment> environment = makeEnvironment_(messages);
  CommandContext context{*environment, messages, in, out, dataFolder(), resourceFolder_};
  CommandResult result;
  result.status = runCommandLine(arguments, context);
  result.output = out.str();
  result.messages = err.str();
  return result;
}

CommandResult CommandTest::runWell(const std::vector<std::string>& arguments, const std::string& input) {
  CommandResult result = run(arguments, input);
  EXPECT_EQ(result.status, 0) << result.messages;
  return result;
}

std::string CommandTest::write(const std::string& name, const std::string& content) const {
  writeFile(file(name), content);
  return file(name);
}

std::string CommandTest::writeGuide(const std::string& elements) const {
  return write("guide.xml", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<tv>\n" + elements + "</tv>\n");
}

void CommandTest::writeItemStore(const PropertyListDictionary& entries) const {
  if (!exists(dataFolder())) folder_.makeFolder("data");
  writeFile(storePath(), propertyListXML(PropertyList(entries)).value_or(""));
}

PropertyListDictionary CommandTest::store() const {
  std::string problem;
  const auto value = parsePropertyList(contentOf(storePath()), &problem);
  EXPECT_TRUE(value && value->asDictionary()) << problem;
  return value && value->asDictionary() ? *value->asDictionary() : PropertyListDictionary();
}

std::string CommandTest::configureExport(const std::string& name) const {
  if (!exists(dataFolder())) folder_.makeFolder("data");
  const std::string folder = folder_.makeFolder("export of " + name);
  PropertyListDictionary configuration;
  configuration.set("exportPath", folder);
  writeFile(dataFolder() + "/" + name + ".epgconf", propertyListXML(PropertyList(configuration)).value_or(""));
  return folder;
}

PropertyListDictionary item(const std::string& uniqueID, std::vector<PropertyListDictionary::Entry> entries) {
  entries.emplace_back(ZRLEPGDSUniqueIDKey, uniqueID);
  return PropertyListDictionary(std::move(entries));
}

PropertyListDictionary storeOf(const std::vector<PropertyListDictionary>& items) {
  PropertyListDictionary store;
  for (const PropertyListDictionary& each : items) store.set(*each.find(ZRLEPGDSUniqueIDKey)->asString(), each);
  return store;
}

PropertyList names(const std::vector<std::string>& texts) {
  return PropertyList(PropertyList::Array(texts.begin(), texts.end()));
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace epg::test
