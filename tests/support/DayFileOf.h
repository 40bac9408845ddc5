#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "export/DayFile.h"
#include "model/KeyConstants.h"
#include "plist/PropertyList.h"
#include "tests/support/Dictionary.h"

namespace epg::test {

/// EPG items by their EPG unique ID, and the day file that is made of them.
class ItemsForDayFile {
 public:
  ItemsForDayFile() = default;
  /// One item under the ID "E".
  explicit ItemsForDayFile(Entries entries) { add("E", std::move(entries)); }

  ItemsForDayFile& add(const std::string& uniqueID, Entries entries) {
    items_[uniqueID] = PropertyListDictionary(std::move(entries));
    return *this;
  }

  EPGItemLookup lookup() const {
    return [items = items_](const std::string& uniqueID) {
      const auto item = items.find(uniqueID);
      return item == items.end() ? std::nullopt : std::optional<PropertyListDictionary>(item->second);
    };
  }

  /// The bytes of the day file, nothing when it cannot be written.
  std::optional<std::string> dayFile(const std::vector<EPGEvent>& events) const {
    return dayFileContent(LocalCalendar(), DateFormatter("dd-MM-yyyy"), lookup(), events);
  }

 private:
  std::map<std::string, PropertyListDictionary> items_;
};

}  // namespace epg::test
