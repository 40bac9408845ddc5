#include "host/EventsArgument.h"

#include "host/CommandContext.h"
#include "host/Messages.h"
#include "host/Progress.h"
#include "host/ReportingEnvironment.h"

namespace epg {

Schedule readEventsArgument(CommandContext& context, const std::string& path) {
  const Progress progress(context.messages, "Reading the events");
  Schedule schedule = readSchedule(context.environment, path);
  for (const std::string& warning : schedule.warnings) context.messages.line(warning);
  return schedule;
}

}  // namespace epg
