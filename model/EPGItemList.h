#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "model/EPGItem.h"

namespace epg {

/// The list of items under edit, one object shared by the editing session and the editor.
///
/// Used on the host's thread only; the items in it may be read by any thread. A face whose platform has lists and
/// items of its own derives from it.
class EPGItemList {
 public:
  EPGItemList() = default;
  EPGItemList(const EPGItemList&) = delete;
  EPGItemList& operator=(const EPGItemList&) = delete;
  virtual ~EPGItemList() = default;

  virtual std::size_t size() const;
  virtual std::shared_ptr<EPGItem> at(std::size_t index) const;
  virtual void append(std::shared_ptr<EPGItem> item);
  virtual void clear();

  /// Grows with every change of the list itself or of any item, so that what was computed from the list can be
  /// kept while it stands still. Nothing when changes cannot be seen from here: a list that keeps its elements in
  /// another place, or holds items that change without `EPGItem`'s own operations, has to say so.
  virtual std::optional<std::size_t> changeCount() const;

 private:
  std::vector<std::shared_ptr<EPGItem>> items_;
  std::size_t ownChanges_ = 0;
};

}  // namespace epg
