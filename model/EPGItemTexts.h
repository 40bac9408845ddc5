#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace epg {

/// One of the text values of an EPG item, which an operator edits in a field of its own.
struct EPGItemText {
  std::string_view key;      ///< Of the item.
  std::string_view element;  ///< Of a programme in the day file.
  std::string_view label;    ///< In front of its field.
};

/// All text values, in the order of the day file. Whatever has to do with each of them goes by this list.
constexpr std::array<EPGItemText, 3> epgItemTexts{{
    {"title", "title", "Title"},
    {"description", "description", "Description"},
    {"imageURL", "imgUrl", "Image URL"},
}};

/// Where the text value with this key stands in the list; beyond its end where there is none.
constexpr std::size_t epgItemTextAt(std::string_view key) {
  std::size_t index = 0;
  while (index < epgItemTexts.size() && epgItemTexts[index].key != key) ++index;
  return index;
}

}  // namespace epg
