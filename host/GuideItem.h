#pragma once

#include <string>

#include "platform/PropertyList.h"

namespace epg {

struct XMLTVProgramme;

/// The entries of a new EPG item for the programme, as the store's file gives them back: characters that XML cannot
/// carry are U+FFFD. What the guide does not tell stays absent.
PropertyListDictionary itemOfProgramme(const XMLTVProgramme& programme, const std::string& uniqueID);

/// `values` with the metadata of `programmesItem`, which comes from `itemOfProgramme`, in place of its own. Entries
/// that the plug-in does not know stay.
PropertyListDictionary itemReplacedByProgramme(PropertyListDictionary values,
                                               const PropertyListDictionary& programmesItem);

}  // namespace epg
