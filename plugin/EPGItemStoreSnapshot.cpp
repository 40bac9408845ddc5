#include "plugin/EPGItemStoreSnapshot.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace epg {

std::vector<EPGItemStorePart::Slot>::const_iterator EPGItemStorePart::position(std::size_t hash,
                                                                               std::string_view uniqueID) const {
  auto slot = std::lower_bound(slots_.begin(), slots_.end(), hash,
                               [](const Slot& a, std::size_t wanted) { return a.hash < wanted; });
  while (slot != slots_.end() && slot->hash == hash && slot->record->uniqueID != uniqueID) ++slot;
  return slot;
}

EPGItemStorePart::Record EPGItemStorePart::find(std::size_t hash, std::string_view uniqueID) const {
  const auto slot = position(hash, uniqueID);
  return slot != slots_.end() && slot->hash == hash ? slot->record : nullptr;
}

EPGItemStorePart::Record EPGItemStorePart::set(std::size_t hash, Record record) {
  const auto slot = position(hash, record->uniqueID);
  if (slot == slots_.end() || slot->hash != hash) {
    slots_.insert(slot, Slot{hash, std::move(record)});
    return nullptr;
  }
  std::swap(slots_[static_cast<std::size_t>(slot - slots_.begin())].record, record);
  return record;
}

EPGItemStorePart::Record EPGItemStorePart::remove(std::size_t hash, std::string_view uniqueID) {
  const auto slot = position(hash, uniqueID);
  if (slot == slots_.end() || slot->hash != hash) return nullptr;
  Record removed = slot->record;
  slots_.erase(slot);
  return removed;
}

void EPGItemStoreSnapshot::Iterator::skipEmptyParts() {
  while (part_ < parts_->size() && (!(*parts_)[part_] || slot_ >= (*parts_)[part_]->slots().size())) {
    ++part_;
    slot_ = 0;
  }
}

EPGItemStoreSnapshot::Iterator& EPGItemStoreSnapshot::Iterator::operator++() {
  ++slot_;
  skipEmptyParts();
  return *this;
}

EPGItemStoreSnapshot::Iterator EPGItemStoreSnapshot::Iterator::operator++(int) {
  const Iterator before = *this;
  ++*this;
  return before;
}

EPGItemStoreSnapshot::EPGItemStoreSnapshot(std::vector<EPGItemStoreRecord> records) {
  const auto part = std::make_shared<EPGItemStorePart>();
  for (EPGItemStoreRecord& record : records) {
    const std::size_t hash = hashOf(record.uniqueID);
    if (!part->set(hash, std::make_shared<const EPGItemStoreRecord>(std::move(record)))) ++size_;
  }
  parts_.push_back(part);
}

const EPGItemStoreRecord* EPGItemStoreSnapshot::find(std::string_view uniqueID) const {
  if (parts_.empty()) return nullptr;
  const std::size_t hash = hashOf(uniqueID);
  const auto& part = parts_[partOf(hash, parts_.size())];
  return part ? part->find(hash, uniqueID).get() : nullptr;
}

std::size_t EPGItemStoreSnapshot::hashOf(std::string_view uniqueID) { return std::hash<std::string_view>()(uniqueID); }

PropertyList propertyListOfStore(const EPGItemStoreSnapshot& snapshot) {
  std::vector<PropertyListDictionary::Entry> entries;
  entries.reserve(snapshot.size());
  for (const auto& [uniqueID, entry] : snapshot) {
    entries.emplace_back(uniqueID, entry.item ? PropertyList(entry.item->values()) : entry.value);
  }
  return PropertyList(PropertyListDictionary(std::move(entries)));
}

}  // namespace epg
