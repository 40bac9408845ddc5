#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "model/EPGItem.h"
#include "plist/PropertyList.h"
#include "plist/SharedText.h"

namespace epg {

/// One entry of the store: an item, or a value that is none and is carried along as it was read.
struct EPGItemStoreEntry {
  std::shared_ptr<EPGItem> item;  ///< Null where the value is no dictionary.
  PropertyList value;             ///< Only where there is no item.
};

/// What a face of the store has made of a record and lives as long as that. Any thread.
class FaceObject {
 public:
  FaceObject() = default;
  FaceObject(const FaceObject&) = delete;
  FaceObject& operator=(const FaceObject&) = delete;
  virtual ~FaceObject() = default;
};

/// An entry under its EPG unique ID. Does not change, but for the one object that a face may keep with it.
class EPGItemStoreRecord {
 public:
  EPGItemStoreRecord(SharedText key, EPGItemStoreEntry content) : uniqueID(std::move(key)), entry(std::move(content)) {}
  EPGItemStoreRecord(const EPGItemStoreRecord&) = delete;
  EPGItemStoreRecord& operator=(const EPGItemStoreRecord&) = delete;
  ~EPGItemStoreRecord() { delete face_.load(); }

  /// Null when none is kept.
  FaceObject* face() const { return face_.load(); }
  /// Keeps the object and gives it, or the one that another thread was faster to keep.
  FaceObject* keepFace(std::unique_ptr<FaceObject> face) const {
    FaceObject* kept = nullptr;
    return face_.compare_exchange_strong(kept, face.get()) ? face.release() : kept;
  }

  const SharedText uniqueID;
  const EPGItemStoreEntry entry;

 private:
  mutable std::atomic<FaceObject*> face_{nullptr};
};

/// A store's entries at one moment. The items are shared with the store. Never changes; any number of threads may read
/// it.
class EPGItemStoreSnapshot {
 public:
  EPGItemStoreSnapshot() = default;
  EPGItemStoreSnapshot(const EPGItemStoreSnapshot&) = delete;
  EPGItemStoreSnapshot& operator=(const EPGItemStoreSnapshot&) = delete;
  virtual ~EPGItemStoreSnapshot() = default;

  /// The number of entries.
  virtual std::size_t size() const = 0;
  /// Null when there is no such entry. Lives as long as this object.
  virtual const EPGItemStoreRecord* find(std::string_view uniqueID) const = 0;
  /// All entries, in no particular order. They live as long as this object.
  virtual std::vector<const EPGItemStoreRecord*> records() const = 0;
};

}  // namespace epg
