#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/EPGItem.h"
#include "model/EPGItemList.h"
#include "model/KeyConstants.h"
#include "plist/PropertyList.h"
#include "store/MemoryItem.h"
#include "store/MemoryItemList.h"

namespace epg::test {

using Item = std::shared_ptr<EPGItem>;
using Names = std::vector<std::string>;

inline Item itemWith(std::vector<PropertyListDictionary::Entry> entries) {
  return std::make_shared<MemoryItem>(PropertyListDictionary(std::move(entries)));
}

inline PropertyList listOfNames(const Names& names) {
  return PropertyList(PropertyList::Array(names.begin(), names.end()));
}

inline Item itemWithTags(const Names& names) { return itemWith({{ZRLEPGDSTagsKey, listOfNames(names)}}); }

inline Item itemWithoutTags() { return itemWith({}); }

inline Item itemTitled(const std::string& title) { return itemWith({{ZRLEPGDSTitleKey, title}}); }

inline std::shared_ptr<EPGItemList> listOf(const std::vector<Item>& items) {
  auto list = std::make_shared<MemoryItemList>();
  for (const Item& item : items) list->append(item);
  return list;
}

/// The value under the key; nothing where the item has no such entry.
inline std::optional<PropertyList> valueOf(const EPGItem& item, const std::string& key) {
  const PropertyListDictionary values = item.values();
  const PropertyList* const value = values.find(key);
  return value ? std::optional<PropertyList>(*value) : std::nullopt;
}

/// The tag names in the item's list; nothing where it has no list.
inline std::optional<Names> tagsOf(const EPGItem& item) {
  const PropertyListDictionary values = item.values();
  const PropertyList::Elements* const list = tagsValue(values);
  if (!list) return std::nullopt;
  Names names;
  for (const PropertyList& element : *list) {
    if (const auto name = element.asString()) names.emplace_back(*name);
  }
  return names;
}

/// The string under the key; nothing where there is none.
inline std::optional<std::string> textOf(const EPGItem& item, const std::string& key) {
  const PropertyListDictionary values = item.values();
  const auto text = stringValue(values, key);
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

}  // namespace epg::test
