#import "cocoa/bridge/BridgedItemStore.h"

#include <memory>

#import "cocoa/bridge/EPGDorvaSelinItem.h"
#import "cocoa/bridge/FoundationValues.h"

namespace epg::cocoa {

namespace {

class HandedOutObject : public FaceObject {
 public:
  explicit HandedOutObject(id object) : object_([object retain]) {}
  ~HandedOutObject() override { [object_ release]; }

  /// Autoreleased.
  id object() const { return [[object_ retain] autorelease]; }

 private:
  id object_;
};

}  // namespace

void BridgedItemStore::recordWillStand(const EPGItemStoreRecord& record) const {
  if (id known = knownObjectOfItem(record.entry.item)) {
    record.keepFace(std::make_unique<HandedOutObject>(known));
  }
}

void BridgedItemStore::recordIsGone(const EPGItemStoreRecord& record) const {
  if (const FaceObject* const face = record.face()) {
    // Into the pool.
    static_cast<const HandedOutObject*>(face)->object();
  }
}

id objectOfRecord(const EPGItemStoreRecord& record) {
  FaceObject* face = record.face();
  if (face == nullptr) {
    id made = record.entry.item != nullptr ? objectOfItem(record.entry.item) : toObject(record.entry.value);
    face = record.keepFace(std::make_unique<HandedOutObject>(made));
  }
  return static_cast<HandedOutObject*>(face)->object();
}

}  // namespace epg::cocoa
