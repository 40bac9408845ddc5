#pragma once

#include <string>

#include "platform/XMLText.h"

namespace epg::test {

/// What `epg::appendXMLText` does, in the plainest way, to be compared with it. Apostrophes stay as they are.
bool appendPlainXMLText(std::string& document, const std::string& text, XMLContext context);

}  // namespace epg::test
