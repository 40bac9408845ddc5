#include "host/GuideItem.h"

#include "host/XMLTVGuide.h"
#include "model/KeyConstants.h"

namespace epg {

namespace {

void setOrRemove(PropertyListDictionary* values, const char* key, const std::optional<std::string>& text) {
  if (text) {
    values->set(key, *text);
  } else {
    values->remove(key);
  }
}

}  // namespace

PropertyListDictionary itemOfProgramme(const XMLTVProgramme& programme, const std::string& uniqueID) {
  return itemReplacedByProgramme({}, programme, uniqueID);
}

PropertyListDictionary itemReplacedByProgramme(PropertyListDictionary values, const XMLTVProgramme& programme,
                                               const std::string& uniqueID) {
  values.set(ZRLEPGDSUniqueIDKey, uniqueID);
  values.set(ZRLEPGDSTitleKey, programme.title);
  setOrRemove(&values, ZRLEPGDSDescriptionKey, programme.description);
  setOrRemove(&values, ZRLEPGDSImageURLKey, programme.imageURL);
  if (programme.categories.empty()) {
    values.remove(ZRLEPGDSTagsKey);
  } else {
    values.set(ZRLEPGDSTagsKey, PropertyList::Array(programme.categories.begin(), programme.categories.end()));
  }
  return values;
}

}  // namespace epg
