#include "benchmarks/SampleData.h"

#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "model/KeyConstants.h"
#include "platform/Environment.h"

namespace epg::benchmarks {

std::string sampleID(std::size_t number) { return "entry-" + std::to_string(number); }

std::string sampleTag(std::size_t number) { return "Tag " + std::to_string(number); }

PropertyListDictionary sampleItem(std::size_t number, std::size_t tags, std::size_t catalogueSize) {
  const std::string digits = std::to_string(number);
  PropertyList::Array list;
  // Different entries carry different tags; the step has no common divisor with the size of a usual catalogue.
  for (std::size_t i = 0; i < tags; ++i) list.emplace_back(sampleTag((number * 7 + i * 37) % catalogueSize));
  PropertyListDictionary item;
  item.set(ZRLEPGDSUniqueIDKey, sampleID(number));
  item.set(ZRLEPGDSTitleKey, "The Harbour's Evening, Part " + digits);
  item.set(ZRLEPGDSDescriptionKey,
           "What the tide brings in & whom it takes: three families between Fj\xC3\xA6rland and the open sea. Part " +
               digits + " of the series follows the boats out, and those who wait for them at the caf\xC3\xA9 home.");
  item.set(ZRLEPGDSImageURLKey, "https://images.quillmere.example/harbour/" + digits + ".jpg?width=640&height=360");
  item.set(ZRLEPGDSTagsKey, PropertyList(std::move(list)));
  return item;
}

PropertyListDictionary sampleStore(std::size_t items, std::size_t tags, std::size_t catalogueSize) {
  std::vector<PropertyListDictionary::Entry> entries;
  entries.reserve(items);
  for (std::size_t i = 0; i < items; ++i) {
    entries.emplace_back(sampleID(i), PropertyList(sampleItem(i, tags, catalogueSize)));
  }
  return PropertyListDictionary(std::move(entries));
}

std::vector<EPGEvent> sampleEvents(std::size_t count) {
  constexpr double firstStart = 1330880400;
  constexpr double halfAnHour = 1800;
  std::vector<EPGEvent> events(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double start = firstStart + static_cast<double>(i) * halfAnHour;
    events[i].eventEPGUniqueID = sampleID(i);
    events[i].eventEPGPlaybackUniqueID = "playback-" + std::to_string(i);
    events[i].eventEPGStartDateTime = Instant::fromUnixTime(start);
    events[i].eventEPGEndDateTime = Instant::fromUnixTime(start + halfAnHour);
  }
  return events;
}

WorkFolder::WorkFolder() {
  const char* const wanted = std::getenv("TMPDIR");  // NOLINT(concurrency-mt-unsafe): nobody here sets it
  std::string pattern = std::string(wanted && *wanted ? wanted : P_tmpdir) + "/benchmark-XXXXXX";
  if (!::mkdtemp(pattern.data())) throw std::runtime_error("no folder to work in: " + pattern);
  path_ = pattern;
}

WorkFolder::~WorkFolder() {
  std::vector<std::string> names;
  Environment::standard().listFolder(path_, &names);
  for (const std::string& name : names) ::unlink(file(name).c_str());
  ::rmdir(path_.c_str());
}

void WorkFolder::write(const std::string& name, const std::string& content) const {
  std::ofstream stream(file(name), std::ios::binary);
  stream << content;
  if (!stream.flush()) throw std::runtime_error("cannot write " + file(name));
}

}  // namespace epg::benchmarks
