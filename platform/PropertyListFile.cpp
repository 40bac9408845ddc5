#include "platform/PropertyListFile.h"

#include <cstring>

#include "platform/Environment.h"
#include "platform/PropertyListForms.h"

namespace epg {

std::optional<PropertyList> parsePropertyList(const std::string& bytes, std::string* problem) {
  return isBinaryPropertyList(bytes) ? parseBinaryPropertyList(bytes, problem) : parseXMLPropertyList(bytes, problem);
}

std::optional<PropertyListDictionary> readPropertyListDictionary(Environment& environment, const std::string& path,
                                                                 std::string* problem) {
  std::string bytes;
  const int error = readWholeFile(environment, path, &bytes);
  if (error != 0) {
    if (problem) *problem = std::strerror(error);
    return std::nullopt;
  }
  const std::optional<PropertyList> list = parsePropertyList(bytes, problem);
  if (!list) return std::nullopt;
  const PropertyListDictionary* dictionary = list->asDictionary();
  if (!dictionary) {
    if (problem) *problem = "the top level is no dictionary";
    return std::nullopt;
  }
  return *dictionary;
}

}  // namespace epg
