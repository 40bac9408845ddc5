#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "model/EPGEvent.h"
#include "platform/PropertyList.h"

namespace epg::benchmarks {

/// "entry-17"
std::string sampleID(std::size_t number);
/// "Tag 17"
std::string sampleTag(std::size_t number);

/// Titles, descriptions and image URLs as long as those of a real guide, different for each entry, with characters that
/// XML escapes and letters beyond ASCII; and so many tags out of the catalogue of sampleTag.
PropertyListDictionary sampleItem(std::size_t number, std::size_t tags, std::size_t catalogueSize);

/// A store's content with so many items.
PropertyListDictionary sampleStore(std::size_t items, std::size_t tags = 4, std::size_t catalogueSize = 200);

/// Events of the entries of `sampleStore`, half an hour each, one after the other.
std::vector<EPGEvent> sampleEvents(std::size_t count);

/// A new folder of this run's own, removed at its end with the files in it.
class WorkFolder {
 public:
  WorkFolder();
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  ~WorkFolder();

  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + "/" + name; }
  void write(const std::string& name, const std::string& content) const;

 private:
  std::string path_;
};

}  // namespace epg::benchmarks
