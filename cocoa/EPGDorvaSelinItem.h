#pragma once

#import <Foundation/Foundation.h>

#include <memory>

#include "model/EPGItem.h"

/// An EPG item of the core as the mutable dictionary that a host expects: what one of them changes the other sees.
///
/// A value is taken as it is at that moment, so a mutable container that the host keeps changing has to be set again.
/// Keys are strings. Any thread.
@interface EPGDorvaSelinItem : NSMutableDictionary {
 @private
  std::shared_ptr<epg::EPGItem>* _item;
  void* _retainCount;
}
@end

namespace epg::cocoa {

/// The one object for the item, autoreleased: as long as anybody holds it, the same item gives the same object.
/// An item that is a dictionary of the host's gives that dictionary.
NSMutableDictionary* objectOfItem(const std::shared_ptr<EPGItem>& item);

/// The item behind an object of `objectOfItem`; for another dictionary an item that reads and changes it in place.
/// Null for anything else.
std::shared_ptr<EPGItem> itemOfObject(id object);

}  // namespace epg::cocoa
