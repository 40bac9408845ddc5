#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "host/commands/UniqueIDArguments.h"
#include "model/EPGItemTexts.h"

namespace epg {

struct CommandContext;

// The commands of the command line. Each returns an exit status after its saves have ended. One that cannot be carried
// out throws a `Refusal`, one whose arguments make no sense `WrongUsage`; then nothing has been changed, unless the
// message says that a save failed.

struct ImportOptions {
  std::string guide;
  bool replace = false;
};
/// Makes an EPG item of every programme of an XMLTV guide that is not yet in the store. Saves only when that changes
/// anything.
int runImport(CommandContext& context, const ImportOptions& options);

struct ExportOptions {
  std::string events;
  std::optional<std::string> configuration;
};
/// Writes the day file of the events. Its path is the last line of standard output.
int runExport(CommandContext& context, const ExportOptions& options);

/// The names of the export configurations, one a line.
int runConfigurations(CommandContext& context);

/// ID, tab, title, one entry a line, sorted by ID.
int runList(CommandContext& context);

struct RemoveOptions {
  std::vector<UniqueIDArgument> ids;
};
/// Removes the entries. IDs without an entry are reported. When none has one, saves nothing and returns `exitRefused`.
int runRemove(CommandContext& context, const RemoveOptions& options);

struct DuplicateOptions {
  std::string source;
  std::string target;
};
int runDuplicate(CommandContext& context, const DuplicateOptions& options);

struct CheckOptions {
  std::string events;
};
/// Time, tab, ID, tab, finding, one a line, in order of time. Returns `exitRefused` when there is any, or when the file
/// holds something that could not be used.
int runCheck(CommandContext& context, const CheckOptions& options);

struct ShowOptions {
  std::vector<UniqueIDArgument> ids;
};
/// What the editor shows for these entries.
int runShow(CommandContext& context, const ShowOptions& options);

struct EditOptions {
  std::vector<UniqueIDArgument> ids;
  /// What is typed into the field of each text value, in the order of their list.
  std::array<std::optional<std::string>, epgItemTexts.size()> texts;
  std::vector<std::string> tags;
  std::vector<std::string> untags;
  bool dryRun = false;
};
/// Runs an editing session over the entries and commits it, except in a dry run.
int runEdit(CommandContext& context, const EditOptions& options);

}  // namespace epg
