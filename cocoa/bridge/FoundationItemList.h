#pragma once

#import <Foundation/Foundation.h>

#include <cstddef>
#include <memory>

#include "model/EPGItemList.h"

namespace epg::cocoa {

/// The list under edit as an array of dictionaries, the host's or the plug-in's, used in place. Host's thread only.
class FoundationItemList : public EPGItemList {
 public:
  explicit FoundationItemList(NSMutableArray* array) : array_([array retain]) {}
  ~FoundationItemList() override { [array_ release]; }

  /// The very object, autoreleased.
  NSMutableArray* array() const { return [[array_ retain] autorelease]; }

  std::size_t size() const override { return [array_ count]; }
  /// An element that is no dictionary is an item without entries.
  std::shared_ptr<EPGItem> at(std::size_t index) const override;
  void append(std::shared_ptr<EPGItem> item) override;
  void clear() override { [array_ removeAllObjects]; }

 private:
  NSMutableArray* array_;
};

}  // namespace epg::cocoa
