#include <algorithm>

#include "host/commands/CommandContext.h"
#include "host/commands/Commands.h"
#include "host/commands/ExitStatus.h"
#include "host/commands/PluginSession.h"
#include "host/terminal/LineText.h"
#include "model/KeyConstants.h"

namespace epg {

int runConfigurations(CommandContext& context) {
  PluginSession session(context, PluginSession::Purpose::Reading);
  std::vector<std::string> names = session.configurationNames();
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) context.output << escapedForLine(name) << '\n';
  return exitDone;
}

int runList(CommandContext& context) {
  PluginSession session(context, PluginSession::Purpose::Reading);
  const std::shared_ptr<EPGItemStore> store = session.plugin().epgItems();
  for (const std::string& id : store->uniqueIDs()) {
    const PropertyListDictionary values = store->item(id)->values();
    const auto title = stringValue(values, ZRLEPGDSTitleKey);
    context.output << escapedForLine(id) << '\t' << escapedForLine(std::string(title.value_or(std::string_view())))
                   << '\n';
  }
  return exitDone;
}

}  // namespace epg
