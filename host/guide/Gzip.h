#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace epg {

/// Whether the bytes begin as gzip data does.
bool isGzip(const std::string& bytes);

/// The decompressed data. Several members are joined, and padding of zero bytes at the end is ignored, as gzip itself
/// does. Nothing, with the reason in `problem`, when the data is cut off or damaged, when something else follows it, or
/// when the result would be larger than `largestSize` bytes.
std::optional<std::string> decompressedGzip(const std::string& bytes, std::size_t largestSize, std::string* problem);

}  // namespace epg
