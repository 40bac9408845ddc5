#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "plist/PropertyList.h"

namespace epg {

/// The metadata of one EPG entry: a dictionary that store, snapshots and the editing session share by reference.
/// `MemoryItem` keeps it in memory; a face may have items that are objects of its platform.
///
/// Besides the known keys (model/KeyConstants.h) an item keeps whatever else it holds. A known key whose value has
/// the wrong type reads as absent and stays as it is until somebody sets it.
///
/// Any thread may read an item while another one changes it; a reader sees the old or the new value.
class EPGItem {
 public:
  EPGItem() = default;
  EPGItem(const EPGItem&) = delete;
  EPGItem& operator=(const EPGItem&) = delete;
  virtual ~EPGItem() = default;

  virtual PropertyListDictionary values() const = 0;
  /// Puts the entries in, replacing what stands under their keys.
  virtual void setValues(const std::vector<PropertyListDictionary::Entry>& entries) = 0;
  virtual void remove(const std::string& key) = 0;

  void set(SharedText key, PropertyList value);
};

/// The string under `key`, nothing when absent or no string. Lives as long as `values`.
std::optional<std::string_view> stringValue(const PropertyListDictionary& values, std::string_view key);
/// The list under "tags", null when absent or no list. Elements that are no strings are nobody's tag names; they
/// are passed over and keep their places. Lives as long as `values`.
const PropertyList::Elements* tagsValue(const PropertyListDictionary& values);

}  // namespace epg
