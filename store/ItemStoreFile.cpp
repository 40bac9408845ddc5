#include "store/ItemStoreFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Paths.h"
#include "plist/PropertyListFile.h"
#include "store/ItemValues.h"
#include "store/MemoryItem.h"
#include "store/Prefetch.h"
#include "store/UnreadableStoreFile.h"

namespace epg {

namespace {

/// A record and its sort key: the bytes of its ID that tell most IDs apart, as a number in their order.
struct SortedRecord {
  std::uint64_t sortKey;
  const EPGItemStoreRecord* record;
};

/// The bytes from there on, zeros where there are none, as a number that is in the order of the bytes.
std::uint64_t bytesAsNumber(std::string_view text, std::size_t from) {
  std::uint64_t number = 0;
  for (std::size_t i = from; i < from + sizeof number; ++i) {
    number = number << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0);
  }
  return number;
}

/// What the IDs of the first `count` records begin with in common.
std::string_view commonPrefix(const std::vector<SortedRecord>& records, std::size_t count) {
  std::string_view prefix = records.front().record->uniqueID;
  for (std::size_t i = 1; i < count; ++i) {
    const std::string_view uniqueID = records[i].record->uniqueID;
    prefix = prefix.substr(0, uniqueID.size());
    const auto differs = std::mismatch(prefix.begin(), prefix.end(), uniqueID.begin()).first;
    prefix = prefix.substr(0, static_cast<std::size_t>(differs - prefix.begin()));
  }
  return prefix;
}

/// Takes the sort keys from the bytes behind the prefix. They are in the order of the IDs only when true comes back:
/// every ID begins with the prefix.
bool setSortKeys(std::vector<SortedRecord>& records, std::string_view prefix) {
  bool haveAllThePrefix = true;
  for (std::size_t i = 0; i < records.size(); ++i) {
    // Records and IDs lie all over memory.
    constexpr std::size_t ahead = 8;
    if (i + 2 * ahead < records.size()) prefetch(records[i + 2 * ahead].record, sizeof(SharedText));
    if (i + ahead < records.size()) prefetch(records[i + ahead].record->uniqueID.block(), sizeof(std::uint64_t));
    const std::string_view uniqueID = records[i].record->uniqueID;
    records[i].sortKey = bytesAsNumber(uniqueID, prefix.size());
    haveAllThePrefix = haveAllThePrefix && uniqueID.substr(0, prefix.size()) == prefix;
  }
  return haveAllThePrefix;
}

/// Sorted by the bytes of the IDs. IDs mostly differ behind a common prefix, so the sort keys nearly always tell which
/// comes first, without another look at the IDs.
std::vector<SortedRecord> sortedRecords(const EPGItemStoreSnapshot& snapshot) {
  std::vector<SortedRecord> records;
  records.reserve(snapshot.size());
  for (const EPGItemStoreRecord* const record : snapshot.records()) records.push_back(SortedRecord{0, record});
  if (records.empty()) return records;
  // What some have in common, all have in common as a rule.
  constexpr std::size_t some = 64;
  if (!setSortKeys(records, commonPrefix(records, std::min(some, records.size())))) {
    setSortKeys(records, commonPrefix(records, records.size()));
  }
  std::sort(records.begin(), records.end(), [](const SortedRecord& a, const SortedRecord& b) {
    return a.sortKey != b.sortKey ? a.sortKey < b.sortKey : a.record->uniqueID < b.record->uniqueID;
  });
  return records;
}

/// What stands under the records, a few of them read at once.
class ContentsInOrder {
 public:
  explicit ContentsInOrder(const std::vector<SortedRecord>& records) : records_(records) {}

  /// To be asked for each in turn.
  PropertyList at(std::size_t index) {
    if (index % few == 0) read(index);
    const std::optional<PropertyListDictionary>& values = values_[index % few];
    return values ? PropertyList(*values) : records_[index].record->entry.value;
  }

 private:
  static constexpr std::size_t few = 16;

  void read(std::size_t first) {
    const std::size_t end = std::min(first + few, records_.size());
    for (std::size_t i = end; i < std::min(end + few, records_.size()); ++i) {
      prefetch(records_[i].record, sizeof(EPGItemStoreRecord));
    }
    items_.clear();
    for (std::size_t i = first; i < end; ++i) {
      items_.push_back(records_[i].record->entry.item.get());
      prefetch(items_.back(), sizeof(MemoryItem));
    }
    values_ = valuesOfItems(items_);
  }

  const std::vector<SortedRecord>& records_;
  std::vector<const EPGItem*> items_;
  std::vector<std::optional<PropertyListDictionary>> values_;
};

}  // namespace

std::string itemStorePath(const std::string& dataFolderPath) {
  return appendPathComponent(dataFolderPath, "EPGItems.plist");
}

ItemStoreContents readItemStore(Environment& environment, const std::string& path) {
  // Before it is read: what comes in its place in between is not what could not be read.
  const std::optional<Environment::FileInfo> file = unreadableStoreFile(environment, path);
  std::optional<PropertyListDictionary> entries = readPropertyListDictionary(environment, path);
  if (entries) return {std::move(*entries), std::nullopt};
  return {PropertyListDictionary(), file};
}

bool writeItemStore(ByteSink& file, const EPGItemStoreSnapshot& snapshot) {
  const std::vector<SortedRecord> records = sortedRecords(snapshot);
  std::vector<std::string_view> keys;
  keys.reserve(records.size());
  for (const SortedRecord& sorted : records) keys.emplace_back(sorted.record->uniqueID);
  ContentsInOrder contents(records);
  return writePropertyListXML(file, keys, [&](std::size_t i) { return contents.at(i); });
}

}  // namespace epg
