#include <algorithm>
#include <cerrno>

#include "export/ExportConfiguration.h"
#include "host/commands/CommandContext.h"
#include "host/commands/Commands.h"
#include "host/commands/EventsArgument.h"
#include "host/commands/ExitStatus.h"
#include "host/commands/PluginSession.h"
#include "host/commands/ReportingEnvironment.h"
#include "host/guide/InputFile.h"
#include "host/guide/PropertyListInput.h"
#include "host/terminal/LineText.h"
#include "host/terminal/LocalTimeZone.h"
#include "host/terminal/Messages.h"
#include "host/terminal/Refusal.h"
#include "platform/Paths.h"

namespace epg {

namespace {

/// Keeps the report of one export. May be read after the plug-in object is gone.
class ExportReport : public TelvarinManagerEPGPluginProtocol_Delegate {
 public:
  void epgExportEventCompleted(bool succeeded, const EPGError* error) override {
    succeeded_ = succeeded;
    if (error) message_ = error->localizedDescription;
  }

  bool succeeded() const { return succeeded_; }
  const std::string& message() const { return message_; }

 private:
  bool succeeded_ = false;
  std::string message_;
};

std::string chosenConfiguration(const std::vector<std::string>& names, const std::optional<std::string>& wanted) {
  if (wanted) {
    const bool isKnown =
        *wanted == defaultExportConfigurationName || std::find(names.begin(), names.end(), *wanted) != names.end();
    if (isKnown) return *wanted;
  } else if (names.size() == 1) {
    return names.front();
  }
  std::string text = wanted ? "there is no export configuration \"" + *wanted + "\"; there is:"
                            : std::string("--configuration must name one of several export configurations:");
  for (const std::string& name : names) text += "\n  " + escapedForLine(name);
  throw Refusal(text);
}

/// The named configuration. Throws a `Refusal` where its file cannot be read: the plug-in would then take the default
/// configuration, and write to the Desktop.
PropertyListDictionary readConfiguration(CommandContext& context, const std::string& name) {
  const std::string path =
      appendPathExtension(appendPathComponent(context.dataFolderPath, name), exportConfigurationExtension);
  const std::optional<std::string> content = contentIfThere(context.environment, path);
  if (content) return dictionaryInPropertyList(*content, path);
  if (name != defaultExportConfigurationName) throw Refusal(path + ": " + systemMessage(ENOENT));
  return exportConfiguration(context.environment, context.dataFolderPath, name);
}

/// Scripts take the day file's path from the output, where it must be one line.
void refuseFolderThatDoesNotFitOnALine(const std::optional<std::string>& folder, const std::string& name) {
  if (!folder || !steersOutput(*folder)) return;
  throw Refusal("the export configuration \"" + escapedForLine(name) +
                "\" names a folder with line feeds or other control characters: " + escapedForLine(*folder));
}

std::size_t countWithoutItem(const EPGItemStore& store, const std::vector<EPGEvent>& events) {
  return static_cast<std::size_t>(std::count_if(events.begin(), events.end(), [&](const EPGEvent& event) {
    return !event.eventEPGUniqueID || !store.item(*event.eventEPGUniqueID);
  }));
}

/// The plug-in's message of a failed export, with the reason if it is known.
std::string failureMessage(const ExportReport& report, const ReportingEnvironment& environment, bool hasFolder) {
  if (!hasFolder) return report.message() + ": the export configuration names no folder (\"exportPath\")";
  const auto replacements = environment.replacements();
  if (replacements.empty()) return report.message();
  return report.message() + ": " + replacements.back().path + ": " + systemMessage(replacements.back().error);
}

}  // namespace

int runExport(CommandContext& context, const ExportOptions& options) {
  refuseUnknownTimeZone(context.environment);
  Schedule schedule = readEventsArgument(context, options.events);

  ExportReport report;
  PluginSession session(context, PluginSession::Purpose::Reading);
  EPGDorvaSelinManagerPlugin& plugin = session.plugin();
  const std::string configuration = chosenConfiguration(session.configurationNames(), options.configuration);
  const std::optional<std::string> folder =
      exportFolder(context.environment, readConfiguration(context, configuration));
  refuseFolderThatDoesNotFitOnALine(folder, configuration);

  const std::size_t left = countWithoutItem(*plugin.epgItems(), schedule.events);
  const std::size_t count = schedule.events.size();
  plugin.setDelegate(&report);
  plugin.exportEvents(std::move(schedule.events), configuration);
  const bool hasFolder = !plugin.exportPath().value_or("").empty();
  session.end("Exporting");

  if (!report.succeeded()) throw Refusal(failureMessage(report, context.environment, hasFolder));
  if (left > 0) {
    context.messages.line(std::to_string(left) + " of " + counted(count, "event", "events") +
                          (left == 1 ? " has" : " have") + " no item and " + (left == 1 ? "was" : "were") +
                          " left out");
  }
  context.output << context.environment.replacements().back().path << '\n';
  return exitDone;
}

}  // namespace epg
