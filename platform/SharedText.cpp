#include "platform/SharedText.h"

#include <cstddef>
#include <functional>
#include <utility>

namespace epg {

SharedText SharedTextPool::shared(std::string_view text) {
  if (text.empty() || text.size() > longest) return text;
  const std::size_t hash = std::hash<std::string_view>()(text);
  auto& remembered = texts_[hash % texts_.size()];
  std::size_t place = 0;
  while (place < remembered.size() - 1 && (remembered[place].hash != hash || remembered[place].text != text)) ++place;
  for (; place > 0; --place) std::swap(remembered[place], remembered[place - 1]);
  if (remembered[0].hash != hash || remembered[0].text != text) remembered[0] = Remembered{hash, text};
  return remembered[0].text;
}

}  // namespace epg
