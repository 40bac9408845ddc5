#include "plugin/EPGItemStore.h"

#include <algorithm>

namespace epg {

EPGItemStore::EPGItemStore(const PropertyListDictionary& content) {
  entries_.reserve(content.size());
  for (const auto& [uniqueID, value] : content) {
    EPGItemStoreEntry entry;
    if (auto values = value.sharedDictionary()) {
      entry.item = std::make_shared<EPGItem>(std::move(values));
    } else {
      entry.value = value;
    }
    entries_.emplace(uniqueID, std::move(entry));
  }
}

std::shared_ptr<EPGItem> EPGItemStore::item(const std::string& uniqueID) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto entry = entries_.find(uniqueID);
  return entry == entries_.end() ? nullptr : entry->second.item;
}

void EPGItemStore::setItem(const std::string& uniqueID, std::shared_ptr<EPGItem> item) {
  if (!item) return;
  EPGItemStoreEntry entry;
  entry.item = std::move(item);
  setEntry(uniqueID, std::move(entry));
}

void EPGItemStore::removeItem(const std::string& uniqueID) {
  EPGItemStoreEntry removed;  // Given up after the lock, should it be the last hold on it.
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto entry = entries_.find(uniqueID);
  if (entry == entries_.end() || !entry->second.item) return;
  std::swap(entry->second, removed);
  entries_.erase(entry);
}

std::size_t EPGItemStore::size() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return static_cast<std::size_t>(
      std::count_if(entries_.begin(), entries_.end(), [](const auto& entry) { return entry.second.item != nullptr; }));
}

std::vector<std::string> EPGItemStore::uniqueIDs() const {
  std::vector<std::string> ids;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& [uniqueID, entry] : entries_) {
      if (entry.item) ids.push_back(uniqueID);
    }
  }
  std::sort(ids.begin(), ids.end());
  return ids;
}

EPGItemStoreSnapshot EPGItemStore::snapshot() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return EPGItemStoreSnapshot(entries_.begin(), entries_.end());
}

std::optional<EPGItemStoreEntry> EPGItemStore::entry(const std::string& uniqueID) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto entry = entries_.find(uniqueID);
  if (entry == entries_.end()) return std::nullopt;
  return entry->second;
}

void EPGItemStore::setEntry(const std::string& uniqueID, EPGItemStoreEntry entry) {
  // What stood there is given up after the lock, should it be the last hold on it.
  const std::lock_guard<std::mutex> lock(mutex_);
  std::swap(entries_[uniqueID], entry);
}

void EPGItemStore::removeEntry(const std::string& uniqueID) {
  EPGItemStoreEntry removed;
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto entry = entries_.find(uniqueID);
  if (entry == entries_.end()) return;
  std::swap(entry->second, removed);
  entries_.erase(entry);
}

PropertyList propertyListOfStore(const EPGItemStoreSnapshot& snapshot) {
  std::vector<PropertyListDictionary::Entry> entries;
  entries.reserve(snapshot.size());
  for (const auto& [uniqueID, entry] : snapshot) {
    entries.emplace_back(uniqueID, entry.item ? PropertyList(entry.item->values()) : entry.value);
  }
  return PropertyList(PropertyListDictionary(std::move(entries)));
}

}  // namespace epg
