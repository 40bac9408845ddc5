#pragma once

#include <cstddef>
#include <iterator>
#include <limits>
#include <memory>
#include <string_view>
#include <vector>

#include "model/EPGItem.h"
#include "platform/ByteSink.h"
#include "plist/PropertyList.h"
#include "plist/SharedText.h"

namespace epg {

/// One entry of the store: an item, or a value that is none and is carried along as it was read.
struct EPGItemStoreEntry {
  std::shared_ptr<EPGItem> item;  ///< Null where the value is no dictionary.
  PropertyList value;             ///< Only where there is no item.
};

/// An entry under its EPG unique ID.
struct EPGItemStoreRecord {
  SharedText uniqueID;
  EPGItemStoreEntry entry;
};

/// Some of the store's records: a hash table in which a record stands in its hash's slot or, where that is taken, in
/// the next free one (linear probing). Does not change while a snapshot shares it.
class EPGItemStorePart {
 public:
  using Record = std::shared_ptr<const EPGItemStoreRecord>;

  /// Free without a record.
  struct Slot {
    std::size_t hash = 0;
    Record record;
  };

  /// Makes room for so many, so that they can be put in in any order: in that of another part's slots they would crowd
  /// where a smaller table begins.
  void reserve(std::size_t count);
  /// Null when there is none.
  Record find(std::size_t hash, std::string_view uniqueID) const;
  /// Puts the record in; what stood under its ID before, or null.
  Record set(std::size_t hash, Record record);
  /// What stood under the ID, or null.
  Record remove(std::size_t hash, std::string_view uniqueID);

  /// Their number is a power of two, or none.
  const std::vector<Slot>& slots() const { return slots_; }

  // The steps of `find`, for somebody who has several records to find and has memory fetched between the steps.

  /// Has the slot fetched where the search for the hash begins.
  void fetchSlot(std::size_t hash) const;
  /// The record that `find` looks at first, null when there is none with the hash. Lives as long as it stands here.
  const EPGItemStoreRecord* firstWithHash(std::size_t hash) const;

 private:
  /// A search ends at a free slot, which is near as long as every fourth one is free.
  static std::size_t mostRecords(std::size_t slots) { return slots / 4 * 3; }
  std::size_t home(std::size_t hash) const;
  std::size_t next(std::size_t index) const { return (index + 1) & (slots_.size() - 1); }
  /// The slot of the ID, or the free one where it would be put. Needs slots.
  std::size_t position(std::size_t hash, std::string_view uniqueID) const;

  std::vector<Slot> slots_;
  std::size_t count_ = 0;
  int homeShift_ = std::numeric_limits<std::size_t>::digits;  ///< Leaves the bits of a hash that number the slots.
};

/// The store's entries at one moment, in no particular order. The items are shared with the store.
///
/// Shares all it holds with the store and with its own copies, so making one takes the same moment whatever it holds.
/// Never changes; any number of threads may read it.
class EPGItemStoreSnapshot {
 public:
  using Parts = std::vector<std::shared_ptr<EPGItemStorePart>>;

  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = EPGItemStoreRecord;
    using difference_type = std::ptrdiff_t;
    using pointer = const EPGItemStoreRecord*;
    using reference = const EPGItemStoreRecord&;

    Iterator() = default;
    Iterator(const Parts* parts, std::size_t part) : parts_(parts), part_(part) { skipFreeSlots(); }

    reference operator*() const { return *(*parts_)[part_]->slots()[slot_].record; }
    pointer operator->() const { return &**this; }
    Iterator& operator++();
    Iterator operator++(int);
    friend bool operator==(const Iterator& a, const Iterator& b) { return a.part_ == b.part_ && a.slot_ == b.slot_; }
    friend bool operator!=(const Iterator& a, const Iterator& b) { return !(a == b); }

   private:
    void skipFreeSlots();

    const Parts* parts_ = nullptr;
    std::size_t part_ = 0;
    std::size_t slot_ = 0;
  };
  using iterator = Iterator;
  using const_iterator = Iterator;
  using value_type = EPGItemStoreRecord;

  EPGItemStoreSnapshot() = default;
  /// For a store that is none of ours.
  explicit EPGItemStoreSnapshot(std::vector<EPGItemStoreRecord> records);
  /// Null parts are empty. Their number is a power of two, and a record stands in the part that the last bits of its
  /// ID's hash say.
  EPGItemStoreSnapshot(Parts parts, std::size_t size) : parts_(std::move(parts)), size_(size) {}

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  Iterator begin() const { return Iterator(&parts_, 0); }
  Iterator end() const { return Iterator(&parts_, parts_.size()); }
  /// Null when there is no such entry. Lives as long as this object.
  const EPGItemStoreRecord* find(std::string_view uniqueID) const;

  static std::size_t hashOf(std::string_view uniqueID);
  /// Which of `count` parts a record is in.
  static std::size_t partOf(std::size_t hash, std::size_t count) { return hash & (count - 1); }

 private:
  Parts parts_;
  std::size_t size_ = 0;
};

/// Appends "EPGItems.plist" as it is to hold the snapshot, each item as it is shortly before its turn comes. False,
/// with an undefined beginning appended, when the store holds what no property-list file can hold. Ends early when the
/// sink fails.
bool writeStore(ByteSink& file, const EPGItemStoreSnapshot& snapshot);

}  // namespace epg
