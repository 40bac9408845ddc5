#pragma once

#include <vector>

#include "host/checks/Finding.h"
#include "host/guide/EventsFile.h"

namespace epg {

class LocalCalendar;

/// What is wrong with the times of a schedule: events without start or end; events that end before they start; on each
/// channel, overlaps and gaps.
///
/// An event is on air from its start until just before its end. One without a usable end counts as running until the
/// next event starts. The programmes of one clump share their slot on purpose and count as one. When an event overlaps
/// several others, the one that ends last is named. Takes O(n log n).
std::vector<Finding> timeFindings(const Schedule& schedule, const LocalCalendar& calendar);

}  // namespace epg
