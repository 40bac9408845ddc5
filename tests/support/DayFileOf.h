#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "export/DayFile.h"
#include "model/KeyConstants.h"
#include "plist/PropertyList.h"
#include "store/MemoryItem.h"
#include "store/ShardedItemStore.h"
#include "tests/support/Dictionary.h"

namespace epg::test {

/// EPG items by their EPG unique ID, and the day file that is made of them.
class ItemsForDayFile {
 public:
  ItemsForDayFile() = default;
  /// One item under the ID "E".
  explicit ItemsForDayFile(Entries entries) { add("E", std::move(entries)); }

  ItemsForDayFile& add(const std::string& uniqueID, Entries entries) {
    store_->setItem(uniqueID, std::make_shared<MemoryItem>(PropertyListDictionary(std::move(entries))));
    return *this;
  }

  const EPGItemStore& store() const { return *store_; }

  /// The bytes of the day file, nothing when it cannot be written.
  std::optional<std::string> dayFile(const std::vector<EPGEvent>& events) const {
    return dayFileContent(LocalCalendar(), DateFormatter("dd-MM-yyyy"), store(), events);
  }

 private:
  std::shared_ptr<ShardedItemStore> store_ = std::make_shared<ShardedItemStore>();
};

}  // namespace epg::test
