#pragma once

#include <string>

namespace epg {

/// The text with every apostrophe (U+0027) replaced by "&#39;", and nothing else touched, whatever the name says:
/// it runs over the finished document, where everything else has been escaped already.
std::string stringByEscapingSpecialCharacters(const std::string& text);

}  // namespace epg
