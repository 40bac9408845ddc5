#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "export/XMLElement.h"
#include "model/EPGEvent.h"
#include "plist/PropertyList.h"
#include "plugin/EPGError.h"

/// Values on their way between Foundation and the core. Objects returned are autoreleased. Any thread.
namespace epg::cocoa {

/// Strings cross unchanged both ways, also those that are no valid Unicode: bytes that are no UTF-8 become U+DC80 to
/// U+DCFF and those become the bytes again, other unpaired surrogates become the three bytes that their number would
/// have. The one exception: where a host's string has several of U+DC80 to U+DCFF in a row, and their bytes together
/// spell a character, it comes back with that character. No text holds such a row.
/// Nil gives the empty string.
std::string fromString(NSString* string);
NSString* toString(std::string_view text);
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

/// The entries of an EPG item. One whose key is no string stands under a name that no other entry has, as a foreign
/// value that knows the key.
PropertyListDictionary fromDictionary(NSDictionary* dictionary);
/// The key of such an entry, nil for any other value.
id foreignKey(const PropertyList& value);

/// Values of another type than expected count as absent.
EPGEvent fromEvent(NSDictionary* event);
/// Elements that are no dictionaries are left out.
std::vector<EPGEvent> fromEvents(NSArray* events);

NSXMLElement* toXMLElement(const XMLElement& element);
NSError* toError(const EPGError& error);

}  // namespace epg::cocoa
