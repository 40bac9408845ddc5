#include <algorithm>

#include "host/CommandContext.h"
#include "host/Commands.h"
#include "host/LineText.h"
#include "host/PluginSession.h"
#include "model/KeyConstants.h"

namespace epg {

int listConfigurations(CommandContext& context) {
  PluginSession session(context, PluginSession::Purpose::Reading);
  std::vector<std::string> names = session.configurationNames();
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) context.output << escapedForLine(name) << '\n';
  return 0;
}

int listEntries(CommandContext& context) {
  PluginSession session(context, PluginSession::Purpose::Reading);
  const std::shared_ptr<EPGItemStore> store = session.plugin().epgItems();
  for (const std::string& id : store->uniqueIDs()) {
    const EPGItem::Values values = store->item(id)->values();
    const std::string* const title = stringValue(*values, ZRLEPGDSTitleKey);
    context.output << escapedForLine(id) << '\t' << (title ? escapedForLine(*title) : std::string()) << '\n';
  }
  return 0;
}

}  // namespace epg
