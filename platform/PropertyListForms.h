#pragma once

#include <optional>
#include <string>

#include "platform/PropertyList.h"

namespace epg {

// The readers behind `parsePropertyList`, one for each form.

std::optional<PropertyList> parseXMLPropertyList(std::string bytes, std::string* problem);

/// Whether the bytes begin as the binary form does.
bool isBinaryPropertyList(const std::string& bytes);
std::optional<PropertyList> parseBinaryPropertyList(const std::string& bytes, std::string* problem);

}  // namespace epg
