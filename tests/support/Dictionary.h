#pragma once

#include <utility>
#include <vector>

#include "plist/PropertyList.h"

namespace epg::test {

using Entries = std::vector<PropertyListDictionary::Entry>;

inline PropertyListDictionary dictionaryOf(Entries entries) { return PropertyListDictionary(std::move(entries)); }

}  // namespace epg::test
