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

/// The bytes from there on, zeros where there are none, as a number that is in the order of the bytes.
std::uint64_t bytesAsNumber(std::string_view text, std::size_t from) {
  std::uint64_t number = 0;
  for (std::size_t i = from; i < from + sizeof number; ++i) {
    number = number << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0);
  }
  return number;
}

/// How many bytes at the beginning are the same, up to `limit`, which the first text has.
std::size_t commonLength(std::string_view first, std::string_view second, std::size_t limit) {
  std::size_t length = 0;
  while (length < limit && length < second.size() && first[length] == second[length]) ++length;
  return length;
}

/// Takes the telling bytes of the first records from behind a beginning of this length. How much of that beginning
/// their IDs have in common with the first one; where it is less, the bytes are of no use.
std::size_t takeTellingBytes(std::vector<SortedRecord>& records, std::size_t count, std::size_t beginning) {
  const std::string_view first = records.front().record->uniqueID;
  std::size_t common = beginning;
  for (std::size_t i = 0; i < count; ++i) {
    // Records and IDs lie all over memory. They are fetched while those before them are looked at.
    constexpr std::size_t ahead = 8;
    if (i + 2 * ahead < count) __builtin_prefetch(records[i + 2 * ahead].record);
    if (i + ahead < count) __builtin_prefetch(records[i + ahead].record->uniqueID.view().data());
    const std::string_view uniqueID = records[i].record->uniqueID;
    records[i].tellingBytes = bytesAsNumber(uniqueID, beginning);
    common = commonLength(first, uniqueID, common);
  }
  return common;
}

/// Sorted by the bytes of the IDs. IDs mostly differ behind a common beginning, so the bytes there nearly always tell
/// which comes first, without another look at the IDs.
std::vector<SortedRecord> sortedRecords(const EPGItemStoreSnapshot& snapshot) {
  std::vector<SortedRecord> records;
  records.reserve(snapshot.size());
  for (const EPGItemStoreRecord& record : snapshot) records.push_back(SortedRecord{0, &record});
  if (records.empty()) return records;
  // What some have in common, all have in common as a rule.
  constexpr std::size_t some = 64;
  const std::size_t guess =
      takeTellingBytes(records, std::min(some, records.size()), records.front().record->uniqueID.size());
  const std::size_t common = takeTellingBytes(records, records.size(), guess);
  if (common < guess) takeTellingBytes(records, records.size(), common);
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
