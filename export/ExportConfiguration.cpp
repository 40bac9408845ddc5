#include "export/ExportConfiguration.h"

#include "model/EPGItem.h"
#include "model/KeyConstants.h"
#include "platform/Environment.h"
#include "platform/Paths.h"
#include "plist/PropertyListFile.h"

namespace epg {

const char* const exportConfigurationExtension = "epgconf";
const char* const defaultExportConfigurationName = "Default EPG Settings";

namespace {

PropertyListDictionary defaultConfiguration(Environment& environment) {
  PropertyListDictionary configuration;
  configuration.set(ZRLEPGDSConfigSourceID, "0");
  configuration.set(ZRLEPGDSConfigExportPath, appendPathComponent(environment.homeFolder(), "Desktop"));
  return configuration;
}

}  // namespace

std::vector<std::string> exportConfigurationNames(Environment& environment, const std::string& dataFolderPath) {
  std::vector<std::string> entries;
  if (environment.listFolder(dataFolderPath, &entries) != 0) entries.clear();
  std::vector<std::string> names;
  for (const std::string& entry : entries) {
    if (pathExtension(entry) == exportConfigurationExtension) names.push_back(deletePathExtension(entry));
  }
  if (names.empty()) names.emplace_back(defaultExportConfigurationName);
  return names;
}

PropertyListDictionary exportConfiguration(Environment& environment, const std::string& dataFolderPath,
                                           const std::string& configurationFilename) {
  const std::string path =
      appendPathExtension(appendPathComponent(dataFolderPath, configurationFilename), exportConfigurationExtension);
  const auto configuration = readPropertyListDictionary(environment, path);
  return configuration ? *configuration : defaultConfiguration(environment);
}

std::optional<std::string> exportFolder(Environment& environment, const PropertyListDictionary& configuration) {
  const auto path = stringValue(configuration, ZRLEPGDSConfigExportPath);
  if (!path) return std::nullopt;
  return expandTilde(environment, std::string(*path));
}

}  // namespace epg
