#include "store/EPGItemStoreSnapshot.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <numeric>
#include <string_view>
#include <utility>

#include "platform/FetchAhead.h"
#include "plist/PropertyListFile.h"

namespace epg {

// The hash's last bits say which part a record is in, so the first ones choose the slot.
std::size_t EPGItemStorePart::home(std::size_t hash) const { return hash >> homeShift_; }

std::size_t EPGItemStorePart::position(std::size_t hash, std::string_view uniqueID) const {
  std::size_t index = home(hash);
  while (slots_[index].record && (slots_[index].hash != hash || slots_[index].record->uniqueID != uniqueID)) {
    index = next(index);
  }
  return index;
}

void EPGItemStorePart::fetchSlot(std::size_t hash) const {
  if (!slots_.empty()) fetchAhead(&slots_[home(hash)], 2 * sizeof(Slot));
}

const EPGItemStoreRecord* EPGItemStorePart::firstWithHash(std::size_t hash) const {
  if (slots_.empty()) return nullptr;
  std::size_t index = home(hash);
  while (slots_[index].record && slots_[index].hash != hash) index = next(index);
  return slots_[index].record.get();
}

EPGItemStorePart::Record EPGItemStorePart::find(std::size_t hash, std::string_view uniqueID) const {
  return slots_.empty() ? nullptr : slots_[position(hash, uniqueID)].record;
}

void EPGItemStorePart::reserve(std::size_t count) {
  if (count <= mostRecords(slots_.size())) return;
  int powerOfTwo = 3;
  while (mostRecords(std::size_t{1} << powerOfTwo) < count) ++powerOfTwo;
  std::vector<Slot> old(std::size_t{1} << powerOfTwo);
  old.swap(slots_);
  homeShift_ = std::numeric_limits<std::size_t>::digits - powerOfTwo;
  for (Slot& slot : old) {
    if (!slot.record) continue;
    std::size_t index = home(slot.hash);
    while (slots_[index].record) index = next(index);
    slots_[index] = std::move(slot);
  }
}

EPGItemStorePart::Record EPGItemStorePart::set(std::size_t hash, Record record) {
  // Replacing needs no room, and must not fail for want of it.
  std::size_t index = slots_.empty() ? 0 : position(hash, record->uniqueID);
  const bool isNew = slots_.empty() || !slots_[index].record;
  if (isNew && count_ == mostRecords(slots_.size())) {
    reserve(count_ + 1);
    index = position(hash, record->uniqueID);
  }
  Slot& slot = slots_[index];
  slot.hash = hash;
  std::swap(slot.record, record);
  if (isNew) ++count_;
  return record;
}

EPGItemStorePart::Record EPGItemStorePart::remove(std::size_t hash, std::string_view uniqueID) {
  if (slots_.empty()) return nullptr;
  std::size_t free = position(hash, uniqueID);
  Record removed = std::move(slots_[free].record);
  slots_[free].record = nullptr;
  if (!removed) return nullptr;
  --count_;
  // Records behind it move up where a search for them would now end at the free slot.
  for (std::size_t index = next(free); slots_[index].record; index = next(index)) {
    const std::size_t wayFromHome = (index - home(slots_[index].hash)) & (slots_.size() - 1);
    const std::size_t wayFromFree = (index - free) & (slots_.size() - 1);
    if (wayFromHome < wayFromFree) continue;
    std::swap(slots_[free], slots_[index]);
    free = index;
  }
  return removed;
}

void EPGItemStoreSnapshot::Iterator::skipFreeSlots() {
  for (; part_ < parts_->size(); ++part_, slot_ = 0) {
    if (!(*parts_)[part_]) continue;
    const auto& slots = (*parts_)[part_]->slots();
    while (slot_ < slots.size() && !slots[slot_].record) ++slot_;
    if (slot_ < slots.size()) return;
  }
}

EPGItemStoreSnapshot::Iterator& EPGItemStoreSnapshot::Iterator::operator++() {
  ++slot_;
  skipFreeSlots();
  return *this;
}

EPGItemStoreSnapshot::Iterator EPGItemStoreSnapshot::Iterator::operator++(int) {
  const Iterator before = *this;
  ++*this;
  return before;
}

EPGItemStoreSnapshot::EPGItemStoreSnapshot(std::vector<EPGItemStoreRecord> records) {
  const auto part = std::make_shared<EPGItemStorePart>();
  part->reserve(records.size());
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

/// A radix sort, the last byte first: what decides a comparison of IDs is as good as chance, which no processor
/// foresees.
void sortByTellingBytes(std::vector<SortedRecord>& records) {
  std::vector<SortedRecord> sorted(records.size());
  for (int shift = 0; shift < std::numeric_limits<std::uint64_t>::digits; shift += 8) {
    const auto byteOf = [shift](const SortedRecord& record) {
      return static_cast<std::size_t>(record.tellingBytes >> shift & 0xFF);
    };
    std::array<std::size_t, 256> ends{};
    for (const SortedRecord& record : records) ++ends[byteOf(record)];
    if (ends[byteOf(records.front())] == records.size()) continue;
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    for (std::size_t i = records.size(); i > 0; --i) sorted[--ends[byteOf(records[i - 1])]] = records[i - 1];
    records.swap(sorted);
  }
}

void sortThoseWithTheSameTellingBytes(std::vector<SortedRecord>& records) {
  for (auto first = records.begin(); first != records.end();) {
    const auto differs = [&](const SortedRecord& record) { return record.tellingBytes != first->tellingBytes; };
    const auto last = std::find_if(first + 1, records.end(), differs);
    std::sort(first, last,
              [](const SortedRecord& a, const SortedRecord& b) { return a.record->uniqueID < b.record->uniqueID; });
    first = last;
  }
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
  sortByTellingBytes(records);
  sortThoseWithTheSameTellingBytes(records);
  return records;
}

PropertyList contentOf(const EPGItemStoreEntry& entry) {
  return entry.item ? PropertyList(entry.item->values()) : entry.value;
}

/// What stands under the records. Each is read a few turns before its own, and the memory that it lies in is fetched
/// before that, so that a save hardly ever waits for memory.
class ContentsInTurn {
 public:
  explicit ContentsInTurn(const std::vector<SortedRecord>& records) : records_(records) {
    for (std::size_t i = 0; i < few; ++i) read(i);
  }

  /// To be asked for each once, one after the other.
  PropertyList next(std::size_t index) {
    PropertyList content = std::move(contents_[index % few]);
    read(index + few);
    return content;
  }

 private:
  static constexpr std::size_t few = 8;

  /// Reads that one, and has those fetched that are a few and twice as many behind it.
  void read(std::size_t index) {
    if (index + 2 * few < records_.size()) fetchAhead(itemOf(index + 2 * few), sizeof(EPGItem));
    if (index + few < records_.size() && itemOf(index + few)) itemOf(index + few)->fetchAhead();
    if (index >= records_.size()) return;
    PropertyList& content = contents_[index % few];
    content = contentOf(records_[index].record->entry);
    const PropertyListDictionary* const values = content.asDictionary();
    if (!values) return;
    for (const auto& [key, value] : *values) fetchAhead(value.block(), usualText);
  }

  const EPGItem* itemOf(std::size_t index) const { return records_[index].record->entry.item.get(); }

  // Bytes. Of a longer text, the processor sees by itself that it is being read on.
  static constexpr std::size_t usualText = 64;

  const std::vector<SortedRecord>& records_;
  std::array<PropertyList, few> contents_;
};

}  // namespace

bool writeStore(ByteSink& file, const EPGItemStoreSnapshot& snapshot) {
  const std::vector<SortedRecord> records = sortedRecords(snapshot);
  std::vector<std::string_view> keys;
  keys.reserve(records.size());
  for (const SortedRecord& sorted : records) keys.emplace_back(sorted.record->uniqueID);
  ContentsInTurn contents(records);
  return writePropertyListXML(file, keys, [&](std::size_t i) { return contents.next(i); });
}

}  // namespace epg
