#pragma once

#include <optional>
#include <string>

#include "model/EPGItemStoreSnapshot.h"
#include "platform/ByteSink.h"
#include "platform/Environment.h"
#include "plist/PropertyList.h"

namespace epg {

/// The path of "EPGItems.plist" in a data folder.
std::string itemStorePath(const std::string& dataFolderPath);

/// What the file holds, for a `ShardedItemStore`; empty when it cannot be read, and `unreadable` then tells which file
/// that is, if there is one.
struct ItemStoreContents {
  PropertyListDictionary entries;
  std::optional<Environment::FileInfo> unreadable;
};
ItemStoreContents readItemStore(Environment& environment, const std::string& path);

/// Appends the file as it is to hold the snapshot, in the order of the IDs' bytes, each item as it is shortly before
/// its turn comes. False, with an undefined beginning appended, when the store holds what no property-list file can
/// hold. Ends early when the sink fails.
bool writeItemStore(ByteSink& file, const EPGItemStoreSnapshot& snapshot);

}  // namespace epg
