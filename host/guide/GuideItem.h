#pragma once

#include <string>
#include <vector>

#include "model/KeyConstants.h"
#include "plist/PropertyList.h"
#include "plist/SharedText.h"

namespace epg {

struct XMLTVProgramme;

/// Makes the items of a guide's programmes. Their keys and tags are interned. One thread at a time.
class GuideItems {
 public:
  /// The values of a new EPG item for the programme, as they will be read back from the store's file: U+FFFD stands in
  /// place of characters that XML cannot hold. What the guide does not tell stays absent.
  PropertyListDictionary itemOfProgramme(const XMLTVProgramme& programme, const SharedText& uniqueID);

 private:
  PropertyList tagsOfCategories(const std::vector<std::string>& categories);

  const SharedText descriptionKey_ = ZRLEPGDSDescriptionKey;
  const SharedText imageURLKey_ = ZRLEPGDSImageURLKey;
  const SharedText tagsKey_ = ZRLEPGDSTagsKey;
  const SharedText titleKey_ = ZRLEPGDSTitleKey;
  const SharedText uniqueIDKey_ = ZRLEPGDSUniqueIDKey;
  SharedTextPool tags_;
};

/// The values of an item after its metadata was replaced by that of `programmesItem`, which comes from
/// `itemOfProgramme`. Values under keys that the plug-in does not know stay.
PropertyListDictionary itemReplacedByProgramme(PropertyListDictionary values,
                                               const PropertyListDictionary& programmesItem);

}  // namespace epg
