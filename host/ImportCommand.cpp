#include <optional>
#include <set>

#include "host/CommandContext.h"
#include "host/Commands.h"
#include "host/EPGUniqueID.h"
#include "host/GuideItem.h"
#include "host/LineText.h"
#include "host/Messages.h"
#include "host/NewEntry.h"
#include "host/PluginSession.h"
#include "host/Progress.h"
#include "host/ReportingEnvironment.h"
#include "host/XMLTVGuide.h"

namespace epg {

namespace {

/// Entries, each counted once however often its programme is shown.
struct ImportCounts {
  std::size_t added = 0;
  std::size_t kept = 0;
  std::size_t replaced = 0;
};

XMLTVGuide readGuide(CommandContext& context, const std::string& path) {
  const Progress progress(context.messages, "Reading the guide");
  return parseGuide(readGuideBytes(context.environment, path), path);
}

ImportCounts fileProgrammes(CommandContext& context, EPGItemStore& store, const std::vector<XMLTVProgramme>& programmes,
                            bool replace) {
  const Progress progress(context.messages, "Making entries");
  ImportCounts counts;
  std::set<std::string> seen;
  for (const XMLTVProgramme& programme : programmes) {
    const std::string id = epgUniqueID(programme);
    if (!seen.insert(id).second) continue;
    const std::shared_ptr<EPGItem> stored = store.item(id);
    if (!stored && store.entry(id)) {
      context.messages.line(noItemMessage(store, id));
      ++counts.kept;
      continue;
    }
    if (!stored) {
      store.setItem(id, std::make_shared<EPGItem>(itemOfProgramme(programme, id)));
      ++counts.added;
      continue;
    }
    const PropertyListDictionary values = stored->values();
    PropertyListDictionary replaced = itemReplacedByProgramme(values, programme, id);
    if (!replace || replaced == values) {
      ++counts.kept;
    } else {
      store.setItem(id, std::make_shared<EPGItem>(std::move(replaced)));
      ++counts.replaced;
    }
  }
  return counts;
}

std::string summary(const XMLTVGuide& guide, const ImportCounts& counts, bool replace) {
  std::string text = counted(guide.programmes.size(), "programme", "programmes") + ", " +
                     counted(counts.added, "new entry", "new entries") + ", " +
                     counted(counts.kept, "kept entry", "kept entries");
  if (replace) text += ", " + counted(counts.replaced, "replaced entry", "replaced entries");
  return text;
}

}  // namespace

int importGuide(CommandContext& context, const ImportOptions& options) {
  const XMLTVGuide guide = readGuide(context, options.guide);
  for (const std::string& warning : guide.warnings) context.messages.line(warning);

  PluginSession session(context, PluginSession::Purpose::Adding);
  const ImportCounts counts = fileProgrammes(context, *session.plugin().epgItems(), guide.programmes, options.replace);
  if (counts.added + counts.replaced > 0) {
    session.plugin().saveEPGItemsToFile();
    session.endAfterSave();
  }
  context.output << summary(guide, counts, options.replace) << '\n';
  return 0;
}

}  // namespace epg
