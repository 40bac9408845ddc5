#include "host/guide/PropertyListInput.h"

#include <optional>

#include "host/terminal/Refusal.h"
#include "plist/PropertyListFile.h"

namespace epg {

PropertyList propertyListInFile(const std::string& bytes, const std::string& path) {
  std::string problem;
  std::optional<PropertyList> value = parsePropertyList(bytes, &problem);
  if (!value) throw Refusal(path + ": not a property list: " + problem);
  return std::move(*value);
}

PropertyListDictionary dictionaryInPropertyList(const std::string& bytes, const std::string& path) {
  const PropertyList value = propertyListInFile(bytes, path);
  const PropertyListDictionary* const dictionary = value.asDictionary();
  if (!dictionary) throw Refusal(path + ": a property list, but its top level is not a dictionary");
  return *dictionary;
}

}  // namespace epg
