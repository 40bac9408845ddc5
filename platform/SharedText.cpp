#include "platform/SharedText.h"

#include <functional>

namespace epg {

SharedText SharedTextPool::shared(std::string_view text) {
  if (text.empty() || text.size() > longest) return text;
  SharedText& remembered = texts_[std::hash<std::string_view>()(text) % texts_.size()];
  if (remembered != text) remembered = text;
  return remembered;
}

}  // namespace epg
