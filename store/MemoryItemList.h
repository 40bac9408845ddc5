#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "model/EPGItemList.h"

namespace epg {

/// A list of items that keeps them in memory. It sees their changes as long as all of them are such as are kept there.
class MemoryItemList : public EPGItemList {
 public:
  std::size_t size() const override;
  std::shared_ptr<EPGItem> at(std::size_t index) const override;
  void append(std::shared_ptr<EPGItem> item) override;
  void clear() override;
  std::optional<std::size_t> changeCount() const override;

 private:
  std::vector<std::shared_ptr<EPGItem>> items_;
  std::size_t ownChanges_ = 0;
  bool holdsOthers_ = false;
};

}  // namespace epg
