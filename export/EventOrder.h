#pragma once

#include <cstddef>
#include <vector>

#include "model/EPGEvent.h"

namespace epg {

/// The events of a list in the order in which a day file has them. Refers to the list, which has to outlive it and must
/// not change meanwhile.
class EventOrder {
 public:
  /// As they stand.
  explicit EventOrder(const std::vector<EPGEvent>& events) : events_(events) {}

  /// Earliest start first; equal starts keep their order, events without a start come last. Takes up to 16 bytes
  /// for each event, and nothing for a list that is in order.
  static EventOrder byStart(const std::vector<EPGEvent>& events);

  std::size_t size() const { return events_.size(); }
  bool empty() const { return events_.empty(); }
  const EPGEvent& operator[](std::size_t index) const {
    return places_.empty() ? events_[index] : *places_[index].event;
  }

 private:
  /// An event and its start if it has one: all that sorting needs, and a small part of an event.
  struct Place {
    Instant start;
    const EPGEvent* event = nullptr;
  };

  const std::vector<EPGEvent>& events_;
  std::vector<Place> places_;  ///< Empty: as they stand.
};

}  // namespace epg
