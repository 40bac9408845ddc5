#include "host/CommandContext.h"
#include "host/Commands.h"
#include "host/EditorText.h"
#include "host/Messages.h"
#include "host/NewEntry.h"
#include "host/PluginSession.h"
#include "host/Progress.h"
#include "host/TagCatalogue.h"
#include "host/UniqueIDArguments.h"

namespace epg {

int showEntries(CommandContext& context, const ShowOptions& options) {
  const std::vector<std::string> ids = uniqueIDs(options.ids, context.input);
  PluginSession session(context, PluginSession::Purpose::Reading);
  for (const std::string& id : idsWithoutItem(session, ids)) {
    context.messages.line(noItemMessage(*session.plugin().epgItems(), id) + "; the editor shows it empty");
  }
  const Progress progress(context.messages, "Opening the editor");
  openEditor(session, ids);
  if (tagCatalogue(session).empty()) context.messages.line(missingCatalogueMessage(context, session));
  writeEditor(session, context.output);
  return 0;
}

}  // namespace epg
