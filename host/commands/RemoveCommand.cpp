#include <unordered_set>

#include "host/commands/CommandContext.h"
#include "host/commands/Commands.h"
#include "host/commands/EntryIDs.h"
#include "host/commands/ExitStatus.h"
#include "host/commands/PluginSession.h"
#include "host/commands/UniqueIDArguments.h"
#include "host/terminal/LineText.h"
#include "host/terminal/Messages.h"

namespace epg {

int runRemove(CommandContext& context, const RemoveOptions& options) {
  const std::vector<std::string> ids = uniqueIDs(options.ids, context.input);
  PluginSession session(context, PluginSession::Purpose::Changing);
  const std::shared_ptr<EPGItemStore> store = session.plugin().epgItems();
  const std::vector<std::string> missing = idsWithoutItem(*store, ids);
  for (const std::string& id : missing) context.messages.line(noItemMessage(*store, id));
  const std::size_t found = std::unordered_set<std::string>(ids.begin(), ids.end()).size() - missing.size();
  if (found > 0) {
    session.plugin().removeEPGItemsWithUniqueIDs(ids);
    session.endAfterSave();
  }
  context.output << counted(found, "entry", "entries") << " removed\n";
  return found > 0 ? exitDone : exitRefused;
}

}  // namespace epg
