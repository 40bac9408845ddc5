#include "benchmarks/StoreReading.h"

#include <stdexcept>

#include "platform/ByteSink.h"
#include "platform/Environment.h"
#include "plist/PropertyListFile.h"
#include "store/ItemStoreFile.h"
#include "store/ShardedItemStore.h"

namespace epg::benchmarks {

namespace {

std::size_t textSizeOf(const PropertyList& value) {
  std::size_t size = 0;
  if (const auto text = value.asString()) size = text->size();
  if (const auto elements = value.asArray()) {
    for (const PropertyList& element : *elements) size += textSizeOf(element);
  }
  if (const auto entries = value.asDictionary()) {
    for (const auto& entry : *entries) size += textSizeOf(entry.second);
  }
  return size;
}

}  // namespace

std::shared_ptr<EPGItemStore> readStore(const std::string& path) {
  const auto content = readPropertyListDictionary(Environment::standard(), path);
  if (!content) throw std::runtime_error("cannot read " + path);
  return std::make_shared<ShardedItemStore>(*content);
}

std::string storeFileOf(const EPGItemStore& store) {
  std::string bytes;
  StringSink file(bytes);
  if (!writeItemStore(file, *store.snapshot()) || !file.flush())
    throw std::runtime_error("the store cannot be written");
  return bytes;
}

std::size_t textSize(const EPGItemStore& store) {
  std::size_t size = 0;
  const std::shared_ptr<const EPGItemStoreSnapshot> snapshot = store.snapshot();
  for (const EPGItemStoreRecord* const record : snapshot->records()) {
    size += record->uniqueID.size();
    const PropertyListDictionary values = record->entry.item->values();
    for (const auto& entry : values) size += textSizeOf(entry.second);
  }
  return size;
}

}  // namespace epg::benchmarks
