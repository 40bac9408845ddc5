#pragma once

#include <optional>
#include <string_view>

#include "plist/PropertyList.h"

namespace epg {

/// The elements of the XML form that hold a text and nothing else, but for strings and keys, whose text is the value.
enum class PropertyListScalar { Integer, Real, True, False, Date, Data };

/// The value that an element with this text stands for; nothing when it stands for none.
std::optional<PropertyList> propertyListFromText(PropertyListScalar scalar, std::string_view text);

/// The date that its description stands for: "2012-03-04 18:00:00 +0100", perhaps with a fraction of a second.
std::optional<PropertyList> propertyListFromDescriptionOfDate(std::string_view text);

}  // namespace epg
