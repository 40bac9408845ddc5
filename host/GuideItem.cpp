#include "host/GuideItem.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "host/XMLTVGuide.h"
#include "model/KeyConstants.h"
#include "platform/XMLText.h"

namespace epg {

namespace {

PropertyList carriedText(const std::string& text) {
  return isCarriedByXML(text) ? PropertyList(text) : PropertyList(carriedByXML(text));
}

/// The categories as the store's file carries them, each text once.
PropertyList tagsOfCategories(const std::vector<std::string>& categories) {
  PropertyList::Array tags;
  if (std::all_of(categories.begin(), categories.end(), [](const std::string& text) { return isCarriedByXML(text); })) {
    tags.assign(categories.begin(), categories.end());
    return PropertyList(std::move(tags));
  }
  // Two of them may become the same.
  std::set<std::string> seen;
  for (const std::string& category : categories) {
    const std::string tag = carriedByXML(category);
    if (seen.insert(tag).second) tags.emplace_back(tag);
  }
  return PropertyList(std::move(tags));
}

}  // namespace

PropertyListDictionary itemOfProgramme(const XMLTVProgramme& programme, const std::string& uniqueID) {
  std::vector<PropertyListDictionary::Entry> entries;
  entries.reserve(5);
  if (programme.description) entries.emplace_back(ZRLEPGDSDescriptionKey, carriedText(*programme.description));
  if (programme.imageURL) entries.emplace_back(ZRLEPGDSImageURLKey, carriedText(*programme.imageURL));
  if (!programme.categories.empty()) entries.emplace_back(ZRLEPGDSTagsKey, tagsOfCategories(programme.categories));
  entries.emplace_back(ZRLEPGDSTitleKey, carriedText(programme.title));
  entries.emplace_back(ZRLEPGDSUniqueIDKey, PropertyList(uniqueID));
  return PropertyListDictionary(std::move(entries));
}

PropertyListDictionary itemReplacedByProgramme(PropertyListDictionary values,
                                               const PropertyListDictionary& programmesItem) {
  for (const char* const key :
       {ZRLEPGDSUniqueIDKey, ZRLEPGDSTitleKey, ZRLEPGDSDescriptionKey, ZRLEPGDSImageURLKey, ZRLEPGDSTagsKey}) {
    if (const PropertyList* const value = programmesItem.find(key)) {
      values.set(key, *value);
    } else {
      values.remove(key);
    }
  }
  return values;
}

}  // namespace epg
