#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ByteSink.h"
#include "plist/PropertyList.h"

namespace epg {

class Environment;

/// Reads a property list in its XML form (UTF-8 or UTF-16, with or without a byte-order mark), its binary form or the
/// old-style form (UTF-8 or UTF-16 as well; GNUstep writes it).
///
/// Anything else, and anything malformed, yields nothing; `problem`, when given, then says what is wrong and where
/// ("line 3, column 7: …", in the binary form "byte 40: …"). Of a key that stands twice in one
/// dictionary the last value counts. A UID of the binary form becomes a dictionary with the one key "CF$UID", as
/// the platform's own conversion to XML has it; half a surrogate pair in a text becomes U+FFFD. Hostile input costs
/// time and memory in proportion to its size.
std::optional<PropertyList> parsePropertyList(std::string bytes, std::string* problem = nullptr);

/// Appends the XML form in UTF-8: entries sorted by key, tabs for indentation as the platform writes it, so that equal
/// values give equal bytes.
///
/// What the form cannot hold is written as the nearest that it can: characters that XML 1.0 does not have, and what is
/// not UTF-8, as U+FFFD, dates to the whole second (the earlier one) and within the years 0 to 9999. False, with an
/// undefined beginning appended, when the value cannot be written: a foreign value, a date that is not a number, or
/// nesting deeper than `PropertyList::maximumDepth`.
bool writePropertyListXML(ByteSink& document, const PropertyList& value);

/// Makes the value under one of several keys, by the key's place among them.
using PropertyListValues = std::function<PropertyList(std::size_t)>;

/// The same for a dictionary that nobody needs as a whole: the keys, sorted by their bytes and each once, and what is
/// under them, which is asked for when its turn comes. Ends early when the sink fails.
bool writePropertyListXML(ByteSink& document, const std::vector<std::string_view>& keys,
                          const PropertyListValues& valueOfKey);

/// The same as a text; nothing when the value cannot be written.
std::optional<std::string> propertyListXML(const PropertyList& value);

/// Reads a regular file as a property list whose top level is a dictionary; nothing otherwise, also when memory does
/// not suffice for it.
std::optional<PropertyListDictionary> readPropertyListDictionary(Environment& environment, const std::string& path,
                                                                 std::string* problem = nullptr);

}  // namespace epg
