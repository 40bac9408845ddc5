#pragma once

#include <string>
#include <string_view>

#include "platform/ByteSink.h"

namespace epg {

/// Whether the bytes are UTF-8 throughout (no surrogates, no overlong forms).
bool isUTF8(std::string_view text);

/// What stands for a character that XML 1.0 cannot carry: U+FFFD.
extern const char* const replacementCharacter;

/// Whether the text is ASCII that stands in any document, even in an attribute, just as it is.
bool isLiteralInXML(std::string_view text);
/// Whether the text is UTF-8 and every character of it can stand in an XML 1.0 document.
bool isCarriedByXML(std::string_view text);
/// The text with U+FFFD for each character that cannot and for what is not UTF-8.
std::string carriedByXML(std::string_view text);

enum class XMLContext { Text, Attribute };
enum class Apostrophes { AsTheyAre, AsReferences };
/// What becomes of bytes that are not UTF-8.
enum class Malformed { Refused, Replaced };

/// Appends the text escaped for XML 1.0: "&amp;", "&lt;", "&gt;", a carriage return as a character reference so
/// that it survives reading, in attributes also the double quote, tab and line feed; "&#39;" where apostrophes are to
/// be references. Characters that XML 1.0 cannot carry become U+FFFD, as does what is not UTF-8 where that is to be
/// replaced; where it is not, the answer is false, with an undefined rest appended.
bool appendXMLText(ByteSink& document, std::string_view text, XMLContext context,
                   Apostrophes apostrophes = Apostrophes::AsTheyAre, Malformed malformed = Malformed::Refused);

}  // namespace epg
