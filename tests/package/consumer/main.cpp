#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <future>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Environment.h"
#include "platform/Paths.h"
#include "plist/PropertyListFile.h"
#include "plugin/EPGDorvaSelinManagerPlugin.h"
#include "plugin/KeyConstants.h"
#include "store/MemoryItem.h"

namespace {

class ExportReport : public epg::TelvarinManagerEPGPluginProtocol_Delegate {
 public:
  void epgExportEventCompleted(bool succeeded, const epg::EPGError* error) override {
    message_.set_value(succeeded ? std::string() : error->localizedDescription);
  }

  /// Waits for the report; empty when the export succeeded.
  std::string message() { return message_.get_future().get(); }

 private:
  std::promise<std::string> message_;
};

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

int fail(const std::string& what) {
  std::cerr << "consumer: " << what << "\n";
  return 1;
}

int run(const std::string& dataFolder) {
  mkdir(dataFolder.c_str(), 0755);

  epg::PropertyListDictionary configuration;
  configuration.set(epg::ZRLEPGDSConfigExportPath, dataFolder);
  std::ofstream(dataFolder + "/Here.epgconf", std::ios::binary)
      << epg::propertyListXML(epg::PropertyList(configuration)).value_or("");

  auto plugin = epg::EPGDorvaSelinManagerPlugin::initWithBundle(nullptr, dataFolder);
  const std::shared_ptr<epg::ObjectEnd> end = plugin->end();
  epg::PropertyListDictionary values;
  values.set(epg::ZRLEPGDSTitleKey, "Harbour & Home");
  plugin->epgItems()->setItem("entry", std::make_shared<epg::MemoryItem>(std::move(values)));
  plugin->saveEPGItemsToFile();

  ExportReport report;
  plugin->setDelegate(&report);
  epg::EPGEvent event;
  event.eventEPGUniqueID = "entry";
  event.eventEPGPlaybackUniqueID = "playback";
  event.eventEPGStartDateTime = epg::Instant::fromUnixTime(1700000000);
  event.eventEPGEndDateTime = epg::Instant::fromUnixTime(1700003600);
  plugin->exportEvents({event}, "Here");
  const std::string message = report.message();
  if (!message.empty()) {
    return fail(message);
  }
  plugin.reset();
  end->wait();

  // The day file is named after the day of the export, which may have ended meanwhile.
  std::vector<std::string> names;
  epg::Environment::standard().listFolder(dataFolder, &names);
  const auto dayFile =
      std::find_if(names.begin(), names.end(), [](const auto& name) { return epg::pathExtension(name) == "xml"; });
  if (dayFile == names.end()) {
    return fail("no day file in " + dataFolder);
  }
  if (contentOf(epg::appendPathComponent(dataFolder, *dayFile)).find("Harbour &amp; Home") == std::string::npos) {
    return fail(*dayFile + " does not hold the exported title");
  }
  const auto store = epg::readPropertyListDictionary(epg::Environment::standard(), dataFolder + "/EPGItems.plist");
  if (!store || store->find("entry") == nullptr) {
    return fail("the item was not saved");
  }
  return 0;
}

}  // namespace

int main(int count, char** arguments) { return count == 2 ? run(arguments[1]) : fail("usage: consumer DATA-FOLDER"); }
