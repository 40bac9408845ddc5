#include "store/ShardedItemStore.h"

#include <functional>
#include <utility>

#include "store/ItemValues.h"
#include "store/MemoryItem.h"
#include "store/Prefetch.h"

namespace epg {

namespace {

std::size_t hashOf(std::string_view uniqueID) { return std::hash<std::string_view>()(uniqueID); }

}  // namespace

class ShardedItemStore::Snapshot : public EPGItemStoreSnapshot {
 public:
  explicit Snapshot(std::vector<Shard> shards) : shards_(std::move(shards)) {}

  std::size_t size() const override {
    std::size_t size = 0;
    for (const Shard& shard : shards_) size += shard ? shard->size() : 0;
    return size;
  }

  const EPGItemStoreRecord* find(std::string_view uniqueID) const override {
    const std::size_t hash = hashOf(uniqueID);
    const Shard& shard = shards_[hash % shardCount];
    return shard ? shard->find(hash, uniqueID).get() : nullptr;
  }

  std::vector<const EPGItemStoreRecord*> records() const override {
    std::vector<const EPGItemStoreRecord*> records;
    records.reserve(size());
    for (const Shard& shard : shards_) {
      if (!shard) continue;
      for (const ItemStoreShard::Slot& slot : shard->slots()) {
        if (slot.record) records.push_back(slot.record.get());
      }
    }
    return records;
  }

 private:
  const std::vector<Shard> shards_;
};

ShardedItemStore::ShardedItemStore(const PropertyListDictionary& content) {
  for (const auto& [uniqueID, value] : content) {
    const PropertyListDictionary* const values = value.asDictionary();
    EPGItemStoreEntry entry =
        values ? EPGItemStoreEntry{std::make_shared<MemoryItem>(*values), {}} : EPGItemStoreEntry{nullptr, value};
    setRecord(std::make_shared<const EPGItemStoreRecord>(uniqueID, std::move(entry)));
  }
}

const ShardedItemStore::Shard& ShardedItemStore::shardOf(std::size_t hash) const { return shards_[hash % shardCount]; }

ShardedItemStore::Record ShardedItemStore::record(const std::string& uniqueID) const {
  const std::size_t hash = hashOf(uniqueID);
  // safeguard: the store's lock
  const std::lock_guard<std::mutex> lock(mutex_);
  const Shard& shard = shardOf(hash);
  return shard ? shard->find(hash, uniqueID) : nullptr;
}

std::shared_ptr<EPGItem> ShardedItemStore::item(const std::string& uniqueID) const {
  const Record found = record(uniqueID);
  return found ? found->entry.item : nullptr;
}

std::vector<std::shared_ptr<EPGItem>> ShardedItemStore::items(const std::vector<const std::string*>& uniqueIDs) const {
  struct Lookup {
    std::size_t hash;
    const ItemStoreShard* shard;
    const EPGItemStoreRecord* likely;
  };
  std::vector<Lookup> lookups;
  lookups.reserve(uniqueIDs.size());
  std::vector<std::shared_ptr<EPGItem>> items;
  items.reserve(uniqueIDs.size());
  const std::lock_guard<std::mutex> lock(mutex_);
  // Each step for all of them before the next one, which reads what this one has prefetched.
  for (const std::string* const uniqueID : uniqueIDs) {
    const std::size_t hash = hashOf(*uniqueID);
    const ItemStoreShard* const shard = shardOf(hash).get();
    lookups.push_back(Lookup{hash, shard, nullptr});
    if (shard) prefetch(shard->homeSlot(hash), 2 * sizeof(ItemStoreShard::Slot));
  }
  for (Lookup& lookup : lookups) {
    if (lookup.shard) lookup.likely = lookup.shard->firstWithHash(lookup.hash);
    prefetch(lookup.likely, sizeof(EPGItemStoreRecord));
  }
  constexpr std::size_t usualID = 56;  // Bytes, of a UUID and what a text takes besides.
  for (const Lookup& lookup : lookups) {
    if (!lookup.likely) continue;
    prefetch(lookup.likely->uniqueID.block(), usualID);
    prefetch(lookup.likely->entry.item.get(), sizeof(MemoryItem));
  }
  for (std::size_t i = 0; i < lookups.size(); ++i) {
    const Record found = lookups[i].shard ? lookups[i].shard->find(lookups[i].hash, *uniqueIDs[i]) : nullptr;
    items.push_back(found ? found->entry.item : nullptr);
  }
  return items;
}

std::vector<std::optional<PropertyListDictionary>> ShardedItemStore::values(
    const std::vector<const std::string*>& uniqueIDs) const {
  // Held until their values are taken.
  const std::vector<std::shared_ptr<EPGItem>> found = items(uniqueIDs);
  std::vector<const EPGItem*> pointers;
  pointers.reserve(found.size());
  for (const auto& item : found) pointers.push_back(item.get());
  return valuesOfItems(pointers);
}

void ShardedItemStore::setItem(const SharedText& uniqueID, std::shared_ptr<EPGItem> item) {
  if (item) setEntry(uniqueID, EPGItemStoreEntry{std::move(item), {}});
}

void ShardedItemStore::setEntry(const SharedText& uniqueID, EPGItemStoreEntry entry) {
  const auto record = std::make_shared<const EPGItemStoreRecord>(uniqueID, std::move(entry));
  recordWillStand(*record);
  if (const Record before = setRecord(record)) recordIsGone(*before);
}

ShardedItemStore::Record ShardedItemStore::setRecord(const Record& record) {
  const std::size_t hash = hashOf(record->uniqueID);
  // Given up after the lock, should it be the last hold on something that looks at the store as it goes.
  Shard replaced;
  const std::lock_guard<std::mutex> lock(mutex_);
  return changeableShard(hash, &replaced).set(hash, record);
}

ItemStoreShard& ShardedItemStore::changeableShard(std::size_t hash, Shard* replaced) {
  const std::size_t index = hash % shardCount;
  Shard& shard = shards_[index];
  // safeguard: not changing what a snapshot shares
  if (!shard || epochs_[index] != epoch_) {
    *replaced = shard;
    shard = shard ? std::make_shared<ItemStoreShard>(*shard) : std::make_shared<ItemStoreShard>();
    epochs_[index] = epoch_;
  }
  return *shard;
}

void ShardedItemStore::removeItem(const std::string& uniqueID) {
  if (const Record gone = remove(uniqueID, Removed::Items)) recordIsGone(*gone);
}

void ShardedItemStore::removeEntry(const std::string& uniqueID) {
  if (const Record gone = remove(uniqueID, Removed::Everything)) recordIsGone(*gone);
}

ShardedItemStore::Record ShardedItemStore::remove(const std::string& uniqueID, Removed what) {
  const std::size_t hash = hashOf(uniqueID);
  Shard replaced;
  const std::lock_guard<std::mutex> lock(mutex_);
  const Shard& shard = shardOf(hash);
  const Record found = shard ? shard->find(hash, uniqueID) : nullptr;
  if (!found || (what == Removed::Items && !found->entry.item)) return nullptr;
  return changeableShard(hash, &replaced).remove(hash, uniqueID);
}

std::shared_ptr<const EPGItemStoreSnapshot> ShardedItemStore::snapshot() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  auto snapshot = std::make_shared<const Snapshot>(shards_);
  ++epoch_;
  return snapshot;
}

}  // namespace epg
