#include "model/EPGItemList.h"

#include <utility>

namespace epg {

std::size_t EPGItemList::size() const { return items_.size(); }

std::shared_ptr<EPGItem> EPGItemList::at(std::size_t index) const {
  return index < items_.size() ? items_[index] : nullptr;
}

void EPGItemList::append(std::shared_ptr<EPGItem> item) {
  if (!item) return;
  items_.push_back(std::move(item));
  ++ownChanges_;
}

void EPGItemList::clear() {
  items_.clear();
  ++ownChanges_;
}

std::optional<std::size_t> EPGItemList::changeCount() const { return ownChanges_ + EPGItem::changeCount(); }

}  // namespace epg
