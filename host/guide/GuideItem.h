#pragma once

#include <string>
#include <vector>

#include "model/KeyConstants.h"
#include "plist/PropertyList.h"
#include "plist/SharedText.h"

namespace epg {

struct XMLTVProgramme;

/// Makes the items of a guide's programmes, which share their keys and the tags that they have in common. One thread at
/// a time.
class GuideItems {
 public:
  /// The entries of a new EPG item for the programme, as the store's file gives them back: characters that XML cannot
  /// carry are U+FFFD. What the guide does not tell stays absent.
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

/// `values` with the metadata of `programmesItem`, which comes from `itemOfProgramme`, in place of its own. Entries
/// that the plug-in does not know stay.
PropertyListDictionary itemReplacedByProgramme(PropertyListDictionary values,
                                               const PropertyListDictionary& programmesItem);

}  // namespace epg
