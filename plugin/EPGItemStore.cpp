#include "plugin/EPGItemStore.h"

#include <algorithm>
#include <utility>

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

void EPGItemStore::setItem(const std::string& uniqueID, std::shared_ptr<EPGItem> item) {
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

void EPGItemStore::setEntry(const std::string& uniqueID, EPGItemStoreEntry entry) {
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
