#pragma once

#include <cstddef>

namespace epg {

/// Has the processor bring the bytes near while the program goes on, so that it need not wait when it comes to read
/// them. Worth it for what lies far from what was read before. Any address will do, and nothing is read: it may be
/// somebody else's by then.
inline void fetchAhead(const void* start, std::size_t bytes = 1) noexcept {
  constexpr std::size_t line = 64;
  const auto* const first = static_cast<const char*>(start);
  for (std::size_t offset = 0; offset < bytes; offset += line) __builtin_prefetch(first + offset);
}

}  // namespace epg
