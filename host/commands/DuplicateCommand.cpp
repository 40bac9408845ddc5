#include "host/commands/CommandContext.h"
#include "host/commands/Commands.h"
#include "host/commands/EntryIDs.h"
#include "host/commands/ExitStatus.h"
#include "host/commands/PluginSession.h"
#include "host/terminal/LineText.h"
#include "host/terminal/Refusal.h"

namespace epg {

int runDuplicate(CommandContext& context, const DuplicateOptions& options) {
  PluginSession session(context, PluginSession::Purpose::Changing);
  const std::shared_ptr<EPGItemStore> store = session.plugin().epgItems();
  if (!store->item(options.source)) throw Refusal(noItemMessage(*store, options.source));
  const bool replaces = store->item(options.target) != nullptr;
  refuseUnsavableID(options.target);
  if (!replaces) refuseUnusableID(*store, options.target);
  session.plugin().duplicateEPGItemWithUniqueID(options.source, options.target);
  session.endAfterSave();
  context.output << (replaces ? "Replaced entry: " : "New entry: ") << escapedForLine(options.target) << '\n';
  return exitDone;
}

}  // namespace epg
