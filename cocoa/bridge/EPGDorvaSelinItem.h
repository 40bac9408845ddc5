#pragma once

#import <Foundation/Foundation.h>

#include <memory>

#import "cocoa/bridge/EPGDorvaSelinDictionary.h"
#include "model/EPGItem.h"

struct EPGDorvaSelinItemParts;

/// An EPG item of the core as the mutable dictionary that a host expects: what one of them changes the other sees.
///
/// A value is taken as it is at that moment, so a mutable container that the host keeps changing has to be set again.
/// What it hands out lives as long as the value stands. Keys are strings; a copy of a host's dictionary also has that
/// dictionary's other keys, until they are removed. Any thread.
@interface EPGDorvaSelinItem : EPGDorvaSelinDictionary {
 @private
  struct EPGDorvaSelinItemParts* _parts;
}
@end

namespace epg::cocoa {

/// The one object for the item, autoreleased: as long as anybody holds it, the same item gives the same object.
/// An item that is a dictionary of the host's gives that dictionary.
NSMutableDictionary* objectOfItem(const std::shared_ptr<EPGItem>& item);

/// The object that somebody holds for the item, autoreleased; nil when nobody does, and for a dictionary of the host's.
NSMutableDictionary* knownObjectOfItem(const std::shared_ptr<EPGItem>& item);

/// The item behind an object of `objectOfItem`; for another dictionary an item that reads and changes it in place.
/// Null for anything else.
std::shared_ptr<EPGItem> itemOfObject(id object);

}  // namespace epg::cocoa
