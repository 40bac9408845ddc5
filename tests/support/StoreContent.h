#pragma once

#include <utility>
#include <vector>

#include "plist/PropertyList.h"
#include "store/EPGItemStoreSnapshot.h"

namespace epg::test {

/// The snapshot as the property list that "EPGItems.plist" is to hold, each item as it is at the time of the call.
inline PropertyList propertyListOfStore(const EPGItemStoreSnapshot& snapshot) {
  std::vector<PropertyListDictionary::Entry> entries;
  entries.reserve(snapshot.size());
  for (const auto& [uniqueID, entry] : snapshot) {
    entries.emplace_back(uniqueID, entry.item ? PropertyList(entry.item->values()) : entry.value);
  }
  return PropertyList(PropertyListDictionary(std::move(entries)));
}

}  // namespace epg::test
