#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "plist/PropertyList.h"

namespace epg {

/// The metadata of one EPG entry: a dictionary that store, snapshots and the editing session share by reference.
///
/// Besides the known keys (model/KeyConstants.h) an item keeps whatever else it holds. A known key whose value has
/// the wrong type reads as absent and stays as it is until somebody sets it.
///
/// Any thread may read an item while another one changes it; a reader sees the old or the new value. `values` gives
/// all entries as they stood together at one moment.
class EPGItem {
 public:
  EPGItem() = default;
  explicit EPGItem(PropertyListDictionary values) : values_(std::move(values)) {}
  EPGItem(const EPGItem&) = delete;
  EPGItem& operator=(const EPGItem&) = delete;
  virtual ~EPGItem() = default;

  virtual PropertyListDictionary values() const;
  /// Puts all the entries in at one moment, replacing what stands under their keys.
  virtual void setValues(const std::vector<PropertyListDictionary::Entry>& entries);
  void set(SharedText key, PropertyList value);
  virtual void remove(const std::string& key);

  /// Has the processor fetch the item's own dictionary, without what it holds. Nothing for an item of a derived class
  /// that keeps its values elsewhere.
  void fetchAhead() const;
  /// The same for each of the items, the beginnings of the values in the dictionaries with it.
  static void fetchAhead(const std::vector<std::shared_ptr<EPGItem>>& items);

  /// A new item with the same entries; nested values are shared, which is safe because none is changed in place.
  std::shared_ptr<EPGItem> mutableCopy() const;

  /// A count that grows by one with every change of any item in the process; equal counts mean that nothing changed.
  static std::size_t changeCount();

 protected:
  static void noteChange();

 private:
  /// One of a few that all items share: a mutex of its own would be the larger part of many an item.
  std::mutex& mutex() const;

  PropertyListDictionary values_;
};

/// The string under `key`, nothing when absent or no string. Lives as long as `values`.
std::optional<std::string_view> stringValue(const PropertyListDictionary& values, std::string_view key);
/// The list under "tags", null when absent or no list. Elements that are no strings are nobody's tag names; they
/// are passed over and keep their places. Lives as long as `values`.
const PropertyList::Elements* tagsValue(const PropertyListDictionary& values);

}  // namespace epg
