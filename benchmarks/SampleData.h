#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "model/EPGEvent.h"

namespace epg::benchmarks {

/// How many tags the sample's catalogue has.
constexpr std::size_t sampleCatalogueSize = 200;

/// The metadata of an entry: as long as that of a real guide, different for each entry, with characters that XML
/// escapes and letters beyond ASCII. A plain structure, so that whoever is compared with this project can use it as it
/// is.
struct SampleItem {
  std::string title;
  std::string description;
  std::string imageURL;
  std::vector<std::string> tags;
};

/// "Tag 17"
std::string sampleTag(std::size_t number);
/// The EPG unique ID of an entry, in the form in which hosts make them; no two are alike.
std::string sampleID(std::size_t number);
SampleItem sampleItem(std::size_t number, std::size_t tags = 4);

/// A store's file with so many items, as the plug-in writes it.
std::string sampleStoreFile(std::size_t items, std::size_t tags = 4);

/// One event for each of the entries, on ten channels, half an hour each; in an order that looks like chance and is the
/// same every time.
std::vector<EPGEvent> sampleEvents(std::size_t count);

/// An XMLTV guide with so many programmes, no two of which are the same.
std::string sampleGuide(std::size_t programmes);

}  // namespace epg::benchmarks
