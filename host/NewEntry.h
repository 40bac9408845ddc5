#pragma once

#include <string>

namespace epg {

/// Throws a `Refusal` when no entry should be made under this ID: it is empty, which is a slip of whoever called, or
/// the store's file would not give it back as it is.
void refuseUnusableID(const std::string& id);

}  // namespace epg
