#include "host/commands/CommandContext.h"
#include "host/commands/Commands.h"
#include "host/commands/EditorText.h"
#include "host/commands/EntryIDs.h"
#include "host/commands/ExitStatus.h"
#include "host/commands/PluginSession.h"
#include "host/commands/TagCatalogue.h"
#include "host/commands/UniqueIDArguments.h"
#include "host/terminal/Messages.h"
#include "host/terminal/Progress.h"

namespace epg {

int runShow(CommandContext& context, const ShowOptions& options) {
  const std::vector<std::string> ids = uniqueIDs(options.ids, context.input);
  PluginSession session(context, PluginSession::Purpose::Reading);
  const std::shared_ptr<EPGItemStore> store = session.plugin().epgItems();
  for (const std::string& id : idsWithoutItem(*store, ids)) {
    context.messages.line(noItemMessage(*store, id) + "; the editor shows it empty");
  }
  const Progress progress(context.messages, "Opening the editor");
  openEditor(session, ids);
  if (tagCatalogue(session).empty()) context.messages.line(missingCatalogueMessage(context, session));
  writeEditor(session, context.output);
  return exitDone;
}

}  // namespace epg
