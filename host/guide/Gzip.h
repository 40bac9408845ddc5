#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace epg {

/// Whether the bytes begin as gzip data does.
bool isGzip(const std::string& bytes);

/// What the gzip data holds; several members are joined, as gzip itself does, and zero bytes that pad the end are
/// passed over. Nothing, with the reason in `problem`, when the data is cut off or damaged, has something else behind
/// it, or would grow beyond `largestSize` bytes.
std::optional<std::string> decompressedGzip(const std::string& bytes, std::size_t largestSize, std::string* problem);

}  // namespace epg
