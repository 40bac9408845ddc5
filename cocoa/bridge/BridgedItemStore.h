#pragma once

#import <Foundation/Foundation.h>

#include <string>

#import "cocoa/bridge/HandedOutObjects.h"
#include "store/EPGItemStore.h"

namespace epg::cocoa {

/// The plug-in's own item store together with the objects that a host was handed out of it. They go with their
/// entries, whoever removes or replaces those.
class BridgedItemStore : public EPGItemStore {
 public:
  BridgedItemStore() = default;
  /// With all that stands in the other store, which is empty then.
  explicit BridgedItemStore(EPGItemStore& other) { takeOver(other); }

  /// What stands under the ID as an object, autoreleased; nil when nothing does.
  id object(const std::string& uniqueID);
  /// The object of a record of one of this store's snapshots, autoreleased: the one that is handed out for its entry,
  /// as long as that stands in the store.
  id objectOfRecord(const EPGItemStoreRecord& record);

  void removeItem(const std::string& uniqueID) override;
  void setEntry(const SharedText& uniqueID, EPGItemStoreEntry entry) override;
  void removeEntry(const std::string& uniqueID) override;

 private:
  id standingObject(const std::string& uniqueID, const EPGItemStoreEntry& given);

  HandedOutObjects handedOut_;
};

/// The entry as an object, autoreleased, and kept among those that were handed out under the ID.
id objectOfEntry(HandedOutObjects& handedOut, const std::string& uniqueID, const EPGItemStoreEntry& entry);

}  // namespace epg::cocoa
