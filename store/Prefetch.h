#pragma once

#include <cstddef>
#include <cstdint>

namespace epg {

/// Has the processor bring the bytes into its caches while the program goes on. Worth it for what lies far from what
/// was read before. Any address will do, null too, and nothing is read: the memory may end earlier, or be somebody
/// else's by then.
inline void prefetch(const void* start, std::size_t bytes) noexcept {
  constexpr std::uintptr_t line = 64;
  if (!start) return;
  const auto first = reinterpret_cast<std::uintptr_t>(start);
  for (std::uintptr_t at = first / line * line; at < first + bytes; at += line) {
    __builtin_prefetch(reinterpret_cast<const void*>(at));  // NOLINT: no pointer of ours would be allowed to go there
  }
}

}  // namespace epg
