#pragma once

#import <Foundation/Foundation.h>

#include <memory>

#import "cocoa/bridge/BridgedItemStore.h"
#import "cocoa/bridge/EPGDorvaSelinDictionary.h"
#include "model/EPGItemStore.h"

/// An item store of the core as the live mutable dictionary that a host expects. Keys are strings. Any thread may
/// read and change it at any time.
@interface EPGDorvaSelinItemStore : EPGDorvaSelinDictionary {
 @private
  std::shared_ptr<epg::cocoa::BridgedItemStore>* _store;
}
@end

/// What a store held at one moment, for its save thread: a dictionary of the items that the store holds too.
@interface EPGDorvaSelinItemStoreSnapshot : NSDictionary {
 @private
  std::shared_ptr<const epg::EPGItemStoreSnapshot>* _snapshot;
}
@end

namespace epg::cocoa {

/// A new object (autoreleased) for the store.
NSMutableDictionary* objectOfStore(const std::shared_ptr<BridgedItemStore>& store);
/// The store behind an object of `objectOfStore`; for another dictionary a store that uses it in place. Null for nil.
std::shared_ptr<EPGItemStore> storeOfObject(NSMutableDictionary* object);

NSDictionary* objectOfSnapshot(std::shared_ptr<const EPGItemStoreSnapshot> snapshot);
/// Of any dictionary; entries under keys that are no strings make a snapshot that cannot be written.
std::shared_ptr<const EPGItemStoreSnapshot> snapshotOfObject(NSDictionary* object);

}  // namespace epg::cocoa
