#include "store/MemoryItem.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>

namespace epg {

namespace {

std::atomic<std::size_t> changesOfAllItems{0};

}  // namespace

std::mutex& MemoryItem::mutex() const {
  // Never destroyed: threads that nobody joins may still look at items while the process ends.
  static auto& mutexes = *new std::array<std::mutex, 64>;
  return mutexes[std::hash<const MemoryItem*>()(this) / alignof(std::max_align_t) % mutexes.size()];
}

PropertyListDictionary MemoryItem::values() const {
  // safeguard: the item's lock
  const std::lock_guard<std::mutex> lock(mutex());
  return values_;
}

void MemoryItem::setValues(const std::vector<PropertyListDictionary::Entry>& entries) {
  // Given up after the lock: what goes may be the host's, and may look at this item or at another one as it goes.
  PropertyListDictionary old;
  const std::lock_guard<std::mutex> lock(mutex());
  old = values_;
  PropertyListDictionary changed = values_;
  for (const auto& [key, value] : entries) changed.set(key, value);
  values_ = std::move(changed);
  ++changesOfAllItems;
}

void MemoryItem::remove(const std::string& key) {
  PropertyListDictionary old;
  const std::lock_guard<std::mutex> lock(mutex());
  old = values_;
  values_.remove(key);
  ++changesOfAllItems;
}

std::size_t MemoryItem::changeCount() { return changesOfAllItems; }

const void* MemoryItem::entriesInMemory() const {
  const std::lock_guard<std::mutex> lock(mutex());
  return values_.block();
}

}  // namespace epg
