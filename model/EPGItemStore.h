#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/EPGItem.h"
#include "model/EPGItemStoreSnapshot.h"
#include "plist/PropertyList.h"

namespace epg {

/// The item store: EPG unique ID to EPG item, the key alone deciding which item belongs to which entry.
/// `ShardedItemStore` keeps the items; a face may have a store that is an object of its platform.
///
/// A live container that the host may change too. Every operation may be called from any thread and takes effect at
/// once.
class EPGItemStore {
 public:
  EPGItemStore() = default;
  EPGItemStore(const EPGItemStore&) = delete;
  EPGItemStore& operator=(const EPGItemStore&) = delete;
  virtual ~EPGItemStore() = default;

  /// Null when there is no item under the ID.
  virtual std::shared_ptr<EPGItem> item(const std::string& uniqueID) const = 0;
  /// The items' values, one for each ID and in their order; nothing where there is no item. Whoever needs many asks for
  /// a few at once: they lie all over memory, which can then be waited for once for all of them.
  virtual std::vector<std::optional<PropertyListDictionary>> values(
      const std::vector<const std::string*>& uniqueIDs) const;
  /// Replaces whatever stands under the ID. A null item changes nothing.
  virtual void setItem(const SharedText& uniqueID, std::shared_ptr<EPGItem> item) = 0;
  /// Removes the item of the ID; an entry that is no item stays.
  virtual void removeItem(const std::string& uniqueID) = 0;
  virtual std::shared_ptr<const EPGItemStoreSnapshot> snapshot() const = 0;

  /// The values of one item.
  std::optional<PropertyListDictionary> valuesOf(const std::string& uniqueID) const;
  /// The EPG unique IDs of all items, sorted by their bytes.
  std::vector<std::string> uniqueIDs() const;
  /// The number of items; entries that are none do not count. Takes as long as `uniqueIDs`.
  std::size_t size() const;
};

}  // namespace epg
