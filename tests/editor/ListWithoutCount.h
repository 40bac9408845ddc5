#pragma once

#include <cstddef>
#include <optional>

#include "store/MemoryItemList.h"

namespace epg::test {

/// A list that does not tell when it changes, as one whose items are a face's own: every state is computed when it is
/// asked for.
class ListWithoutCount : public MemoryItemList {
 public:
  std::optional<std::size_t> changeCount() const override { return std::nullopt; }
};

}  // namespace epg::test
