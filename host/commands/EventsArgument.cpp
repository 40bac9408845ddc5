#include "host/commands/EventsArgument.h"

#include "host/commands/CommandContext.h"
#include "host/commands/ReportingEnvironment.h"
#include "host/terminal/Messages.h"
#include "host/terminal/Progress.h"

namespace epg {

Schedule readEventsArgument(CommandContext& context, const std::string& path) {
  const Progress progress(context.messages, "Reading the events");
  Schedule schedule = readSchedule(context.environment, path);
  for (const std::string& warning : schedule.warnings) context.messages.line(warning);
  return schedule;
}

}  // namespace epg
