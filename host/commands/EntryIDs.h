#pragma once

#include <string>
#include <vector>

namespace epg {

class EPGItemStore;

/// The message about an ID without an item: the store has no such entry, or something there that is no entry.
std::string noItemMessage(const EPGItemStore& store, const std::string& id);

/// Those of the IDs that have no item, each once, in their order.
std::vector<std::string> idsWithoutItem(const EPGItemStore& store, const std::vector<std::string>& ids);

/// Throws a `Refusal` when the store's file cannot hold the ID as it is: nobody would find the entry again.
void refuseUnsavableID(const std::string& id);

/// Throws a `Refusal` when no entry can be made under this ID, which has no item: the ID is empty, or the store holds
/// something there that is no entry.
void refuseUnusableID(const EPGItemStore& store, const std::string& id);

}  // namespace epg
