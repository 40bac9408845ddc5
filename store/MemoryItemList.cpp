#include "store/MemoryItemList.h"

#include <typeinfo>
#include <utility>

#include "store/MemoryItem.h"

namespace epg {

std::size_t MemoryItemList::size() const { return items_.size(); }

std::shared_ptr<EPGItem> MemoryItemList::at(std::size_t index) const {
  return index < items_.size() ? items_[index] : nullptr;
}

void MemoryItemList::append(std::shared_ptr<EPGItem> item) {
  if (!item) return;
  const EPGItem& one = *item;
  if (typeid(one) != typeid(MemoryItem)) holdsOthers_ = true;
  items_.push_back(std::move(item));
  ++ownChanges_;
}

void MemoryItemList::clear() {
  items_.clear();
  holdsOthers_ = false;
  ++ownChanges_;
}

std::optional<std::size_t> MemoryItemList::changeCount() const {
  return holdsOthers_ ? std::nullopt : std::optional<std::size_t>(ownChanges_ + MemoryItem::changeCount());
}

}  // namespace epg
