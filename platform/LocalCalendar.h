#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/Instant.h"

namespace epg {

/// The Gregorian calendar in the machine's local time zone (the one that `TZ` names, where it is set).
///
/// An object reads the zone when it is made and is good for a run of conversions, for instance one export; make a
/// new one to follow a change of the zone. Right across daylight-saving changes, before 1970 and after 2038.
/// Whoever changes `TZ` must do so while no other thread converts, as with every use of the environment.
class LocalCalendar {
 public:
  struct Components {
    int year = 0;
    int month = 0;  ///< 1 to 12
    int day = 0;    ///< 1 to 31
    int hour = 0;   ///< 0 to 23
    int minute = 0;
    int second = 0;
  };

  /// How far the system's own clock counts. Systems of 32 bits reach from December 1901 to January 2038: before that
  /// the offset of 1901 holds, beyond it the zone's rules of the last years go on. That is right wherever the rules
  /// have settled; Gaza, Hebron, Casablanca and El Aaiun have another change for every year. A test may ask for the
  /// narrow clock anywhere.
  enum class SystemTime { Natural, ThirtyTwoBits };

  explicit LocalCalendar(SystemTime systemTime = SystemTime::Natural);

  /// Nothing when the instant is not a number or lies outside the years that the calendar can count.
  std::optional<Components> components(Instant instant) const;

 private:
  bool narrow_;
};

/// Writes dates in a fixed pattern of "yyyy", "MM" and "dd", every other character standing for itself, with the
/// machine's local calendar. Safe to use from any thread.
class DateFormatter {
 public:
  explicit DateFormatter(std::string format) : format_(std::move(format)) {}

  /// The empty string when the calendar cannot express the instant.
  std::string stringFromDate(Instant date) const;

 private:
  std::string format_;
};

}  // namespace epg
