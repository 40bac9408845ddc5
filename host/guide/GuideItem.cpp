#include "host/guide/GuideItem.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "host/guide/XMLTVGuide.h"
#include "model/EPGItemTexts.h"
#include "xml/XMLText.h"

namespace epg {

namespace {

PropertyList carriedText(const std::string& text) {
  return isCarriedByXML(text) ? PropertyList(text) : PropertyList(carriedByXML(text));
}

}  // namespace

/// The tags as they will be read back from the store's file, each once.
PropertyList GuideItems::tagsOfCategories(const std::vector<std::string>& categories) {
  PropertyList::Array tags;
  tags.reserve(categories.size());
  if (std::all_of(categories.begin(), categories.end(), [](const std::string& text) { return isCarriedByXML(text); })) {
    for (const std::string& category : categories) tags.emplace_back(tags_.shared(category));
    return PropertyList(std::move(tags));
  }
  // Different categories may become the same tag.
  std::set<std::string> seen;
  for (const std::string& category : categories) {
    const std::string tag = carriedByXML(category);
    if (seen.insert(tag).second) tags.emplace_back(tag);
  }
  return PropertyList(std::move(tags));
}

PropertyListDictionary GuideItems::itemOfProgramme(const XMLTVProgramme& programme, const SharedText& uniqueID) {
  std::vector<PropertyListDictionary::Entry> entries;
  entries.reserve(5);
  if (programme.description) entries.emplace_back(descriptionKey_, carriedText(*programme.description));
  if (programme.imageURL) entries.emplace_back(imageURLKey_, carriedText(*programme.imageURL));
  if (!programme.categories.empty()) entries.emplace_back(tagsKey_, tagsOfCategories(programme.categories));
  entries.emplace_back(titleKey_, carriedText(programme.title));
  entries.emplace_back(uniqueIDKey_, PropertyList(uniqueID));
  return PropertyListDictionary(std::move(entries));
}

PropertyListDictionary itemReplacedByProgramme(PropertyListDictionary values,
                                               const PropertyListDictionary& programmesItem) {
  const auto replace = [&](std::string_view key) {
    if (const PropertyList* const value = programmesItem.find(key)) {
      values.set(key, *value);
    } else {
      values.remove(key);
    }
  };
  replace(ZRLEPGDSUniqueIDKey);
  for (const EPGItemText& text : epgItemTexts) replace(text.key);
  replace(ZRLEPGDSTagsKey);
  return values;
}

}  // namespace epg
