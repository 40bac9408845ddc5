#include "host/commands/PluginSession.h"

#include <cerrno>
#include <optional>

#include "host/commands/CommandContext.h"
#include "host/commands/CommandLineBundle.h"
#include "host/commands/ReportingEnvironment.h"
#include "host/guide/InputFile.h"
#include "host/guide/PropertyListInput.h"
#include "host/terminal/LineText.h"
#include "host/terminal/Messages.h"
#include "host/terminal/Progress.h"
#include "host/terminal/Refusal.h"
#include "store/ItemStoreFile.h"
#include "xml/XMLText.h"

namespace epg {

namespace {

/// Otherwise a misspelt name would pass for an empty folder.
void refuseMissingFolder(CommandContext& context, PluginSession::Purpose purpose) {
  if (!context.dataFolderIsNamed || purpose == PluginSession::Purpose::Adding) return;
  if (folderError(context.environment, context.dataFolderPath) != ENOENT) return;
  if (purpose != PluginSession::Purpose::Rehearsing) {
    throw Refusal(context.dataFolderPath + ": there is no such data folder");
  }
  context.messages.line("Would be a new data folder: " + context.dataFolderPath);
}

/// The plug-in starts silently with an empty store when the file cannot be read, for whatever reason.
void refuseStoreThatWasNotRead(CommandContext& context, const EPGItemStore& store) {
  const std::size_t entries = store.snapshot()->size();
  if (entries > 0) return;
  const std::string path = itemStorePath(context.dataFolderPath);
  const std::optional<std::string> content = contentIfThere(context.environment, path);
  if (!content) return;
  if (dictionaryInPropertyList(*content, path).size() != entries) {
    throw Refusal(path + ": could not be read at the first try; nothing was done");
  }
}

/// Tells of IDs that a save changes because the file cannot hold their characters; empty when there are none.
std::string changedIDsMessage(const EPGItemStore& store) {
  std::string first;
  std::size_t count = 0;
  const std::shared_ptr<const EPGItemStoreSnapshot> now = store.snapshot();
  for (const EPGItemStoreRecord* const record : now->records()) {
    const std::string_view id = record->uniqueID;
    if (isCarriedByXML(id)) continue;
    if (count == 0 || id < first) first = id;
    ++count;
  }
  if (count == 0) return {};
  return counted(count, "ID", "IDs") +
         " with control characters that the file cannot hold; U+FFFD stands there now: " + escapedForLine(first) +
         (count > 1 ? " and others" : "");
}

}  // namespace

PluginSession::PluginSession(CommandContext& context, Purpose purpose) : context_(context) {
  refuseMissingFolder(context, purpose);
  if (purpose == Purpose::Changing || purpose == Purpose::Adding) {
    const bool isNew = makeDataFolder(context.environment, context.dataFolderPath);
    if (isNew && context.dataFolderIsNamed) context.messages.line("New data folder: " + context.dataFolderPath);
    lock_ = std::make_unique<DataFolderLock>(context.environment, context.messages, context.dataFolderPath);
  }
  const Progress progress(context.messages, "Reading the item store");
  bundle_ = std::make_shared<CommandLineBundle>(context.environment, context.resourceFolder);
  plugin_ = EPGDorvaSelinManagerPlugin::initWithBundle(bundle_, context.dataFolderPath, context.environment);
  refuseStoreThatWasNotRead(context, *plugin_->epgItems());
}

PluginSession::~PluginSession() { end("Finishing"); }

std::vector<std::string> PluginSession::configurationNames() const {
  std::vector<std::string> all;
  const int error = context_.environment.listFolder(context_.dataFolderPath, &all);
  if (error != 0 && error != ENOENT) {
    throw Refusal(context_.dataFolderPath + ": the export configurations cannot be listed: " + systemMessage(error));
  }
  return plugin_->configurationFilenames();
}

void PluginSession::end(const char* work) {
  if (!plugin_) return;
  const Progress progress(context_.messages, work);
  const std::shared_ptr<ObjectEnd> end = plugin_->end();
  if (context_.keepUntilExit) context_.keepUntilExit(plugin_->epgItems());
  plugin_.reset();
  end->wait();
}

void PluginSession::endAfterSave() {
  const std::string changedIDs = changedIDsMessage(*plugin_->epgItems());
  end("Saving the item store");
  const std::string path = itemStorePath(context_.dataFolderPath);
  const std::optional<int> error = lastReplacementError(context_.environment, path);
  if (error == 0) {
    if (!changedIDs.empty()) context_.messages.line(path + ": " + changedIDs);
    return;
  }
  std::string text = path + ": not saved";
  if (error == EILSEQ) {
    text += ": the store holds a value that no property-list file can hold";
  } else if (error) {
    text += ": " + systemMessage(*error);
  }
  throw Refusal(text);
}

}  // namespace epg
