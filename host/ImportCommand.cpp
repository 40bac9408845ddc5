#include <algorithm>
#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
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
  SharedText uniqueID;
  PropertyListDictionary values;
};

/// What an import takes from a guide.
struct GuideEntries {
  std::size_t programmes = 0;
  std::vector<GuideEntry> entries;  ///< One for each ID, in the guide's order.
  std::vector<std::string> warnings;
};

/// Makes the entries of the programmes of a guide or of a part of it.
class EntryMaker {
 public:
  explicit EntryMaker(std::size_t bytes) {
    // A search for an ID that is not there ends in an empty bucket, mostly, instead of at IDs from all over memory.
    constexpr float full = 0.25;
    constexpr std::size_t usualProgramme = 500;
    seen_.max_load_factor(full);
    seen_.reserve(bytes / usualProgramme);
  }

  void take(const XMLTVProgramme& programme) {
    ++made.programmes;
    SharedText uniqueID(epgUniqueID(programme));
    if (!seen_.insert(uniqueID).second) return;
    PropertyListDictionary values = items_.itemOfProgramme(programme, uniqueID);
    made.entries.push_back(GuideEntry{std::move(uniqueID), std::move(values)});
  }

  /// Takes over what was made of the part that comes next.
  void append(GuideEntries next) {
    made.programmes += next.programmes;
    for (GuideEntry& entry : next.entries) {
      if (seen_.insert(entry.uniqueID).second) made.entries.push_back(std::move(entry));
    }
  }

  GuideEntries made;

 private:
  std::unordered_set<std::string_view> seen_;  ///< The entries' IDs.
  GuideItems items_;
};

/// Nothing when the guide has to be read by somebody who tells what is wrong in it.
std::optional<GuideEntries> faultlessGuideEntries(const std::string& bytes) {
  constexpr std::size_t worthAThread = std::size_t{1} << 22;
  const std::size_t processors = std::max(std::thread::hardware_concurrency(), 1U);
  const std::size_t parts = std::min(bytes.size() / worthAThread + 1, processors);
  std::deque<EntryMaker> makers;
  std::vector<ProgrammeTaker> takers;
  takers.reserve(parts);
  for (std::size_t i = 0; i < parts; ++i) {
    // The first one takes over what the others made.
    EntryMaker& maker = makers.emplace_back(i == 0 ? bytes.size() : bytes.size() / parts);
    takers.emplace_back([&maker](const XMLTVProgramme& programme) { maker.take(programme); });
  }
  if (!parseFaultlessGuide(bytes, takers)) return std::nullopt;
  for (std::size_t i = 1; i < parts; ++i) makers.front().append(std::move(makers[i].made));
  return std::move(makers.front().made);
}

GuideEntries readGuideEntries(CommandContext& context, const std::string& path) {
  const Progress progress(context.messages, "Reading the guide");
  std::string bytes = readGuideBytes(context.environment, path);
  if (std::optional<GuideEntries> entries = faultlessGuideEntries(bytes)) return std::move(*entries);
  EntryMaker maker(bytes.size());
  const auto take = [&maker](const XMLTVProgramme& programme) { maker.take(programme); };
  maker.made.warnings = parseGuide(std::move(bytes), path, take).warnings;
  return std::move(maker.made);
}

ImportCounts fileEntries(CommandContext& context, EPGItemStore& store, std::vector<GuideEntry> entries, bool replace) {
  const Progress progress(context.messages, "Making entries");
  ImportCounts counts;
  for (GuideEntry& entry : entries) {
    const std::string uniqueID(entry.uniqueID);
    const std::optional<EPGItemStoreEntry> stored = store.entry(uniqueID);
    if (!stored) {
      store.setItem(entry.uniqueID, std::make_shared<EPGItem>(std::move(entry.values)));
      ++counts.added;
      continue;
    }
    if (!stored->item) {
      context.messages.line(noItemMessage(store, uniqueID));
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
