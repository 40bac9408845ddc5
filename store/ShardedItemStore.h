#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/EPGItemStore.h"
#include "plist/PropertyList.h"
#include "store/ItemStoreShard.h"

namespace epg {

/// The store of its own: its records lie in shards that snapshots share, so that a snapshot takes the same few
/// microseconds whatever the store holds, and a change after one copies a single shard.
///
/// Any thread; a lock is held for a single change and for the look-ups of one call.
class ShardedItemStore : public EPGItemStore {
 public:
  ShardedItemStore() = default;
  explicit ShardedItemStore(const PropertyListDictionary& content);

  std::shared_ptr<EPGItem> item(const std::string& uniqueID) const override;
  std::vector<std::optional<PropertyListDictionary>> values(
      const std::vector<const std::string*>& uniqueIDs) const override;
  void setItem(const SharedText& uniqueID, std::shared_ptr<EPGItem> item) override;
  void removeItem(const std::string& uniqueID) override;
  std::shared_ptr<const EPGItemStoreSnapshot> snapshot() const override;

  using Record = ItemStoreShard::Record;

  /// What stands under the ID, an item or not; null when nothing does.
  Record record(const std::string& uniqueID) const;
  void setEntry(const SharedText& uniqueID, EPGItemStoreEntry entry);
  void removeEntry(const std::string& uniqueID);

 protected:
  // For a face: called without a lock by the thread that makes the change.

  virtual void recordWillStand(const EPGItemStoreRecord& /*record*/) const {}
  virtual void recordIsGone(const EPGItemStoreRecord& /*record*/) const {}

 private:
  using Shard = std::shared_ptr<ItemStoreShard>;
  class Snapshot;

  const Shard& shardOf(std::size_t hash) const;
  /// What stood under its ID before, or null.
  Record setRecord(const Record& record);
  std::vector<std::shared_ptr<EPGItem>> items(const std::vector<const std::string*>& uniqueIDs) const;
  /// The hash's shard, ready to be changed: a copy of its own where a snapshot has the old one, which goes to
  /// `replaced`. Needs the lock.
  ItemStoreShard& changeableShard(std::size_t hash, Shard* replaced);
  enum class Removed { Items, Everything };
  /// What stood there, or null.
  Record remove(const std::string& uniqueID, Removed what);

  // Many, so that a change after a snapshot copies little; few enough to be shared with one at once.
  static constexpr std::size_t shardCount = 1024;

  mutable std::mutex mutex_;
  std::vector<Shard> shards_ = std::vector<Shard>(shardCount);              ///< Null where there is nothing yet.
  std::vector<std::size_t> epochs_ = std::vector<std::size_t>(shardCount);  ///< Of each shard, when it was made.
  mutable std::size_t epoch_ = 0;  ///< The number of snapshots so far. They share the shards of earlier epochs.
};

}  // namespace epg
