#include "tests/support/RandomItems.h"

#include <cstddef>
#include <string>

#include "model/EPGItemTexts.h"
#include "tests/support/Draw.h"

namespace epg::test {

std::string tagName() { return oneTextOf({"a", "b", "c", "A", " a", "", "outside"}); }

std::string fieldText() { return oneTextOf({"", "A", "B", "a", "A "}); }

NaiveItem naiveItemOfAnyKind() {
  NaiveItem item;
  // In two items of eight there is no entry, and in one it is no list.
  const std::size_t tagsEntry = below(8);
  item.hasTagsEntry = tagsEntry > 1;
  item.tagsEntryIsList = tagsEntry != 2;
  if (tagsEntry > 2) item.tags = upTo(4, [] { return mostly(8, tagName); });
  for (const EPGItemText& text : epgItemTexts) {
    if (onceIn(2)) item.texts[std::string(text.key)] = mostly(10, fieldText);
  }
  return item;
}

std::vector<std::string> tagCatalogueWithRepeats() { return upTo(5, tagName); }

}  // namespace epg::test
