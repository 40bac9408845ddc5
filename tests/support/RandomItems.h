#pragma once

#include <rapidcheck.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/NaiveEditor.h"

namespace epg::test {

/// Any number from 0 to `end` - 1, all equally often: RapidCheck's own ranges grow with the size of the case.
inline rc::Gen<std::size_t> below(std::size_t end) {
  return rc::gen::resize(rc::kNominalSize, rc::gen::inRange<std::size_t>(0, end));
}

inline rc::Gen<bool> onceIn(std::size_t times) {
  return rc::gen::map(below(times), [](std::size_t number) { return number == 0; });
}

/// Few names and texts, so that random items agree and differ often; among them what is easily taken for another.
inline rc::Gen<std::string> tagName() { return rc::gen::element<std::string>("a", "b", "c", "A", " a", "", "outside"); }

inline rc::Gen<std::string> fieldText() { return rc::gen::element<std::string>("", "A", "B", "a", "A "); }

/// Up to `longest` values.
template <typename T>
rc::Gen<std::vector<T>> upTo(std::size_t longest, const rc::Gen<T>& element) {
  return rc::gen::mapcat(below(longest + 1),
                         [element](std::size_t size) { return rc::gen::container<std::vector<T>>(size, element); });
}

/// A value, or nothing in about one case of `cases`.
template <typename T>
rc::Gen<std::optional<T>> mostly(std::size_t cases, const rc::Gen<T>& value) {
  return rc::gen::weightedOneOf<std::optional<T>>(
      {{cases - 1, rc::gen::map(value, [](T v) { return std::optional<T>(std::move(v)); })},
       {1, rc::gen::just(std::optional<T>())}});
}

inline rc::Gen<NaiveItem> naiveItemOfAnyKind() {
  using Texts = std::vector<std::optional<std::string>>;
  return rc::gen::apply(
      [](std::size_t tagsEntry, std::vector<NaiveItem::Element> tags, const Texts& texts, std::size_t present) {
        NaiveItem item;
        item.hasTagsEntry = tagsEntry > 1;
        item.tagsEntryIsList = tagsEntry != 2;
        if (item.hasTagsEntry && item.tagsEntryIsList) item.tags = std::move(tags);
        const char* const keys[] = {ZRLEPGDSTitleKey, ZRLEPGDSDescriptionKey, ZRLEPGDSImageURLKey};
        for (std::size_t i = 0; i < 3; ++i) {
          if ((present >> i & 1) != 0) item.texts[keys[i]] = texts[i];
        }
        return item;
      },
      below(8), upTo(4, mostly(8, tagName())), rc::gen::container<Texts>(3, mostly(10, fieldText())), below(8));
}

inline rc::Gen<std::vector<std::string>> tagCatalogueWithRepeats() { return upTo(5, tagName()); }

}  // namespace epg::test
