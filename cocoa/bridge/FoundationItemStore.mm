#import "cocoa/bridge/FoundationItemStore.h"

#import "cocoa/bridge/EPGDorvaSelinItem.h"
#import "cocoa/bridge/EPGDorvaSelinItemStore.h"
#import "cocoa/bridge/FoundationValues.h"
#import "cocoa/bridge/HostDictionary.h"
#import "cocoa/bridge/HostException.h"

namespace epg::cocoa {

std::shared_ptr<EPGItem> FoundationItemStore::item(const std::string& uniqueID) const {
  std::shared_ptr<EPGItem> item;
  callHost([&] { item = itemOfObject(objectInHostDictionary(dictionary_, toString(uniqueID))); });
  return item;
}

void FoundationItemStore::setItem(const SharedText& uniqueID, std::shared_ptr<EPGItem> item) {
  if (item != nullptr) {
    setObjectInHostDictionary(dictionary_, objectOfItem(item), toString(uniqueID));
  }
}

void FoundationItemStore::removeItem(const std::string& uniqueID) {
  NSString* const key = toString(uniqueID);
  if ([objectInHostDictionary(dictionary_, key) isKindOfClass:[NSDictionary class]]) {
    removeObjectInHostDictionary(dictionary_, key);
  }
}

std::shared_ptr<const EPGItemStoreSnapshot> FoundationItemStore::snapshot() const {
  return snapshotOfObject(dictionary_);
}

}  // namespace epg::cocoa
