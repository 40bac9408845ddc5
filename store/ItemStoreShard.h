#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <string_view>
#include <vector>

#include "model/EPGItemStoreSnapshot.h"

namespace epg {

/// Some of the store's records: a hash table with linear probing. A record stands in the slot that its hash names or,
/// where that is taken, in the next free one. Does not change while a snapshot shares it.
class ItemStoreShard {
 public:
  using Record = std::shared_ptr<const EPGItemStoreRecord>;

  /// Free without a record.
  struct Slot {
    std::size_t hash = 0;
    Record record;
  };

  /// Null when there is none.
  Record find(std::size_t hash, std::string_view uniqueID) const;
  /// Puts the record in; what stood under its ID before, or null.
  Record set(std::size_t hash, Record record);
  /// What stood under the ID, or null.
  Record remove(std::size_t hash, std::string_view uniqueID);

  /// The number of records.
  std::size_t size() const { return count_; }
  /// Their number is a power of two, or none.
  const std::vector<Slot>& slots() const { return slots_; }

  /// The slot where a search for the hash begins; null without slots. Only to be prefetched.
  const Slot* homeSlot(std::size_t hash) const { return slots_.empty() ? nullptr : &slots_[home(hash)]; }
  /// The record that `find` compares first, null when there is none with the hash. Lives as long as it stands here.
  const EPGItemStoreRecord* firstWithHash(std::size_t hash) const;

 private:
  /// A search ends at a free slot, which is near as long as every fourth one is free.
  static std::size_t mostRecords(std::size_t slots) { return slots / 4 * 3; }
  void grow();
  std::size_t home(std::size_t hash) const;
  std::size_t next(std::size_t index) const { return (index + 1) & (slots_.size() - 1); }
  /// The slot of the ID, or the free one where it would be put. Needs slots.
  std::size_t position(std::size_t hash, std::string_view uniqueID) const;

  std::vector<Slot> slots_;
  std::size_t count_ = 0;
  int homeShift_ = std::numeric_limits<std::size_t>::digits;  ///< Leaves the bits of a hash that number the slots.
};

}  // namespace epg
