#include "store/ItemValues.h"

#include <cstddef>
#include <typeinfo>

#include "store/MemoryItem.h"
#include "store/Prefetch.h"

namespace epg {

std::vector<std::optional<PropertyListDictionary>> valuesOfItems(const std::vector<const EPGItem*>& items) {
  constexpr std::size_t usualSize = 192;  // Bytes of an item's entries, and of the longer texts in them.
  for (const EPGItem* const item : items) {
    // Not what a face's item holds, which it would make of the platform's object a second time.
    if (!item || typeid(*item) != typeid(MemoryItem)) continue;
    prefetch(static_cast<const MemoryItem*>(item)->entriesInMemory(), usualSize);
  }
  std::vector<std::optional<PropertyListDictionary>> values(items.size());
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (!items[i]) continue;
    values[i] = items[i]->values();
    for (const auto& [key, value] : *values[i]) prefetch(value.block(), usualSize);
  }
  return values;
}

}  // namespace epg
