#import "cocoa/bridge/FoundationItem.h"

#import "cocoa/bridge/FoundationValues.h"
#import "cocoa/bridge/HostDictionary.h"
#import "cocoa/bridge/HostException.h"

#include <memory>
#include <utility>
#include <vector>

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
  std::vector<std::pair<id, id>> objects;
  objects.reserve(entries.size());
  for (const auto& [key, value] : entries) {
    id object = toObject(value);
    // Tag lists are mutable arrays, although nobody changes one in place.
    objects.emplace_back(toString(key), value.asArray() != nullptr ? [[object mutableCopy] autorelease] : object);
  }
  setObjectsInHostDictionary(dictionary_, objects);
}

void FoundationItem::remove(const std::string& key) { removeObjectInHostDictionary(dictionary_, toString(key)); }

}  // namespace epg::cocoa
