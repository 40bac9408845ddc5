#import "cocoa/FoundationItemStore.h"

#include <algorithm>

#import "cocoa/EPGDorvaSelinItem.h"
#import "cocoa/EPGDorvaSelinItemStore.h"
#import "cocoa/FoundationValues.h"
#import "cocoa/HostDictionary.h"

namespace epg::cocoa {

std::shared_ptr<EPGItem> FoundationItemStore::item(const std::string& uniqueID) const {
  return itemOfObject(objectInHostDictionary(dictionary_, toString(uniqueID)));
}

void FoundationItemStore::setItem(const std::string& uniqueID, std::shared_ptr<EPGItem> item) {
  if (item != nullptr) {
    setObjectInHostDictionary(dictionary_, objectOfItem(item), toString(uniqueID));
  }
}

void FoundationItemStore::removeItem(const std::string& uniqueID) {
  removeObjectInHostDictionary(dictionary_, toString(uniqueID));
}

std::size_t FoundationItemStore::size() const { return uniqueIDs().size(); }

std::vector<std::string> FoundationItemStore::uniqueIDs() const {
  std::vector<std::string> uniqueIDs;
  for (const auto& [uniqueID, entry] : snapshot()) {
    if (entry.item != nullptr) {
      uniqueIDs.push_back(uniqueID);
    }
  }
  std::sort(uniqueIDs.begin(), uniqueIDs.end());
  return uniqueIDs;
}

EPGItemStoreSnapshot FoundationItemStore::snapshot() const { return snapshotOfObject(dictionary_); }

}  // namespace epg::cocoa
