#pragma once

#include <string>
#include <vector>

#include "host/checks/Finding.h"
#include "host/guide/EventsFile.h"
#include "model/EPGItemStore.h"

namespace epg {

/// What is wrong with the items of a schedule: events without an item, which the export leaves out; items without title
/// or description; tags that are not in `catalogue`. An event without an item is reported each time, an item once, at
/// its first event.
std::vector<Finding> itemFindings(const Schedule& schedule, const EPGItemStore& items,
                                  const std::vector<std::string>& catalogue);

}  // namespace epg
