#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "plist/PropertyList.h"

namespace epg {

// The readers behind `parsePropertyList`, one for each form.

std::optional<PropertyList> parseXMLPropertyList(std::string bytes, std::string* problem);

/// How a document of the XML form begins as this system and the platform write it.
extern const std::string_view xmlPropertyListHeader;

/// The first of the two ways to read the XML form: only documents in the very layout in which they are written, without
/// comments, attributes or anything else that a text editor may bring in. Nothing for every other document, be it good
/// or bad: that is for the second way to tell. Both give the same value.
std::optional<PropertyList> parseFastXMLPropertyList(std::string_view bytes);
/// The second way, for any document; takes several times as long.
std::optional<PropertyList> parseAnyXMLPropertyList(std::string bytes, std::string* problem);

/// Whether the bytes begin as the binary form does.
bool isBinaryPropertyList(const std::string& bytes);
std::optional<PropertyList> parseBinaryPropertyList(const std::string& bytes, std::string* problem);

/// Whether the bytes begin as the old-style form does, and as neither of the others.
bool isOldStylePropertyList(std::string_view bytes);
std::optional<PropertyList> parseOldStylePropertyList(const std::string& bytes, std::string* problem);

}  // namespace epg
