#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Instant.h"
#include "plist/PropertyList.h"

namespace epg {

class Environment;

/// The extension of export configuration files in the data folder.
extern const char* const exportConfigurationExtension;

/// The name that is offered where there is no configuration: "Default EPG Settings".
extern const char* const defaultExportConfigurationName;

/// The names of the export configurations in the data folder, in the order the system lists them; the default name
/// alone where there is none or the folder cannot be listed.
std::vector<std::string> exportConfigurationNames(Environment& environment, const std::string& dataFolderPath);

/// The named export configuration, or the default one (the user's Desktop) when it cannot be read. A configuration
/// that can be read is taken as it is, without a fallback for keys that it lacks.
PropertyListDictionary exportConfiguration(Environment& environment, const std::string& dataFolderPath,
                                           const std::string& configurationFilename);

/// The folder that the configuration names, tilde expanded; nothing without one.
std::optional<std::string> exportFolder(Environment& environment, const PropertyListDictionary& configuration);

}  // namespace epg
