#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "benchmarks/SampleData.h"
#include "model/EPGEvent.h"

namespace epg::benchmarks {

/// What the others look their items up in: the fastest that the library has, with plain strings in it.
using PeerItems = std::unordered_map<std::string, SampleItem>;

/// The events by their start, as all peers sort them: what is moved is small, and equal starts keep their order.
std::vector<const EPGEvent*> sortedByStart(const std::vector<EPGEvent>& events);

/// What a document shows of an event, by the shortest way that the C library has.
struct ProgramTexts {
  explicit ProgramTexts(const EPGEvent& event);

  std::string id, day, month, year, hour, minute;
};

/// "04-03-2012" of the event's start or end, for the root.
std::string rootDate(Instant date);

/// A file that is written in large pieces under a temporary name. Writes apostrophes as the day file has them, which
/// neither of the libraries does. Throws when it cannot write.
class PeerFile {
 public:
  explicit PeerFile(const std::string& path);
  PeerFile(const PeerFile&) = delete;
  PeerFile& operator=(const PeerFile&) = delete;
  ~PeerFile();

  void write(const char* bytes, std::size_t size);
  /// Gives the file its final name.
  void finish();

 private:
  void append(const char* bytes, std::size_t size);
  void writeOut();

  std::string path_;
  std::string temporary_;
  int descriptor_;
  std::vector<char> buffer_;
  std::size_t used_ = 0;
};

/// The same day file as this project's, byte for byte, written by libxml2's streaming writer.
void exportByLibXML2(const PeerItems& items, const std::vector<EPGEvent>& events, const std::string& path);
/// And by pugixml, from a tree of all of it.
void exportByPugixml(const PeerItems& items, const std::vector<EPGEvent>& events, const std::string& path);

/// The least that an export can do: sort the events, look up what is already there as the bytes of the file, copy that
/// into one buffer, and write it in one call.
class FinishedDayFile {
 public:
  /// `document` is the day file of the events.
  FinishedDayFile(const std::string& document, const std::vector<EPGEvent>& events);

  void write(const std::vector<EPGEvent>& events, const std::string& path) const;

 private:
  std::string start_;
  std::string end_;
  std::unordered_map<std::string, std::string> programs_;
  std::size_t size_;
};

}  // namespace epg::benchmarks
