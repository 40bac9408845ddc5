#import "cocoa/FoundationItemStore.h"

#import "cocoa/EPGDorvaSelinItem.h"
#import "cocoa/EPGDorvaSelinItemStore.h"
#import "cocoa/FoundationValues.h"

namespace epg::cocoa {

std::shared_ptr<EPGItem> FoundationItemStore::item(const std::string& uniqueID) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return itemOfObject([dictionary_ objectForKey:toString(uniqueID)]);
}

void FoundationItemStore::setItem(const std::string& uniqueID, std::shared_ptr<EPGItem> item) {
  if (item != nullptr) {
    const std::lock_guard<std::mutex> lock(mutex_);
    [dictionary_ setObject:objectOfItem(item) forKey:toString(uniqueID)];
  }
}

void FoundationItemStore::removeItem(const std::string& uniqueID) {
  const std::lock_guard<std::mutex> lock(mutex_);
  [dictionary_ removeObjectForKey:toString(uniqueID)];
}

std::size_t FoundationItemStore::size() const { return uniqueIDs().size(); }

std::vector<std::string> FoundationItemStore::uniqueIDs() const {
  std::vector<std::string> uniqueIDs;
  for (const auto& [uniqueID, entry] : snapshot()) {
    if (entry.item != nullptr) {
      uniqueIDs.push_back(uniqueID);
    }
  }
  return uniqueIDs;
}

EPGItemStoreSnapshot FoundationItemStore::snapshot() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return snapshotOfObject(dictionary_);
}

}  // namespace epg::cocoa
