#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <vector>

#include "export/XMLElement.h"
#include "model/EPGEvent.h"
#include "platform/PropertyList.h"
#include "plugin/EPGError.h"

/// Values on their way between Foundation and the core. Objects returned are autoreleased. Any thread.
namespace epg::cocoa {

/// Every string crosses unchanged both ways, also one that is no valid Unicode: unpaired surrogates become the three
/// bytes that their number would have, bytes that are no UTF-8 become U+DC80 to U+DCFF.
/// Nil gives the empty string.
std::string fromString(NSString* string);
NSString* toString(const std::string& text);

/// Nothing for nil or an object of another class.
std::optional<std::string> optionalString(id object);
std::optional<Instant> optionalDate(id object);
NSString* toString(const std::optional<std::string>& text);
/// Elements that are no strings are left out; nil gives an empty list.
std::vector<std::string> fromStrings(NSArray* strings);
NSArray* toStrings(const std::vector<std::string>& texts);

/// An object that no property list can hold (also a dictionary with keys that are no strings, and containers nested
/// too deep) becomes a foreign value, which keeps the object and comes back as it.
PropertyList fromObject(id object);
/// The object as a foreign value, whatever it is.
PropertyList foreignObject(id object);
id toObject(const PropertyList& value);

PropertyListDictionary fromDictionary(NSDictionary* dictionary);

/// Values of another type than expected count as absent.
EPGEvent fromEvent(NSDictionary* event);
/// Elements that are no dictionaries are left out.
std::vector<EPGEvent> fromEvents(NSArray* events);

NSXMLElement* toXMLElement(const XMLElement& element);
NSError* toError(const EPGError& error);

}  // namespace epg::cocoa
