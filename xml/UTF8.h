#pragma once

#include <cstddef>
#include <string_view>

namespace epg {

/// How many bytes at the start of the text are UTF-8 (no surrogates, no overlong forms): all of them, or those before
/// the first sequence that is none.
std::size_t lengthOfUTF8(std::string_view text);

}  // namespace epg
