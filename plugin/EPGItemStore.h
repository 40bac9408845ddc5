#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "model/EPGItem.h"
#include "platform/PropertyList.h"

namespace epg {

/// One entry of the store: an item, or a value that is none and is carried along as it was read.
struct EPGItemStoreEntry {
  std::shared_ptr<EPGItem> item;  ///< Null where the value is no dictionary.
  PropertyList value;             ///< Only where there is no item.
};

/// The store's entries at one moment. The items are shared with the store.
using EPGItemStoreSnapshot = std::vector<std::pair<std::string, EPGItemStoreEntry>>;

/// The item store: EPG unique ID to EPG item, the key alone deciding which item belongs to which entry.
///
/// A live container that the host may change too. Every operation may be called from any thread and takes effect
/// at once; a lock is held for the single look-up or change.
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
  virtual void setItem(const std::string& uniqueID, std::shared_ptr<EPGItem> item);
  /// Removes the item of the ID; an entry that is no item stays.
  virtual void removeItem(const std::string& uniqueID);
  /// The number of items; entries that are none do not count.
  virtual std::size_t size() const;
  /// The EPG unique IDs of all items, sorted by their bytes.
  virtual std::vector<std::string> uniqueIDs() const;
  virtual EPGItemStoreSnapshot snapshot() const;

  /// What stands under the key, an item or not; nothing when there is no such key.
  virtual std::optional<EPGItemStoreEntry> entry(const std::string& uniqueID) const;
  virtual void setEntry(const std::string& uniqueID, EPGItemStoreEntry entry);
  virtual void removeEntry(const std::string& uniqueID);

 private:
  mutable std::mutex mutex_;
  std::unordered_map<std::string, EPGItemStoreEntry> entries_;
};

/// The snapshot as the property list that "EPGItems.plist" holds, each item as it is at the time of the call.
PropertyList propertyListOfStore(const EPGItemStoreSnapshot& snapshot);

}  // namespace epg
