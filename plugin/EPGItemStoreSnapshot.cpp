#include "plugin/EPGItemStoreSnapshot.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>

#include "platform/PropertyListFile.h"

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

namespace {

/// A record, and the bytes of its ID that tell most IDs apart, as a number in their order.
struct SortedRecord {
  std::uint64_t tellingBytes;
  const EPGItemStoreRecord* record;
};

/// How many bytes at the beginning are the same in all IDs.
std::size_t commonLength(const std::vector<SortedRecord>& records) {
  if (records.empty()) return 0;
  const std::string_view first = records.front().record->uniqueID;
  std::size_t common = first.size();
  for (const SortedRecord& sorted : records) {
    const std::string_view uniqueID = sorted.record->uniqueID;
    common = std::min(common, uniqueID.size());
    const auto end = first.begin() + static_cast<std::ptrdiff_t>(common);
    common = static_cast<std::size_t>(std::mismatch(first.begin(), end, uniqueID.begin()).first - first.begin());
  }
  return common;
}

/// The bytes from there on, zeros where there are none, as a number that is in the order of the bytes.
std::uint64_t bytesAsNumber(std::string_view text, std::size_t from) {
  std::uint64_t number = 0;
  for (std::size_t i = from; i < from + sizeof number; ++i) {
    number = number << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0);
  }
  return number;
}

/// Sorted by the bytes of the IDs. The IDs of a large store lie all over memory, so they are looked at once, and again
/// only where the bytes taken from them are the same; they mostly differ behind a common beginning.
std::vector<SortedRecord> sortedRecords(const EPGItemStoreSnapshot& snapshot) {
  std::vector<SortedRecord> records;
  records.reserve(snapshot.size());
  for (const EPGItemStoreRecord& record : snapshot) records.push_back(SortedRecord{0, &record});
  const std::size_t common = commonLength(records);
  for (SortedRecord& sorted : records) sorted.tellingBytes = bytesAsNumber(sorted.record->uniqueID, common);
  std::sort(records.begin(), records.end(), [](const SortedRecord& a, const SortedRecord& b) {
    if (a.tellingBytes != b.tellingBytes) return a.tellingBytes < b.tellingBytes;
    return a.record->uniqueID < b.record->uniqueID;
  });
  return records;
}

PropertyList contentOf(const EPGItemStoreEntry& entry) {
  return entry.item ? PropertyList(entry.item->values()) : entry.value;
}

}  // namespace

bool writeStore(ByteSink& file, const EPGItemStoreSnapshot& snapshot) {
  const std::vector<SortedRecord> records = sortedRecords(snapshot);
  std::vector<std::string_view> keys;
  keys.reserve(records.size());
  for (const SortedRecord& sorted : records) keys.emplace_back(sorted.record->uniqueID);
  return writePropertyListXML(file, keys, [&](std::size_t i) { return contentOf(records[i].record->entry); });
}

}  // namespace epg
