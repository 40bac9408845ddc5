#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/PropertyList.h"

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
  using Values = std::shared_ptr<const PropertyListDictionary>;

  EPGItem();
  explicit EPGItem(PropertyListDictionary values);
  explicit EPGItem(Values values);  ///< Shares the given entries until the first change.
  EPGItem(const EPGItem&) = delete;
  EPGItem& operator=(const EPGItem&) = delete;
  virtual ~EPGItem() = default;

  /// Never null; never changes afterwards.
  virtual Values values() const;
  /// Puts all the entries in at one moment, replacing what stands under their keys.
  virtual void setValues(const std::vector<PropertyListDictionary::Entry>& entries);
  void set(const std::string& key, PropertyList value);
  virtual void remove(const std::string& key);

  /// A new item with the same entries; nested values are shared, which is safe because none is changed in place.
  std::shared_ptr<EPGItem> mutableCopy() const;

  /// A count that grows by one with every change of any item in the process; equal counts mean that nothing changed.
  static std::size_t changeCount();

 protected:
  static void noteChange();

 private:
  mutable std::mutex mutex_;
  Values values_;
};

/// The string under `key`, null when absent or no string. Lives as long as `values`.
const std::string* stringValue(const PropertyListDictionary& values, const std::string& key);
/// The list under "tags", null when absent or no list. Elements that are no strings are nobody's tag names; they
/// are passed over and keep their places.
const PropertyList::Array* tagsValue(const PropertyListDictionary& values);

}  // namespace epg
