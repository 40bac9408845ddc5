#pragma once

#include <string>
#include <string_view>

namespace epg {

/// What becomes of a reference to half a surrogate pair, as writers make them that count in UTF-16: no character in
/// XML. Where they are not refused, two halves that belong together are their character and any other is U+FFFD.
enum class XMLHalves { Refused, Replaced };

/// Appends `raw`, the text of a document as it stands there, with its references resolved: the five named ones and
/// characters by number. Empty, or the first reference that stands for no character; then what is before it has been
/// appended.
std::string appendResolvedXML(std::string& text, std::string_view raw, XMLHalves halves);

}  // namespace epg
