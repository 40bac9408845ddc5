#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "model/EPGItemStoreSnapshot.h"
#include "plist/PropertyList.h"

namespace epg::test {

/// The snapshot as the property list that "EPGItems.plist" is to hold, each item as it is at the time of the call.
inline PropertyList propertyListOfStore(const std::shared_ptr<const EPGItemStoreSnapshot>& snapshot) {
  std::vector<PropertyListDictionary::Entry> entries;
  entries.reserve(snapshot->size());
  for (const EPGItemStoreRecord* const record : snapshot->records()) {
    const EPGItemStoreEntry& entry = record->entry;
    entries.emplace_back(record->uniqueID, entry.item ? PropertyList(entry.item->values()) : entry.value);
  }
  return PropertyList(PropertyListDictionary(std::move(entries)));
}

}  // namespace epg::test
