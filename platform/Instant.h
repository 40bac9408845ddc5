#pragma once

namespace epg {

/// A point in time, independent of any calendar or zone.
///
/// Counted in seconds (fractions allowed) from 1 January 2001, 00:00:00 UTC, leap seconds not counted:
/// the platform's reference date, so that the platform's dates cross without rounding.
struct Instant {
  double secondsSinceReferenceDate = 0;

  /// Seconds between 1 January 1970 and 1 January 2001, both 00:00:00 UTC.
  static constexpr double referenceDateSince1970 = 978307200.0;

  static constexpr Instant fromUnixTime(double seconds) { return Instant{seconds - referenceDateSince1970}; }
  constexpr double unixTime() const { return secondsSinceReferenceDate + referenceDateSince1970; }
};

inline constexpr bool operator==(Instant a, Instant b) {
  return a.secondsSinceReferenceDate == b.secondsSinceReferenceDate;
}
inline constexpr bool operator!=(Instant a, Instant b) { return !(a == b); }
inline constexpr bool operator<(Instant a, Instant b) {
  return a.secondsSinceReferenceDate < b.secondsSinceReferenceDate;
}

}  // namespace epg
