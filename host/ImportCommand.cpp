#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

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

struct GuideEntry {
  std::string uniqueID;
  PropertyListDictionary values;
};

/// What an import takes from a guide.
struct GuideEntries {
  std::size_t programmes = 0;
  std::deque<GuideEntry> entries;  ///< One for each ID, in the guide's order.
  std::vector<std::string> warnings;
};

GuideEntries readGuideEntries(CommandContext& context, const std::string& path) {
  const Progress progress(context.messages, "Reading the guide");
  GuideEntries read;
  std::string bytes = readGuideBytes(context.environment, path);
  std::unordered_set<std::string_view> seen;  // The IDs of the entries, which stay where they are.
  constexpr std::size_t usualProgramme = 500;
  seen.reserve(bytes.size() / usualProgramme);
  const auto take = [&](const XMLTVProgramme& programme) {
    ++read.programmes;
    GuideEntry& entry = read.entries.emplace_back(GuideEntry{epgUniqueID(programme), {}});
    if (seen.insert(entry.uniqueID).second) {
      entry.values = itemOfProgramme(programme, entry.uniqueID);
    } else {
      read.entries.pop_back();
    }
  };
  read.warnings = parseGuide(std::move(bytes), path, take).warnings;
  return read;
}

ImportCounts fileEntries(CommandContext& context, EPGItemStore& store, std::deque<GuideEntry> entries, bool replace) {
  const Progress progress(context.messages, "Making entries");
  ImportCounts counts;
  for (GuideEntry& entry : entries) {
    const std::optional<EPGItemStoreEntry> stored = store.entry(entry.uniqueID);
    if (!stored) {
      store.setItem(entry.uniqueID, std::make_shared<EPGItem>(std::move(entry.values)));
      ++counts.added;
      continue;
    }
    if (!stored->item) {
      context.messages.line(noItemMessage(store, entry.uniqueID));
      ++counts.kept;
      continue;
    }
    const PropertyListDictionary values = stored->item->values();
    PropertyListDictionary replaced = itemReplacedByProgramme(values, entry.values);
    if (!replace || replaced == values) {
      ++counts.kept;
    } else {
      store.setItem(entry.uniqueID, std::make_shared<EPGItem>(std::move(replaced)));
      ++counts.replaced;
    }
  }
  return counts;
}

std::string summary(std::size_t programmes, const ImportCounts& counts, bool replace) {
  std::string text = counted(programmes, "programme", "programmes") + ", " +
                     counted(counts.added, "new entry", "new entries") + ", " +
                     counted(counts.kept, "kept entry", "kept entries");
  if (replace) text += ", " + counted(counts.replaced, "replaced entry", "replaced entries");
  return text;
}

}  // namespace

int importGuide(CommandContext& context, const ImportOptions& options) {
  GuideEntries guide = readGuideEntries(context, options.guide);
  for (const std::string& warning : guide.warnings) context.messages.line(warning);

  PluginSession session(context, PluginSession::Purpose::Adding);
  const ImportCounts counts =
      fileEntries(context, *session.plugin().epgItems(), std::move(guide.entries), options.replace);
  if (counts.added + counts.replaced > 0) {
    session.plugin().saveEPGItemsToFile();
    session.endAfterSave();
  }
  context.output << summary(guide.programmes, counts, options.replace) << '\n';
  return 0;
}

}  // namespace epg
