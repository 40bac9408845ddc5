#include "store/ItemStoreShard.h"

#include <utility>

namespace epg {

// The hash's last bits say which shard a record is in, so the first ones choose the slot.
std::size_t ItemStoreShard::home(std::size_t hash) const { return hash >> homeShift_; }

std::size_t ItemStoreShard::position(std::size_t hash, std::string_view uniqueID) const {
  std::size_t index = home(hash);
  while (slots_[index].record && (slots_[index].hash != hash || slots_[index].record->uniqueID != uniqueID)) {
    index = next(index);
  }
  return index;
}

const EPGItemStoreRecord* ItemStoreShard::firstWithHash(std::size_t hash) const {
  if (slots_.empty()) return nullptr;
  std::size_t index = home(hash);
  while (slots_[index].record && slots_[index].hash != hash) index = next(index);
  return slots_[index].record.get();
}

ItemStoreShard::Record ItemStoreShard::find(std::size_t hash, std::string_view uniqueID) const {
  return slots_.empty() ? nullptr : slots_[position(hash, uniqueID)].record;
}

void ItemStoreShard::grow() {
  constexpr int bitsOfSmallest = 3;
  const int bits = slots_.empty() ? bitsOfSmallest : std::numeric_limits<std::size_t>::digits - homeShift_ + 1;
  std::vector<Slot> old(std::size_t{1} << bits);
  old.swap(slots_);
  homeShift_ = std::numeric_limits<std::size_t>::digits - bits;
  for (Slot& slot : old) {
    if (!slot.record) continue;
    std::size_t index = home(slot.hash);
    while (slots_[index].record) index = next(index);
    slots_[index] = std::move(slot);
  }
}

ItemStoreShard::Record ItemStoreShard::set(std::size_t hash, Record record) {
  // Replacing needs no room, and must not fail for want of it.
  std::size_t index = slots_.empty() ? 0 : position(hash, record->uniqueID);
  const bool isNew = slots_.empty() || !slots_[index].record;
  if (isNew && count_ == mostRecords(slots_.size())) {
    grow();
    index = position(hash, record->uniqueID);
  }
  Slot& slot = slots_[index];
  slot.hash = hash;
  std::swap(slot.record, record);
  if (isNew) ++count_;
  return record;
}

ItemStoreShard::Record ItemStoreShard::remove(std::size_t hash, std::string_view uniqueID) {
  if (slots_.empty()) return nullptr;
  std::size_t free = position(hash, uniqueID);
  Record removed = std::move(slots_[free].record);
  slots_[free].record = nullptr;
  if (!removed) return nullptr;
  --count_;
  // Records behind it move up where a search for them would now end at the free slot.
  for (std::size_t index = next(free); slots_[index].record; index = next(index)) {
    const std::size_t probeDistance = (index - home(slots_[index].hash)) & (slots_.size() - 1);
    const std::size_t wayFromFree = (index - free) & (slots_.size() - 1);
    if (probeDistance < wayFromFree) continue;
    std::swap(slots_[free], slots_[index]);
    free = index;
  }
  return removed;
}

}  // namespace epg
