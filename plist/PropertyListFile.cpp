#include "plist/PropertyListFile.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

#include "platform/Environment.h"
#include "plist/PropertyListForms.h"

namespace epg {

std::optional<PropertyList> parsePropertyList(std::string bytes, std::string* problem) {
  if (isBinaryPropertyList(bytes)) return parseBinaryPropertyList(bytes, problem);
  if (isOldStylePropertyList(bytes)) return parseOldStylePropertyList(bytes, problem);
  return parseXMLPropertyList(std::move(bytes), problem);
}

std::optional<PropertyListDictionary> readPropertyListDictionary(Environment& environment, const std::string& path,
                                                                 std::string* problem) {
  std::string bytes;
  const int error = readWholeFile(environment, path, &bytes);
  if (error != 0) {
    if (problem) *problem = std::strerror(error);
    return std::nullopt;
  }
  std::optional<PropertyList> list;
  try {
    list = parsePropertyList(std::move(bytes), problem);
  } catch (const std::bad_alloc&) {
    if (problem) *problem = std::strerror(ENOMEM);
  }
  if (!list) return std::nullopt;
  const PropertyListDictionary* dictionary = list->asDictionary();
  if (!dictionary) {
    if (problem) *problem = "the top level is no dictionary";
    return std::nullopt;
  }
  return *dictionary;
}

}  // namespace epg
