#include <algorithm>
#include <cstddef>
#include <deque>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/commands/CommandContext.h"
#include "host/commands/Commands.h"
#include "host/commands/EntryIDs.h"
#include "host/commands/ExitStatus.h"
#include "host/commands/PluginSession.h"
#include "host/commands/ReportingEnvironment.h"
#include "host/guide/EPGUniqueID.h"
#include "host/guide/FaultlessGuide.h"
#include "host/guide/GuideItem.h"
#include "host/guide/InputFile.h"
#include "host/guide/XMLTVGuide.h"
#include "host/terminal/LineText.h"
#include "host/terminal/Messages.h"
#include "host/terminal/Progress.h"
#include "store/MemoryItem.h"

namespace epg {

namespace {

/// Numbers of entries. An entry counts once, however often its programme is shown.
struct ImportCounts {
  std::size_t added = 0;
  std::size_t kept = 0;
  std::size_t replaced = 0;
};

struct GuideEntry {
  SharedText uniqueID;
  std::shared_ptr<EPGItem> item;
};

/// What an import takes from a guide.
struct GuideEntries {
  std::size_t programmes = 0;
  std::vector<GuideEntry> entries;  ///< In the guide's order. Several may have the same ID and the same content.
  std::vector<std::string> warnings;
};

/// Makes the entries of the programmes of a guide or of one of its shards.
class EntryMaker {
 public:
  explicit EntryMaker(std::size_t bytes) {
    // Most IDs are new. In a sparse table their search ends at an empty bucket and touches no other ID.
    constexpr float maximumLoad = 0.25;
    constexpr std::size_t usualProgramme = 500;
    seen_.max_load_factor(maximumLoad);
    seen_.reserve(bytes / usualProgramme);
  }

  void take(const XMLTVProgramme& programme) {
    ++made.programmes;
    SharedText uniqueID(epgUniqueID(programme));
    if (!seen_.insert(uniqueID).second) return;
    auto item = std::make_shared<MemoryItem>(items_.itemOfProgramme(programme, uniqueID));
    made.entries.push_back(GuideEntry{std::move(uniqueID), std::move(item)});
  }

  GuideEntries made;

 private:
  /// The IDs of the entries, so that this maker makes no entry twice. Dangling once the entries are given away.
  std::unordered_set<std::string_view> seen_;
  GuideItems items_;
};

/// Nothing when something is wrong in the guide, or it has to be read the slow way.
std::optional<GuideEntries> faultlessGuideEntries(const CommandContext& context, const std::string& bytes) {
  constexpr std::size_t smallestShard = std::size_t{1} << 22;
  const std::size_t processors = std::max(std::thread::hardware_concurrency(), 1U);
  const std::size_t shards = std::min(bytes.size() / smallestShard + 1, processors);
  const auto makers = std::make_shared<std::deque<EntryMaker>>();
  std::vector<ProgrammeTaker> takers;
  takers.reserve(shards);
  for (std::size_t i = 0; i < shards; ++i) {
    EntryMaker& maker = makers->emplace_back(bytes.size() / shards);
    takers.emplace_back([&maker](const XMLTVProgramme& programme) { maker.take(programme); });
  }
  if (!parseFaultlessGuide(bytes, takers)) return std::nullopt;
  if (context.keepUntilExit) context.keepUntilExit(makers);
  GuideEntries all = std::move(makers->front().made);
  for (std::size_t i = 1; i < shards; ++i) {
    GuideEntries& next = (*makers)[i].made;
    all.programmes += next.programmes;
    all.entries.insert(all.entries.end(), std::make_move_iterator(next.entries.begin()),
                       std::make_move_iterator(next.entries.end()));
  }
  return all;
}

GuideEntries readGuideEntries(CommandContext& context, const std::string& path) {
  const Progress progress(context.messages, "Reading the guide");
  std::string bytes = readDecompressedFile(context.environment, path);
  if (std::optional<GuideEntries> entries = faultlessGuideEntries(context, bytes)) return std::move(*entries);
  EntryMaker maker(bytes.size());
  const auto take = [&maker](const XMLTVProgramme& programme) { maker.take(programme); };
  maker.made.warnings = parseGuide(std::move(bytes), path, take).warnings;
  return std::move(maker.made);
}

ImportCounts fileEntries(CommandContext& context, EPGItemStore& store, std::vector<GuideEntry> entries, bool replace) {
  const Progress progress(context.messages, "Making entries");
  ImportCounts counts;
  const std::shared_ptr<const EPGItemStoreSnapshot> before = store.snapshot();
  std::unordered_set<std::string_view> known;
  for (GuideEntry& entry : entries) {
    const EPGItemStoreRecord* const stored = before->find(entry.uniqueID);
    if (!stored) {
      store.setItem(entry.uniqueID, std::move(entry.item));
      continue;
    }
    if (!known.insert(stored->uniqueID).second) continue;
    if (!stored->entry.item) {
      context.messages.line(noItemMessage(store, std::string(entry.uniqueID)));
      ++counts.kept;
      continue;
    }
    const PropertyListDictionary values = stored->entry.item->values();
    PropertyListDictionary replaced = replace ? itemReplacedByProgramme(values, entry.item->values()) : values;
    if (replaced == values) {
      ++counts.kept;
    } else {
      store.setItem(entry.uniqueID, std::make_shared<MemoryItem>(std::move(replaced)));
      ++counts.replaced;
    }
  }
  // Fewer than were filed when several have the same ID.
  counts.added = store.snapshot()->size() - before->size();
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

int runImport(CommandContext& context, const ImportOptions& options) {
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
  return exitDone;
}

}  // namespace epg
