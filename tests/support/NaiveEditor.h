#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/Items.h"

namespace epg::test {

/// An EPG item as plain data: what the editor looks at, in the simplest form that can hold it.
struct NaiveItem {
  /// An element of a tag list: a name, or nothing for one that is no string.
  using Element = std::optional<std::string>;

  bool hasTagsEntry = false;
  bool tagsEntryIsList = true;
  std::vector<Element> tags;  ///< Only where the entry is a list.
  /// The entries "title", "description" and "imageURL" that the item has; nothing for a value that is no string.
  std::map<std::string, std::optional<std::string>> texts;

  bool carries(const std::string& tag) const;
};

bool operator==(const NaiveItem& a, const NaiveItem& b);
std::ostream& operator<<(std::ostream& stream, const NaiveItem& item);

/// Entries with the values of the naive item, and back. Both ways nothing is lost.
std::vector<PropertyListDictionary::Entry> entriesOf(const NaiveItem& item);
NaiveItem naiveItem(const EPGItem& item);

using NaiveItems = std::vector<NaiveItem*>;

/// The tag's state over the items, the rule written down once more as it is told: look at one item after another.
int naiveState(const NaiveItems& items, const std::string& tag);
void setNaively(const NaiveItems& items, const std::string& tag, std::ptrdiff_t state);

struct NaiveField {
  bool mixed = false;
  std::string text;
};

NaiveField naiveField(const NaiveItems& items, const std::string& key);
void applyNaively(const NaiveItems& items, const std::string& key, const NaiveField& field);

}  // namespace epg::test
