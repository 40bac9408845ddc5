#include "model/EPGItem.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <utility>

#include "model/KeyConstants.h"
#include "platform/FetchAhead.h"

namespace epg {

namespace {

std::atomic<std::size_t> changesOfAllItems{0};

constexpr std::size_t usualSize = 192;  ///< Bytes of an item's entries, and of the longer texts in them.

}  // namespace

std::mutex& EPGItem::mutex() const {
  // Never destroyed: threads that nobody joins may still look at items while the process ends.
  static auto& mutexes = *new std::array<std::mutex, 64>;
  return mutexes[std::hash<const EPGItem*>()(this) / alignof(std::max_align_t) % mutexes.size()];
}

PropertyListDictionary EPGItem::values() const {
  const std::lock_guard<std::mutex> lock(mutex());
  return values_;
}

void EPGItem::setValues(const std::vector<PropertyListDictionary::Entry>& entries) {
  // Given up after the lock: what goes may be the host's, and may look at this item or at another one as it goes.
  PropertyListDictionary old;
  const std::lock_guard<std::mutex> lock(mutex());
  old = values_;
  PropertyListDictionary changed = values_;
  for (const auto& [key, value] : entries) changed.set(key, value);
  values_ = std::move(changed);
  noteChange();
}

void EPGItem::set(SharedText key, PropertyList value) {
  std::vector<PropertyListDictionary::Entry> entry;
  entry.emplace_back(std::move(key), std::move(value));
  setValues(entry);
}

void EPGItem::remove(const std::string& key) {
  PropertyListDictionary old;
  const std::lock_guard<std::mutex> lock(mutex());
  old = values_;
  values_.remove(key);
  noteChange();
}

void EPGItem::fetchAhead() const {
  const std::lock_guard<std::mutex> lock(mutex());
  epg::fetchAhead(values_.block(), usualSize);
}

void EPGItem::fetchAhead(const std::vector<std::shared_ptr<EPGItem>>& items) {
  for (const auto& item : items) item->fetchAhead();
  for (const auto& item : items) {
    // Not what a derived class makes of a platform's object, which would be made twice.
    for (const auto& [key, value] : item->EPGItem::values()) epg::fetchAhead(value.block(), usualSize);
  }
}

std::shared_ptr<EPGItem> EPGItem::mutableCopy() const { return std::make_shared<EPGItem>(values()); }

std::size_t EPGItem::changeCount() { return changesOfAllItems; }

void EPGItem::noteChange() { ++changesOfAllItems; }

std::optional<std::string_view> stringValue(const PropertyListDictionary& values, std::string_view key) {
  const PropertyList* const value = values.find(key);
  return value ? value->asString() : std::nullopt;
}

const PropertyList::Elements* tagsValue(const PropertyListDictionary& values) {
  const PropertyList* const value = values.find(ZRLEPGDSTagsKey);
  return value ? value->asArray() : nullptr;
}

}  // namespace epg
