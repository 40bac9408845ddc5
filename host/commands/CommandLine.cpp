#include "host/commands/CommandLine.h"

#include <new>

#include "host/commands/CommandContext.h"
#include "host/commands/CommandParser.h"
#include "host/commands/ExitStatus.h"
#include "host/commands/ReportingEnvironment.h"
#include "host/terminal/Messages.h"
#include "host/terminal/Refusal.h"

namespace epg {

namespace {

/// Added to the message of a failure after the save, so that nobody takes the change for lost.
std::string whatIsSaved(const ReportingEnvironment& environment) {
  const std::vector<ReportingEnvironment::Replacement> replacements = environment.replacements();
  const bool saved = !replacements.empty() && replacements.back().error == 0;
  return saved ? "; what was asked for is done and saved: " + replacements.back().path : "";
}

}  // namespace

int runCommandLine(const std::vector<std::string>& arguments, CommandContext& context) {
  int status = exitRefused;
  try {
    status = parseAndRun(arguments, context);
  } catch (const WrongUsage& problem) {
    context.messages.line(problem.what());
    status = exitWrongUsage;
  } catch (const Refusal& problem) {
    context.messages.line(problem.what());
  } catch (const std::bad_alloc&) {
    context.messages.line("not enough memory");
  } catch (const std::exception& problem) {
    context.messages.line(std::string("failed: ") + problem.what());
  }
  context.output.flush();
  if (!context.output && status == exitDone) {
    context.messages.line("standard output: cannot be written" + whatIsSaved(context.environment));
    status = exitRefused;
  }
  return status;
}

}  // namespace epg
