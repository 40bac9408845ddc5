#include "model/EPGItem.h"

#include <utility>

#include "model/KeyConstants.h"

namespace epg {

void EPGItem::set(SharedText key, PropertyList value) {
  std::vector<PropertyListDictionary::Entry> entry;
  entry.emplace_back(std::move(key), std::move(value));
  setValues(entry);
}

std::optional<std::string_view> stringValue(const PropertyListDictionary& values, std::string_view key) {
  const PropertyList* const value = values.find(key);
  return value ? value->asString() : std::nullopt;
}

const PropertyList::Elements* tagsValue(const PropertyListDictionary& values) {
  const PropertyList* const value = values.find(ZRLEPGDSTagsKey);
  return value ? value->asArray() : nullptr;
}

}  // namespace epg
