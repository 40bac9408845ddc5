#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/Instant.h"
#include "platform/LocalZone.h"

namespace epg {

/// How far the system's own clock counts. Systems of 32 bits reach from December 1901 to January 2038: before that
/// the offset of 1901 holds, beyond it the zone's rules of the last years go on. That is right wherever the rules
/// have settled; Gaza, Hebron, Casablanca and El Aaiun have another change for every year. A test may ask for the
/// narrow clock anywhere.
enum class SystemTime { Natural, ThirtyTwoBits };

/// The zone of the C library, read now: the one that `TZ` names, the machine's where it is not set. Right before 1970
/// and after 2038. Whoever changes `TZ` must do so while no other thread converts, as with every use of the
/// environment.
std::shared_ptr<const LocalZone> systemZone(SystemTime systemTime = SystemTime::Natural);

/// The Gregorian calendar in a local time zone. Good for a run of conversions, for instance one export; make a new one
/// to follow a change of the zone. One thread at a time.
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

  explicit LocalCalendar(std::shared_ptr<const LocalZone> zone = systemZone()) : zone_(std::move(zone)) {}

  /// Nothing when the instant is not a number or lies outside the years that the calendar can count.
  std::optional<Components> components(Instant instant) const;

 private:
  std::shared_ptr<const LocalZone> zone_;
};

/// Whether both lie on one day of the calendar; two absent dates do.
bool isSameCalendarDay(const LocalCalendar& calendar, std::optional<Instant> first, std::optional<Instant> second);

/// Writes dates in a fixed pattern of "yyyy", "MM" and "dd", every other character standing for itself. Any thread.
class DateFormatter {
 public:
  explicit DateFormatter(std::string format) : format_(std::move(format)) {}

  /// The empty string when the calendar cannot express the instant.
  std::string stringFromDate(const LocalCalendar& calendar, Instant date) const;

 private:
  std::string format_;
};

}  // namespace epg
