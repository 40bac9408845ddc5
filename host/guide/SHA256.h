#pragma once

#include <string>

namespace epg {

/// The SHA-256 of the bytes as 64 hexadecimal digits in lower case.
std::string sha256(const std::string& bytes);

}  // namespace epg
