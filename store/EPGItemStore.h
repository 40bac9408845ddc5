#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "model/EPGItem.h"
#include "plist/PropertyList.h"
#include "store/EPGItemStoreSnapshot.h"

namespace epg {

/// The item store: EPG unique ID to EPG item, the key alone deciding which item belongs to which entry.
///
/// A live container that the host may change too. Every operation may be called from any thread and takes effect
/// at once; a lock is held for the single look-up or change, and for the few look-ups of `fetchAhead`.
class EPGItemStore {
 public:
  EPGItemStore() = default;
  explicit EPGItemStore(const PropertyListDictionary& content);
  EPGItemStore(const EPGItemStore&) = delete;
  EPGItemStore& operator=(const EPGItemStore&) = delete;
  virtual ~EPGItemStore() = default;

  /// Null when there is no item under the ID.
  virtual std::shared_ptr<EPGItem> item(const std::string& uniqueID) const;
  /// Replaces whatever stands under the ID. A null item changes nothing.
  virtual void setItem(const SharedText& uniqueID, std::shared_ptr<EPGItem> item);
  /// Removes the item of the ID; an entry that is no item stays.
  virtual void removeItem(const std::string& uniqueID);
  /// The number of items; entries that are none do not count.
  virtual std::size_t size() const;
  /// Has the processor fetch what somebody who is about to look these items up is going to read of them. Takes about a
  /// microsecond for each item, and changes nothing but the time that the look-ups take.
  void fetchAhead(const std::vector<const std::string*>& uniqueIDs) const;
  /// The EPG unique IDs of all items, sorted by their bytes.
  virtual std::vector<std::string> uniqueIDs() const;
  /// Takes the same few microseconds whatever the store holds.
  virtual EPGItemStoreSnapshot snapshot() const;

  /// What stands under the key, an item or not; nothing when there is no such key.
  virtual std::optional<EPGItemStoreEntry> entry(const std::string& uniqueID) const;
  virtual void setEntry(const SharedText& uniqueID, EPGItemStoreEntry entry);
  virtual void removeEntry(const std::string& uniqueID);

 protected:
  /// Moves everything from the other store to this one, which is empty and which nobody else knows yet.
  void takeOver(EPGItemStore& other);

 private:
  using Record = EPGItemStorePart::Record;
  using Part = std::shared_ptr<EPGItemStorePart>;

  Record recordOf(const std::string& uniqueID) const;
  void setRecord(EPGItemStoreRecord record);
  /// The part of the hash, ready to be changed: a copy of its own where a snapshot has the old one, which goes to
  /// `replaced`. Needs the lock.
  EPGItemStorePart& changeablePart(std::size_t hash, Part* replaced);
  void noteChange(const Record& before, const Record& after);
  enum class Removed { Items, Everything };
  void remove(const std::string& uniqueID, Removed what);

  // Many, so that a change after a snapshot copies little; few enough to be shared with one at once.
  static constexpr std::size_t partCount = 1024;

  mutable std::mutex mutex_;
  EPGItemStoreSnapshot::Parts parts_ = EPGItemStoreSnapshot::Parts(partCount);
  std::vector<std::size_t> madeAt_ = std::vector<std::size_t>(partCount);  ///< For each part, `snapshots_` at the time.
  mutable std::size_t snapshots_ = 0;  ///< Taken so far. Parts from before the last one are shared.
  std::size_t entries_ = 0;
  std::size_t items_ = 0;
};

}  // namespace epg
