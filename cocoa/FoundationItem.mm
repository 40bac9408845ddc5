#import "cocoa/FoundationItem.h"

#import "cocoa/ExceptionGuard.h"
#import "cocoa/FoundationValues.h"
#import "cocoa/HostDictionary.h"

#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace epg::cocoa {

FoundationItem::FoundationItem(NSDictionary* dictionary)
    : dictionary_(static_cast<NSMutableDictionary*>([dictionary retain])) {}

FoundationItem::~FoundationItem() { [dictionary_ release]; }

NSMutableDictionary* FoundationItem::dictionary() const { return [[dictionary_ retain] autorelease]; }

EPGItem::Values FoundationItem::values() const {
  auto values = std::make_shared<PropertyListDictionary>();
  // The host may be changing the dictionary at this moment. The core knows what to do with an exception of its own
  // language; the platform's would unwind it unnoticed.
  const auto read = [&] {
    const std::lock_guard<std::recursive_mutex> lock(hostDictionaryMutex());
    *values = fromDictionary(dictionary_);
  };
  if (NSException* exception = exceptionRaisedBy(read)) {
    throw std::runtime_error(fromString([exception description]));
  }
  return values;
}

void FoundationItem::setValues(const std::vector<PropertyListDictionary::Entry>& entries) {
  const std::lock_guard<std::recursive_mutex> lock(hostDictionaryMutex());
  for (const auto& [key, value] : entries) {
    setObjectInHostDictionary(dictionary_, toObject(value), toString(key));
  }
}

void FoundationItem::remove(const std::string& key) { removeObjectInHostDictionary(dictionary_, toString(key)); }

}  // namespace epg::cocoa
