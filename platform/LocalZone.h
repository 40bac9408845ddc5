#pragma once

#include <cstdint>
#include <optional>

namespace epg {

/// The local time zone as it was when somebody asked for it. One thread at a time.
class LocalZone {
 public:
  LocalZone() = default;
  LocalZone(const LocalZone&) = delete;
  LocalZone& operator=(const LocalZone&) = delete;
  virtual ~LocalZone() = default;

  /// By how many seconds local clocks are ahead of UTC at that second since 1970; nothing where nobody can tell.
  virtual std::optional<std::int64_t> secondsAheadOfUTC(std::int64_t secondsSince1970) const = 0;
};

}  // namespace epg
