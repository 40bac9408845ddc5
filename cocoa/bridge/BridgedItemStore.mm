#import "cocoa/bridge/BridgedItemStore.h"

#include <optional>
#include <utility>

#import "cocoa/bridge/EPGDorvaSelinItem.h"
#import "cocoa/bridge/FoundationValues.h"

namespace epg::cocoa {

namespace {

bool isSame(const EPGItemStoreEntry& a, const EPGItemStoreEntry& b) {
  return a.item != nullptr || b.item != nullptr ? a.item == b.item : a.value == b.value;
}

}  // namespace

id objectOfEntry(HandedOutObjects& handedOut, const std::string& uniqueID, const EPGItemStoreEntry& entry) {
  return entry.item != nullptr ? handedOut.object(uniqueID, entry.item) : handedOut.object(uniqueID, entry.value);
}

id BridgedItemStore::object(const std::string& uniqueID) {
  const std::optional<EPGItemStoreEntry> given = entry(uniqueID);
  return given ? standingObject(uniqueID, *given) : nil;
}

id BridgedItemStore::objectOfRecord(const EPGItemStoreRecord& record) {
  const std::string uniqueID(record.uniqueID);
  const std::optional<EPGItemStoreEntry> now = entry(uniqueID);
  if (now && isSame(*now, record.entry)) {
    return standingObject(uniqueID, record.entry);
  }
  return record.entry.item != nullptr ? objectOfItem(record.entry.item) : toObject(record.entry.value);
}

id BridgedItemStore::standingObject(const std::string& uniqueID, const EPGItemStoreEntry& given) {
  id object = objectOfEntry(handedOut_, uniqueID, given);
  // Whoever removed or replaced the entry in the meantime has not seen this object.
  const std::optional<EPGItemStoreEntry> now = entry(uniqueID);
  if (!now || !isSame(*now, given)) {
    handedOut_.forget(uniqueID);
  }
  return object;
}

void BridgedItemStore::removeItem(const std::string& uniqueID) {
  EPGItemStore::removeItem(uniqueID);
  // An entry that is no item stays.
  if (!entry(uniqueID)) {
    handedOut_.forget(uniqueID);
  }
}

void BridgedItemStore::setEntry(const SharedText& sharedID, EPGItemStoreEntry entry) {
  const std::string uniqueID(sharedID);
  const std::optional<EPGItemStoreEntry> before = this->entry(uniqueID);
  const bool stays = before && isSame(*before, entry);
  const bool isKnown = entry.item != nullptr && knownObjectOfItem(entry.item) != nil;
  EPGItemStore::setEntry(sharedID, std::move(entry));
  if (!stays) {
    handedOut_.forget(uniqueID);
  }
  if (isKnown) {
    // From now on it is in this dictionary too, where it lives on when the list under edit lets go of it.
    object(uniqueID);
  }
}

void BridgedItemStore::removeEntry(const std::string& uniqueID) {
  EPGItemStore::removeEntry(uniqueID);
  handedOut_.forget(uniqueID);
}

}  // namespace epg::cocoa
