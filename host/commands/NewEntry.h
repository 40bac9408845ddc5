#pragma once

#include <string>

namespace epg {

class EPGItemStore;

/// What to tell of an ID without an item: that the store has no such entry, or holds something there that is none.
std::string noItemMessage(const EPGItemStore& store, const std::string& id);

/// Throws a `Refusal` when the store's file would not give back the ID, so that whoever changes the entry would not
/// find it again.
void refuseUnsavableID(const std::string& id);

/// Throws a `Refusal` when no entry should be made under this ID, which has none and can be saved: the ID is empty,
/// which is a slip of whoever called, or the store holds something else there.
void refuseUnusableID(const EPGItemStore& store, const std::string& id);

}  // namespace epg
