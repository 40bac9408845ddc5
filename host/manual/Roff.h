#pragma once

#include <string>

namespace epg {

/// UTF-8 text escaped for roff, so that nothing in it is a request or an escape sequence. Line feeds stay.
std::string roffText(const std::string& text);

std::string roffBold(const std::string& text);
std::string roffItalic(const std::string& text);

}  // namespace epg
