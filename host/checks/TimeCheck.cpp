#include "host/checks/TimeCheck.h"

#include <algorithm>
#include <tuple>

#include "host/terminal/LineText.h"
#include "host/terminal/LocalTimeText.h"
#include "platform/LocalCalendar.h"

namespace epg {

namespace {

/// Smaller differences are rounding errors.
constexpr double rounding = 0.0005;

double seconds(Instant instant) { return instant.secondsSinceReferenceDate; }

/// An event's place on its channel.
struct Slot {
  const EPGEvent* event;
  const EventDetails* details;
  double start;
  double end;        ///< The start where the event has no usable end.
  bool isOpenEnded;  ///< Runs until the next event starts.

  bool isEmpty() const { return !isOpenEnded && end - start < rounding; }
};

/// Of an event that has a start.
Slot slotOf(const EPGEvent& event, const EventDetails& details) {
  const double start = seconds(*event.eventEPGStartDateTime);
  const std::optional<Instant> end = event.eventEPGEndDateTime;
  const bool isUsable = end && seconds(*end) >= start;
  return {&event, &details, start, isUsable ? seconds(*end) : start, !isUsable};
}

/// Sorts by channel, then by start. Of events that start together an empty one comes first, so that it does not overlap
/// the others: it takes no time.
bool isBroadcastBefore(const Slot& a, const Slot& b) {
  const auto key = [](const Slot& slot) {
    return std::tuple<const std::string&, double, bool, double, const std::string&>(
        slot.details->channel, slot.start, !slot.isEmpty(), slot.end, slot.details->clumpIndex);
  };
  return key(a) < key(b);
}

/// "2" of the clump index "0/2"; empty for any other form.
std::string clumpSize(const std::string& clumpIndex) {
  const std::size_t slash = clumpIndex.find('/');
  return slash == std::string::npos ? std::string() : clumpIndex.substr(slash + 1);
}

bool shareClump(const Slot& a, const Slot& b) {
  const std::string size = clumpSize(a.details->clumpIndex);
  return a.start == b.start && a.end == b.end && a.isOpenEnded == b.isOpenEnded && !size.empty() && size != "1" &&
         size == clumpSize(b.details->clumpIndex) && a.details->clumpIndex != b.details->clumpIndex;
}

std::string eventName(const EPGEvent& event) {
  return event.eventEPGUniqueID ? escapedForLine(*event.eventEPGUniqueID) : "an event without an EPG unique ID";
}

/// Is given the events of one channel in the order of broadcast, and finds overlaps and gaps.
class ChannelCheck {
 public:
  ChannelCheck(const LocalCalendar& calendar, std::string suffix, std::vector<Finding>* findings)
      : calendar_(calendar), suffix_(std::move(suffix)), findings_(findings) {}

  void add(const Slot& slot) {
    const bool isPartOfClump = last_ && shareClump(*last_, slot);
    if (last_ && !isPartOfClump) {
      if (const std::optional<std::string> overlap = overlapOf(slot)) {
        addFinding(slot, *overlap);
      } else if (!openEnded_ && slot.start - latest_->end > rounding) {
        addGap(slot);
      }
    }
    if (openEnded_ && slot.start - openEnded_->start > rounding) openEnded_ = nullptr;
    if (slot.isOpenEnded) openEnded_ = &slot;
    if (!latest_ || slot.end >= latest_->end) latest_ = &slot;
    last_ = &slot;
  }

 private:
  /// What the event overlaps, in words.
  std::optional<std::string> overlapOf(const Slot& slot) const {
    if (latest_->end - slot.start > rounding) {
      const Instant end{latest_->end};
      return "overlaps " + eventName(*latest_->event) + ", which ends at " + localTimeText(calendar_, end);
    }
    if (openEnded_ && slot.start - openEnded_->start < rounding && !slot.isEmpty()) {
      return "starts together with " + eventName(*openEnded_->event);
    }
    return std::nullopt;
  }

  void addGap(const Slot& next) {
    findings_->push_back({Instant{latest_->end}, latest_->event->eventEPGUniqueID,
                          "gap of " + durationText(next.start - latest_->end) + " after this event, until " +
                              eventName(*next.event) + suffix_});
  }

  void addFinding(const Slot& slot, const std::string& text) {
    findings_->push_back({Instant{slot.start}, slot.event->eventEPGUniqueID, text + suffix_});
  }

  const LocalCalendar& calendar_;
  const std::string suffix_;
  std::vector<Finding>* findings_;
  const Slot* last_ = nullptr;
  const Slot* latest_ = nullptr;     ///< Of the events so far, the one that ends last.
  const Slot* openEnded_ = nullptr;  ///< The last event, when it has no usable end and nothing has started later.
};

/// " (Channel One)"; empty for events that have no channel.
std::string channelSuffix(const Schedule& schedule, const std::string& channel) {
  if (channel.empty()) return {};
  const auto named = schedule.channelNames.find(channel);
  return " (" + escapedForLine(named == schedule.channelNames.end() ? channel : named->second) + ")";
}

void addOwnTimes(const Schedule& schedule, const LocalCalendar& calendar, std::vector<Finding>* findings) {
  for (std::size_t i = 0; i < schedule.events.size(); ++i) {
    const EPGEvent& event = schedule.events[i];
    const std::optional<Instant> start = event.eventEPGStartDateTime;
    const std::optional<Instant> end = event.eventEPGEndDateTime;
    const std::string suffix = channelSuffix(schedule, schedule.details[i].channel);
    if (!start) findings->push_back({start, event.eventEPGUniqueID, "no start" + suffix});
    if (!end) findings->push_back({start, event.eventEPGUniqueID, "no end" + suffix});
    if (start && end && *end < *start) {
      findings->push_back(
          {start, event.eventEPGUniqueID, "ends before it starts, at " + localTimeText(calendar, end) + suffix});
    }
  }
}

}  // namespace

std::vector<Finding> timeFindings(const Schedule& schedule, const LocalCalendar& calendar) {
  std::vector<Finding> findings;
  addOwnTimes(schedule, calendar, &findings);

  std::vector<Slot> slots;
  for (std::size_t i = 0; i < schedule.events.size(); ++i) {
    const EPGEvent& event = schedule.events[i];
    if (event.eventEPGStartDateTime) slots.push_back(slotOf(event, schedule.details[i]));
  }
  std::stable_sort(slots.begin(), slots.end(), isBroadcastBefore);
  for (std::size_t i = 0; i < slots.size();) {
    const std::string& channel = slots[i].details->channel;
    ChannelCheck check(calendar, channelSuffix(schedule, channel), &findings);
    for (; i < slots.size() && slots[i].details->channel == channel; ++i) check.add(slots[i]);
  }
  return findings;
}

}  // namespace epg
