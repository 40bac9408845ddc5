#import "cocoa/bridge/FoundationItemList.h"

#import "cocoa/bridge/EPGDorvaSelinItem.h"
#include "store/MemoryItem.h"

namespace epg::cocoa {

std::shared_ptr<EPGItem> FoundationItemList::at(std::size_t index) const {
  std::shared_ptr<EPGItem> item = itemOfObject([array_ objectAtIndex:index]);
  return item != nullptr ? item : std::make_shared<MemoryItem>();
}

void FoundationItemList::append(std::shared_ptr<EPGItem> item) { [array_ addObject:objectOfItem(item)]; }

}  // namespace epg::cocoa
