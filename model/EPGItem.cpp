#include "model/EPGItem.h"

#include <atomic>
#include <utility>

#include "model/KeyConstants.h"

namespace epg {

namespace {

std::atomic<std::size_t> changesOfAllItems{0};

}  // namespace

EPGItem::EPGItem() : EPGItem(PropertyListDictionary()) {}

EPGItem::EPGItem(PropertyListDictionary values)
    : values_(std::make_shared<const PropertyListDictionary>(std::move(values))) {}

EPGItem::EPGItem(Values values) : values_(std::move(values)) {}

EPGItem::Values EPGItem::values() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return values_;
}

void EPGItem::setValues(const std::vector<PropertyListDictionary::Entry>& entries) {
  Values old;  // Given up after the lock, should it be the last hold on much text.
  const std::lock_guard<std::mutex> lock(mutex_);
  auto changed = std::make_shared<PropertyListDictionary>(*values_);
  for (const auto& [key, value] : entries) changed->set(key, value);
  old = std::exchange(values_, std::move(changed));
  noteChange();
}

void EPGItem::set(const std::string& key, PropertyList value) {
  std::vector<PropertyListDictionary::Entry> entry;
  entry.emplace_back(key, std::move(value));
  setValues(entry);
}

void EPGItem::remove(const std::string& key) {
  Values old;  // As in setValues: what goes with it may be the host's, and may look at this item once more.
  const std::lock_guard<std::mutex> lock(mutex_);
  auto changed = std::make_shared<PropertyListDictionary>(*values_);
  changed->remove(key);
  old = std::exchange(values_, std::move(changed));
  noteChange();
}

std::shared_ptr<EPGItem> EPGItem::mutableCopy() const { return std::make_shared<EPGItem>(values()); }

std::size_t EPGItem::changeCount() { return changesOfAllItems; }

void EPGItem::noteChange() { ++changesOfAllItems; }

const std::string* stringValue(const PropertyListDictionary& values, const std::string& key) {
  const PropertyList* const value = values.find(key);
  return value ? value->asString() : nullptr;
}

const PropertyList::Array* tagsValue(const PropertyListDictionary& values) {
  const PropertyList* const value = values.find(ZRLEPGDSTagsKey);
  return value ? value->asArray() : nullptr;
}

}  // namespace epg
