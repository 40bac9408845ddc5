#include <algorithm>
#include <iterator>

#include "host/checks/ItemCheck.h"
#include "host/checks/TimeCheck.h"
#include "host/commands/CommandContext.h"
#include "host/commands/Commands.h"
#include "host/commands/EventsArgument.h"
#include "host/commands/ExitStatus.h"
#include "host/commands/PluginSession.h"
#include "host/commands/ReportingEnvironment.h"
#include "host/commands/TagCatalogue.h"
#include "host/terminal/LineText.h"
#include "host/terminal/LocalTimeText.h"
#include "host/terminal/LocalTimeZone.h"
#include "host/terminal/Messages.h"
#include "host/terminal/Progress.h"
#include "host/terminal/Refusal.h"
#include "platform/LocalCalendar.h"

namespace epg {

namespace {

std::vector<Finding> findingsIn(CommandContext& context, const Schedule& schedule, const LocalCalendar& calendar) {
  PluginSession session(context, PluginSession::Purpose::Reading);
  const Progress progress(context.messages, "Checking the events");
  const std::shared_ptr<EPGItemStore> store = session.plugin().epgItems();
  const std::vector<std::string> catalogue = tagCatalogue(session);
  if (catalogue.empty()) throw Refusal(missingCatalogueMessage(context, session));
  std::vector<Finding> findings = timeFindings(schedule, calendar);
  std::vector<Finding> ofItems = itemFindings(schedule, *store, catalogue);
  std::move(ofItems.begin(), ofItems.end(), std::back_inserter(findings));
  std::stable_sort(findings.begin(), findings.end(), [](const Finding& a, const Finding& b) {
    if (!a.time || !b.time) return a.time.has_value() && !b.time;
    return *a.time < *b.time;
  });
  return findings;
}

}  // namespace

int runCheck(CommandContext& context, const CheckOptions& options) {
  refuseUnknownTimeZone(context.environment);
  const Schedule schedule = readEventsArgument(context, options.events);
  const LocalCalendar calendar;
  const std::vector<Finding> findings = findingsIn(context, schedule, calendar);
  for (const Finding& finding : findings) {
    context.output << localTimeText(calendar, finding.time) << '\t'
                   << (finding.uniqueID ? escapedForLine(*finding.uniqueID) : "-") << '\t' << finding.text << '\n';
  }
  return findings.empty() && schedule.warnings.empty() ? exitDone : exitRefused;
}

}  // namespace epg
