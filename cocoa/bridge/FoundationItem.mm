#import "cocoa/bridge/FoundationItem.h"

#import "cocoa/bridge/FoundationValues.h"
#import "cocoa/bridge/HostDictionary.h"
#import "cocoa/bridge/HostException.h"

#include <memory>

namespace epg::cocoa {

FoundationItem::FoundationItem(NSDictionary* dictionary)
    : dictionary_(static_cast<NSMutableDictionary*>([dictionary retain])) {}

FoundationItem::~FoundationItem() { [dictionary_ release]; }

NSMutableDictionary* FoundationItem::dictionary() const { return [[dictionary_ retain] autorelease]; }

PropertyListDictionary FoundationItem::values() const {
  PropertyListDictionary values;
  // The host may be changing the dictionary at this moment.
  callHost([&] { values = fromDictionary(dictionary_); });
  return values;
}

void FoundationItem::setValues(const std::vector<PropertyListDictionary::Entry>& entries) {
  for (const auto& [key, value] : entries) {
    setObjectInHostDictionary(dictionary_, toObject(value), toString(key));
  }
}

void FoundationItem::remove(const std::string& key) { removeObjectInHostDictionary(dictionary_, toString(key)); }

}  // namespace epg::cocoa
