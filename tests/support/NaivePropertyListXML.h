#pragma once

#include <optional>
#include <string>

#include "plist/PropertyList.h"

namespace epg::test {

/// What `epg::propertyListXML` makes, in the plainest way, to be compared with it.
std::optional<std::string> naivePropertyListXML(const PropertyList& value);

}  // namespace epg::test
