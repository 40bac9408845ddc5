#pragma once

#include <string>

#include "xml/XMLText.h"

namespace epg::test {

/// What `epg::appendXMLText` does, in the plainest way, to be compared with it. Apostrophes stay as they are.
bool appendNaiveXMLText(std::string& document, const std::string& text, XMLContext context);

/// The text with U+FFFD for what is not UTF-8, in the plainest way.
std::string naivelyReplaced(const std::string& text);

}  // namespace epg::test
