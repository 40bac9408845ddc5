#include "platform/SharedText.h"

#include <algorithm>
#include <cstddef>
#include <functional>

namespace epg {

SharedText SharedTextPool::shared(std::string_view text) {
  if (text.empty() || text.size() > longest) return text;
  const std::size_t hash = std::hash<std::string_view>()(text);
  auto& remembered = texts_[hash % texts_.size()];
  auto* place = std::find_if(remembered.begin(), remembered.end(),
                             [&](const Remembered& each) { return each.hash == hash && each.text == text; });
  if (place == remembered.end()) *--place = Remembered{hash, text};
  std::rotate(remembered.begin(), place, place + 1);
  return remembered.front().text;
}

}  // namespace epg
