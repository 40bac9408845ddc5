#import "cocoa/bridge/FoundationValues.h"

#import "cocoa/EPGDorvaSelinKeyConstants.h"
#import "cocoa/bridge/HostDictionary.h"

#include <cstring>
#include <memory>
#include <utility>

namespace epg::cocoa {

namespace {

class ForeignObject : public ForeignValue {
 public:
  explicit ForeignObject(id object) : object_([object retain]) {}
  ForeignObject(const ForeignObject&) = delete;
  ForeignObject& operator=(const ForeignObject&) = delete;
  ~ForeignObject() override { [object_ release]; }

  id object() const { return object_; }

 private:
  id object_;
};

/// A value under a key that is no string.
class ForeignEntry : public ForeignObject {
 public:
  ForeignEntry(id key, id object) : ForeignObject(object), key_([key retain]) {}
  ForeignEntry(const ForeignEntry&) = delete;
  ForeignEntry& operator=(const ForeignEntry&) = delete;
  ~ForeignEntry() override { [key_ release]; }

  id key() const { return key_; }

 private:
  id key_;
};

PropertyList fromNumber(NSNumber* number) {
  // Booleans are numbers of a class of their own on every platform; their type code is that of a small integer.
  if ([number isKindOfClass:[[NSNumber numberWithBool:YES] class]]) {
    return PropertyList::fromBoolean([number boolValue] != NO);
  }
  switch (*[number objCType]) {
    case 'f':
    case 'd':
      return PropertyList::fromReal([number doubleValue]);
    case 'C':
    case 'S':
    case 'I':
    case 'L':
    case 'Q':
      return PropertyList::fromUnsigned([number unsignedLongLongValue]);
    default:
      return PropertyList::fromInteger([number longLongValue]);
  }
}

NSNumber* toNumber(PropertyList::Integer integer) {
  if (integer.negative) {
    // Of the two's complement, so that the smallest integer has its turn too.
    return [NSNumber numberWithLongLong:static_cast<long long>(~integer.magnitude + 1)];
  }
  if (integer.magnitude <= static_cast<unsigned long long>(INT64_MAX)) {
    return [NSNumber numberWithLongLong:static_cast<long long>(integer.magnitude)];
  }
  return [NSNumber numberWithUnsignedLongLong:integer.magnitude];
}

PropertyList fromObject(id object, int depth);

struct DictionaryParts {
  PropertyListDictionary entries;
  std::vector<std::pair<id, id>> foreign;  ///< Those whose keys are no strings.
};

DictionaryParts partsOfDictionary(NSDictionary* dictionary, int depth) {
  DictionaryParts parts;
  std::vector<PropertyListDictionary::Entry> entries;
  const std::vector<std::pair<id, id>> all = entriesOfHostDictionary(dictionary);
  entries.reserve(all.size());
  for (const auto& [key, object] : all) {
    if ([key isKindOfClass:[NSString class]]) {
      entries.emplace_back(fromString(key), fromObject(object, depth + 1));
    } else {
      parts.foreign.emplace_back(key, object);
    }
  }
  parts.entries = PropertyListDictionary(std::move(entries));
  return parts;
}

PropertyList fromObject(id object, int depth) {
  if ([object isKindOfClass:[NSString class]]) {
    return PropertyList(fromString(object));
  }
  if ([object isKindOfClass:[NSNumber class]]) {
    return fromNumber(object);
  }
  if ([object isKindOfClass:[NSDate class]]) {
    return PropertyList::fromDate(Instant{[object timeIntervalSinceReferenceDate]});
  }
  if ([object isKindOfClass:[NSData class]]) {
    return PropertyList::fromData(std::string(static_cast<const char*>([object bytes]), [object length]));
  }
  // An object that holds itself would never end.
  if (depth <= PropertyList::maximumDepth) {
    if ([object isKindOfClass:[NSArray class]]) {
      PropertyList::Array elements;
      elements.reserve([object count]);
      for (NSUInteger index = 0; index < [object count]; ++index) {
        elements.push_back(fromObject([object objectAtIndex:index], depth + 1));
      }
      return PropertyList(std::move(elements));
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
      DictionaryParts parts = partsOfDictionary(object, depth);
      if (parts.foreign.empty()) {
        return PropertyList(std::move(parts.entries));
      }
    }
  }
  return foreignObject(object);
}

}  // namespace

PropertyList fromObject(id object) { return fromObject(object, 1); }

PropertyList foreignObject(id object) { return PropertyList::fromForeign(std::make_shared<ForeignObject>(object)); }

id toObject(const PropertyList& value) {
  switch (value.type()) {
    case PropertyList::Type::String:
      return toString(*value.asString());
    case PropertyList::Type::Integer:
      return toNumber(*value.asInteger());
    case PropertyList::Type::Real:
      return [NSNumber numberWithDouble:*value.asReal()];
    case PropertyList::Type::Boolean:
      return [NSNumber numberWithBool:*value.asBoolean() ? YES : NO];
    case PropertyList::Type::Date:
      return [NSDate dateWithTimeIntervalSinceReferenceDate:value.asDate()->secondsSinceReferenceDate];
    case PropertyList::Type::Data:
      return [NSData dataWithBytes:value.asData()->data() length:value.asData()->size()];
    case PropertyList::Type::Array: {
      std::vector<id> elements;
      elements.reserve(value.asArray()->size());
      for (const PropertyList& element : *value.asArray()) {
        elements.push_back(toObject(element));
      }
      return [NSArray arrayWithObjects:elements.data() count:elements.size()];
    }
    case PropertyList::Type::Dictionary: {
      std::vector<id> keys;
      std::vector<id> objects;
      for (const auto& [key, element] : *value.asDictionary()) {
        keys.push_back(toString(key));
        objects.push_back(toObject(element));
      }
      return [NSDictionary dictionaryWithObjects:objects.data() forKeys:keys.data() count:keys.size()];
    }
    case PropertyList::Type::Foreign:
      return [[static_cast<const ForeignObject*>(value.asForeign())->object() retain] autorelease];
  }
  return nil;
}

PropertyListDictionary fromDictionary(NSDictionary* dictionary) {
  DictionaryParts parts = partsOfDictionary(dictionary, 1);
  for (const auto& [key, object] : parts.foreign) {
    // Out of the way of the host's own strings.
    std::string name = std::string(1, '\0') + fromString([key description]);
    while (parts.entries.find(name) != nullptr) {
      name += '\0';
    }
    parts.entries.set(name, PropertyList::fromForeign(std::make_shared<ForeignEntry>(key, object)));
  }
  return std::move(parts.entries);
}

id foreignKey(const PropertyList& value) {
  const ForeignEntry* const entry = dynamic_cast<const ForeignEntry*>(value.asForeign());
  return entry != nullptr ? [[entry->key() retain] autorelease] : nil;
}

std::optional<Instant> optionalDate(id object) {
  if ([object isKindOfClass:[NSDate class]]) {
    return Instant{[object timeIntervalSinceReferenceDate]};
  }
  return std::nullopt;
}

EPGEvent fromEvent(NSDictionary* event) {
  EPGEvent result;
  result.eventEPGUniqueID = optionalString([event objectForKey:ZRLEPGUniqueIDKey]);
  result.eventEPGPlaybackUniqueID = optionalString([event objectForKey:ZRLEPGEventUniqueIDKey]);
  result.eventEPGStartDateTime = optionalDate([event objectForKey:ZRLEPGStartDateTimeKey]);
  result.eventEPGEndDateTime = optionalDate([event objectForKey:ZRLEPGEndDateTimeKey]);
  return result;
}

std::vector<EPGEvent> fromEvents(NSArray* events) {
  std::vector<EPGEvent> result;
  result.reserve([events count]);
  for (NSUInteger index = 0; index < [events count]; ++index) {
    id event = [events objectAtIndex:index];
    if ([event isKindOfClass:[NSDictionary class]]) {
      result.push_back(fromEvent(event));
    }
  }
  return result;
}

NSXMLElement* toXMLElement(const XMLElement& element) {
  NSXMLElement* result = [NSXMLElement elementWithName:toString(element.name)];
  for (const auto& [name, value] : element.attributes) {
    [result addAttribute:[NSXMLNode attributeWithName:toString(name) stringValue:toString(value)]];
  }
  for (const XMLElement& child : element.children) {
    [result addChild:toXMLElement(child)];
  }
  // As a node of its own: GNUstep's setStringValue: takes an ampersand for the start of a reference.
  if (!element.text.empty()) {
    [result addChild:[NSXMLNode textWithStringValue:toString(element.text)]];
  }
  return result;
}

NSError* toError(const EPGError& error) {
  NSDictionary* userInfo = [NSDictionary dictionaryWithObject:toString(error.localizedDescription)
                                                       forKey:NSLocalizedDescriptionKey];
  return [NSError errorWithDomain:toString(error.domain) code:error.code userInfo:userInfo];
}

}  // namespace epg::cocoa
