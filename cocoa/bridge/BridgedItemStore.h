#pragma once

#import <Foundation/Foundation.h>

#include "store/ShardedItemStore.h"

namespace epg::cocoa {

/// The plug-in's own item store, whose records keep the objects that a host was handed out of it. Hosts rely on a
/// dictionary to keep what it holds, so such an object lives, and is the one handed out again, as long as its record.
class BridgedItemStore : public ShardedItemStore {
 public:
  using ShardedItemStore::ShardedItemStore;

 protected:
  /// An item that a host holds as an object already, as of the list under edit, is in this dictionary from now on, too.
  void recordWillStand(const EPGItemStoreRecord& record) const override;
  /// What was handed out lives on until the pool of the thread that removed or replaced it drains.
  void recordIsGone(const EPGItemStoreRecord& record) const override;
};

/// What stands in the record as an object, autoreleased.
id objectOfRecord(const EPGItemStoreRecord& record);

}  // namespace epg::cocoa
