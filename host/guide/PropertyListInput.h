#pragma once

#include <string>

#include "plist/PropertyList.h"

namespace epg {

/// The property list in the bytes. Throws a `Refusal` that names the file and the place where it is none.
PropertyList propertyListInFile(const std::string& bytes, const std::string& path);
/// The same of one whose top level must be a dictionary.
PropertyListDictionary dictionaryInPropertyList(const std::string& bytes, const std::string& path);

}  // namespace epg
