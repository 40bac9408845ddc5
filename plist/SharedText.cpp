#include "plist/SharedText.h"

#include <algorithm>
#include <cstddef>
#include <functional>

namespace epg {

SharedText SharedTextPool::shared(std::string_view text) {
  if (text.empty() || text.size() > longest) return text;
  const std::size_t hash = std::hash<std::string_view>()(text);
  auto& remembered = (*texts_)[hash % texts_->size()];
  Remembered* const first = remembered.data();
  Remembered* const last = first + remembered.size();
  Remembered* place =
      std::find_if(first, last, [&](const Remembered& each) { return each.hash == hash && each.text == text; });
  if (place == last) *--place = Remembered{hash, text};
  std::rotate(first, place, place + 1);
  return first->text;
}

}  // namespace epg
