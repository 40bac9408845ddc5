#include "host/GuideItem.h"

#include <set>

#include "host/XMLTVGuide.h"
#include "model/KeyConstants.h"
#include "platform/XMLText.h"

namespace epg {

namespace {

void setOrRemove(PropertyListDictionary* values, const char* key, const std::optional<std::string>& text) {
  if (text) {
    values->set(key, carriedByXML(*text));
  } else {
    values->remove(key);
  }
}

/// The categories as the store's file carries them. Two of them may become the same on the way.
PropertyList::Array tagsOfCategories(const std::vector<std::string>& categories) {
  PropertyList::Array tags;
  std::set<std::string> seen;
  for (const std::string& category : categories) {
    const std::string tag = carriedByXML(category);
    if (seen.insert(tag).second) tags.emplace_back(tag);
  }
  return tags;
}

}  // namespace

PropertyListDictionary itemOfProgramme(const XMLTVProgramme& programme, const std::string& uniqueID) {
  return itemReplacedByProgramme({}, programme, uniqueID);
}

PropertyListDictionary itemReplacedByProgramme(PropertyListDictionary values, const XMLTVProgramme& programme,
                                               const std::string& uniqueID) {
  values.set(ZRLEPGDSUniqueIDKey, uniqueID);
  values.set(ZRLEPGDSTitleKey, carriedByXML(programme.title));
  setOrRemove(&values, ZRLEPGDSDescriptionKey, programme.description);
  setOrRemove(&values, ZRLEPGDSImageURLKey, programme.imageURL);
  if (programme.categories.empty()) {
    values.remove(ZRLEPGDSTagsKey);
  } else {
    values.set(ZRLEPGDSTagsKey, tagsOfCategories(programme.categories));
  }
  return values;
}

}  // namespace epg
