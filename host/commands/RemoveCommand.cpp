#include <unordered_set>

#include "host/commands/CommandContext.h"
#include "host/commands/Commands.h"
#include "host/commands/NewEntry.h"
#include "host/commands/PluginSession.h"
#include "host/commands/UniqueIDArguments.h"
#include "host/terminal/LineText.h"
#include "host/terminal/Messages.h"

namespace epg {

int removeEntries(CommandContext& context, const RemoveOptions& options) {
  const std::vector<std::string> ids = uniqueIDs(options.ids, context.input);
  PluginSession session(context, PluginSession::Purpose::Changing);
  const std::shared_ptr<EPGItemStore> store = session.plugin().epgItems();
  std::size_t found = 0;
  std::unordered_set<std::string> seen;
  for (const std::string& id : ids) {
    if (!seen.insert(id).second) continue;
    if (store->item(id)) {
      ++found;
    } else {
      context.messages.line(noItemMessage(*store, id));
    }
  }
  if (found > 0) {
    session.plugin().removeEPGItemsWithUniqueIDs(ids);
    session.endAfterSave();
  }
  context.output << counted(found, "entry", "entries") << " removed\n";
  return found > 0 ? 0 : 1;
}

}  // namespace epg
