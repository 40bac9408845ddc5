#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "model/EPGItem.h"

namespace epg {

/// An item that keeps its dictionary in memory. Any thread; `values` gives all entries as they stood at one moment, and
/// `setValues` puts all of its entries in at one moment.
class MemoryItem final : public EPGItem {
 public:
  MemoryItem() = default;
  explicit MemoryItem(PropertyListDictionary values) : values_(std::move(values)) {}

  PropertyListDictionary values() const override;
  void setValues(const std::vector<PropertyListDictionary::Entry>& entries) override;
  void remove(const std::string& key) override;

  /// Grows by one with every change of any such item in the process; equal counts mean that nothing changed.
  static std::size_t changeCount();

  /// Where its entries begin in memory, null without any. Only to be prefetched.
  const void* entriesInMemory() const;

 private:
  /// One of a few that all items share: a mutex of its own would be the larger part of many an item.
  std::mutex& mutex() const;

  PropertyListDictionary values_;
};

}  // namespace epg
