#pragma once

#include <memory>
#include <string>

#include "model/EPGItemStore.h"

namespace epg::benchmarks {

/// The store that the file holds, read as the creation of a plug-in reads it and without anything else that belongs to
/// that. Throws when it cannot be read.
std::shared_ptr<EPGItemStore> readStore(const std::string& path);

/// The bytes that a save of the store writes.
std::string storeFileOf(const EPGItemStore& store);

/// How many bytes of text the store holds: of every string and of the entries' IDs, without the keys inside items.
std::size_t textSize(const EPGItemStore& store);

}  // namespace epg::benchmarks
