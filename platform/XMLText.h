#pragma once

#include <string>

namespace epg {

/// Whether the bytes are UTF-8 throughout (no surrogates, no overlong forms).
bool isUTF8(const std::string& text);

enum class XMLContext { Text, Attribute };

/// Appends the text escaped for XML 1.0: "&amp;", "&lt;", "&gt;", a carriage return as a character reference so
/// that it survives reading, in attributes also the double quote, tab and line feed. Characters that XML 1.0 cannot
/// carry become U+FFFD. False, with an undefined rest appended, when the text is not UTF-8.
bool appendXMLText(std::string& document, const std::string& text, XMLContext context);

}  // namespace epg
