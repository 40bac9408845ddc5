#include "model/EPGItemStore.h"

#include <algorithm>

namespace epg {

std::vector<std::optional<PropertyListDictionary>> EPGItemStore::values(
    const std::vector<const std::string*>& uniqueIDs) const {
  std::vector<std::optional<PropertyListDictionary>> values;
  values.reserve(uniqueIDs.size());
  for (const std::string* const uniqueID : uniqueIDs) values.push_back(valuesOf(*uniqueID));
  return values;
}

std::optional<PropertyListDictionary> EPGItemStore::valuesOf(const std::string& uniqueID) const {
  const std::shared_ptr<EPGItem> found = item(uniqueID);
  return found ? std::optional<PropertyListDictionary>(found->values()) : std::nullopt;
}

std::vector<std::string> EPGItemStore::uniqueIDs() const {
  std::vector<std::string> ids;
  const std::shared_ptr<const EPGItemStoreSnapshot> now = snapshot();
  for (const EPGItemStoreRecord* const record : now->records()) {
    if (record->entry.item) ids.emplace_back(record->uniqueID);
  }
  std::sort(ids.begin(), ids.end());
  return ids;
}

std::size_t EPGItemStore::size() const { return uniqueIDs().size(); }

}  // namespace epg
