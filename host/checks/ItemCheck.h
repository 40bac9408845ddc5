#pragma once

#include <string>
#include <vector>

#include "host/checks/Finding.h"
#include "host/guide/EventsFile.h"
#include "model/EPGItemStore.h"

namespace epg {

/// What is wrong with the items that a schedule plays: events that have none and will be left out of the export, items
/// without title or description, and tags that `catalogue` does not have. An event is named each time, an item once,
/// at its first event.
std::vector<Finding> itemFindings(const Schedule& schedule, const EPGItemStore& items,
                                  const std::vector<std::string>& catalogue);

}  // namespace epg
