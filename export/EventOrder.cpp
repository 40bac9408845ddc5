#include "export/EventOrder.h"

#include <algorithm>
#include <cmath>

namespace epg {

namespace {

/// A start that is not a number has no place in the order, which is that of events without one.
bool hasStart(const EPGEvent& event) {
  return event.eventEPGStartDateTime && !std::isnan(event.eventEPGStartDateTime->secondsSinceReferenceDate);
}

bool comesBefore(const EPGEvent& a, const EPGEvent& b) {
  if (!hasStart(a) || !hasStart(b)) return hasStart(a) && !hasStart(b);
  return *a.eventEPGStartDateTime < *b.eventEPGStartDateTime;
}

}  // namespace

EventOrder EventOrder::byStart(const std::vector<EPGEvent>& events) {
  EventOrder order(events);
  // As hosts mostly have them.
  if (std::is_sorted(events.begin(), events.end(), comesBefore)) return order;
  std::vector<Place>& places = order.places_;
  places.reserve(events.size());
  for (const EPGEvent& event : events) {
    if (hasStart(event)) places.push_back(Place{*event.eventEPGStartDateTime, &event});
  }
  std::sort(places.begin(), places.end(),
            [](const Place& a, const Place& b) { return a.start != b.start ? a.start < b.start : a.event < b.event; });
  for (const EPGEvent& event : events) {
    if (!hasStart(event)) places.push_back(Place{Instant(), &event});
  }
  return order;
}

}  // namespace epg
