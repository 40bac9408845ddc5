#include "store/EPGItemStore.h"

#include <algorithm>
#include <utility>

#include "platform/FetchAhead.h"

namespace epg {

EPGItemStore::EPGItemStore(const PropertyListDictionary& content) {
  for (const auto& [uniqueID, value] : content) {
    EPGItemStoreEntry entry;
    if (const PropertyListDictionary* const values = value.asDictionary()) {
      entry.item = std::make_shared<EPGItem>(*values);
    } else {
      entry.value = value;
    }
    setRecord(EPGItemStoreRecord{uniqueID, std::move(entry)});
  }
}

void EPGItemStore::takeOver(EPGItemStore& other) {
  const std::lock_guard<std::mutex> lock(other.mutex_);
  parts_.swap(other.parts_);
  madeAt_.swap(other.madeAt_);
  std::swap(snapshots_, other.snapshots_);
  std::swap(entries_, other.entries_);
  std::swap(items_, other.items_);
}

EPGItemStore::Record EPGItemStore::recordOf(const std::string& uniqueID) const {
  const std::size_t hash = EPGItemStoreSnapshot::hashOf(uniqueID);
  const std::lock_guard<std::mutex> lock(mutex_);
  const Part& part = parts_[EPGItemStoreSnapshot::partOf(hash, partCount)];
  return part ? part->find(hash, uniqueID) : nullptr;
}

EPGItemStorePart& EPGItemStore::changeablePart(std::size_t hash, Part* replaced) {
  const std::size_t index = EPGItemStoreSnapshot::partOf(hash, partCount);
  Part& part = parts_[index];
  if (!part || madeAt_[index] != snapshots_) {
    *replaced = part;
    part = part ? std::make_shared<EPGItemStorePart>(*part) : std::make_shared<EPGItemStorePart>();
    madeAt_[index] = snapshots_;
  }
  return *part;
}

void EPGItemStore::noteChange(const Record& before, const Record& after) {
  entries_ = entries_ - (before ? 1 : 0) + (after ? 1 : 0);
  items_ = items_ - (before && before->entry.item ? 1 : 0) + (after && after->entry.item ? 1 : 0);
}

std::shared_ptr<EPGItem> EPGItemStore::item(const std::string& uniqueID) const {
  const Record record = recordOf(uniqueID);
  return record ? record->entry.item : nullptr;
}

void EPGItemStore::fetchAhead(const std::vector<const std::string*>& uniqueIDs) const {
  constexpr std::size_t usualID = 56;  // Bytes, of a UUID and what a text takes besides.
  struct Sought {
    std::size_t hash;
    const EPGItemStorePart* part;
    const EPGItemStoreRecord* record;
  };
  std::vector<Sought> sought;
  std::vector<std::shared_ptr<EPGItem>> items;
  sought.reserve(uniqueIDs.size());
  items.reserve(uniqueIDs.size());
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    // Each step for all of them before the next one, which reads what this one has had fetched.
    for (const std::string* const uniqueID : uniqueIDs) {
      const std::size_t hash = EPGItemStoreSnapshot::hashOf(*uniqueID);
      const EPGItemStorePart* const part = parts_[EPGItemStoreSnapshot::partOf(hash, partCount)].get();
      if (!part) continue;
      part->fetchSlot(hash);
      sought.push_back(Sought{hash, part, nullptr});
    }
    for (Sought& each : sought) {
      each.record = each.part->firstWithHash(each.hash);
      epg::fetchAhead(each.record, sizeof(EPGItemStoreRecord));
    }
    for (const Sought& each : sought) {
      if (!each.record) continue;
      epg::fetchAhead(each.record->uniqueID.block(), usualID);
      epg::fetchAhead(each.record->entry.item.get(), sizeof(EPGItem));
    }
    for (const Sought& each : sought) {
      if (each.record && each.record->entry.item) items.push_back(each.record->entry.item);
    }
  }
  EPGItem::fetchAhead(items);
}

void EPGItemStore::setItem(const SharedText& uniqueID, std::shared_ptr<EPGItem> item) {
  if (!item) return;
  EPGItemStoreEntry entry;
  entry.item = std::move(item);
  setEntry(uniqueID, std::move(entry));
}

void EPGItemStore::removeItem(const std::string& uniqueID) { remove(uniqueID, Removed::Items); }

std::size_t EPGItemStore::size() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return items_;
}

std::vector<std::string> EPGItemStore::uniqueIDs() const {
  std::vector<std::string> ids;
  for (const auto& [uniqueID, entry] : snapshot()) {
    if (entry.item) ids.emplace_back(uniqueID);
  }
  std::sort(ids.begin(), ids.end());
  return ids;
}

EPGItemStoreSnapshot EPGItemStore::snapshot() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  EPGItemStoreSnapshot snapshot(parts_, entries_);
  ++snapshots_;
  return snapshot;
}

std::optional<EPGItemStoreEntry> EPGItemStore::entry(const std::string& uniqueID) const {
  const Record record = recordOf(uniqueID);
  return record ? std::optional<EPGItemStoreEntry>(record->entry) : std::nullopt;
}

void EPGItemStore::setEntry(const SharedText& uniqueID, EPGItemStoreEntry entry) {
  setRecord(EPGItemStoreRecord{uniqueID, std::move(entry)});
}

void EPGItemStore::setRecord(EPGItemStoreRecord record) {
  const std::size_t hash = EPGItemStoreSnapshot::hashOf(record.uniqueID);
  const Record shared = std::make_shared<const EPGItemStoreRecord>(std::move(record));
  // Given up after the lock, should it be the last hold on something that looks at the store as it goes.
  Part replaced;
  Record before;
  const std::lock_guard<std::mutex> lock(mutex_);
  before = changeablePart(hash, &replaced).set(hash, shared);
  noteChange(before, shared);
}

void EPGItemStore::removeEntry(const std::string& uniqueID) { remove(uniqueID, Removed::Everything); }

void EPGItemStore::remove(const std::string& uniqueID, Removed what) {
  const std::size_t hash = EPGItemStoreSnapshot::hashOf(uniqueID);
  Part replaced;
  Record before;
  const std::lock_guard<std::mutex> lock(mutex_);
  const Part& part = parts_[EPGItemStoreSnapshot::partOf(hash, partCount)];
  const Record found = part ? part->find(hash, uniqueID) : nullptr;
  if (!found || (what == Removed::Items && !found->entry.item)) return;
  before = changeablePart(hash, &replaced).remove(hash, uniqueID);
  noteChange(before, nullptr);
}

}  // namespace epg
