#include "benchmarks/DayFilePeers.h"

#include <fcntl.h>
#include <stdio.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "benchmarks/WorkFolder.h"
#include "export/DayFile.h"

namespace epg::benchmarks {

namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 20;
const char* const apostrophe = "&#39;";

struct tm localTime(Instant date) {
  const auto seconds = static_cast<time_t>(date.unixTime());
  struct tm local {};
  ::localtime_r(&seconds, &local);
  return local;
}

}  // namespace

std::vector<const EPGEvent*> sortedByStart(const std::vector<EPGEvent>& events) {
  std::vector<std::pair<double, const EPGEvent*>> order;
  order.reserve(events.size());
  for (const EPGEvent& event : events) order.emplace_back(event.eventEPGStartDateTime->unixTime(), &event);
  // The place in the list is what decides between equal starts.
  std::sort(order.begin(), order.end());
  std::vector<const EPGEvent*> sorted;
  sorted.reserve(events.size());
  for (const auto& each : order) sorted.push_back(each.second);
  return sorted;
}

ProgramTexts::ProgramTexts(const EPGEvent& event)
    : id(std::to_string(playbackIDHash(*event.eventEPGPlaybackUniqueID))) {
  const struct tm local = localTime(*event.eventEPGStartDateTime);
  day = std::to_string(local.tm_mday);
  month = std::to_string(local.tm_mon + 1);
  year = std::to_string(local.tm_year - 100);
  hour = std::to_string(local.tm_hour);
  minute = std::to_string(local.tm_min);
}

std::string rootDate(Instant date) {
  const struct tm local = localTime(date);
  char text[40];
  ::strftime(text, sizeof text, "%d-%m-%Y", &local);
  return text;
}

PeerFile::PeerFile(const std::string& path)
    : path_(path),
      temporary_(path + ".new"),
      descriptor_(::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)),
      buffer_(pieceSize) {
  if (descriptor_ < 0) throw std::runtime_error("cannot write " + path);
}

PeerFile::~PeerFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

void PeerFile::write(const char* bytes, std::size_t size) {
  const char* const end = bytes + size;
  while (bytes < end) {
    const void* const found = std::memchr(bytes, '\'', static_cast<std::size_t>(end - bytes));
    const char* const stop = found ? static_cast<const char*>(found) : end;
    append(bytes, static_cast<std::size_t>(stop - bytes));
    if (found) append(apostrophe, std::strlen(apostrophe));
    bytes = found ? stop + 1 : end;
  }
}

void PeerFile::append(const char* bytes, std::size_t size) {
  while (size > 0) {
    if (used_ == buffer_.size()) writeOut();
    const std::size_t part = std::min(size, buffer_.size() - used_);
    std::memcpy(buffer_.data() + used_, bytes, part);
    used_ += part;
    bytes += part;
    size -= part;
  }
}

void PeerFile::writeOut() {
  std::size_t done = 0;
  while (done < used_) {
    const ssize_t written = ::write(descriptor_, buffer_.data() + done, used_ - done);
    if (written <= 0) throw std::runtime_error("cannot write " + path_);
    done += static_cast<std::size_t>(written);
  }
  used_ = 0;
}

void PeerFile::finish() {
  writeOut();
  const int closed = ::close(descriptor_);
  descriptor_ = -1;
  if (closed != 0 || ::rename(temporary_.c_str(), path_.c_str()) != 0)
    throw std::runtime_error("cannot write " + path_);
}

FinishedDayFile::FinishedDayFile(const std::string& document, const std::vector<EPGEvent>& events)
    : size_(document.size()) {
  const std::string startTag = "    <program ";
  std::size_t at = document.find(startTag);
  start_ = document.substr(0, at);
  for (const EPGEvent* const event : sortedByStart(events)) {
    const std::size_t next = document.find("\n" + startTag, at);
    const std::size_t end = next == std::string::npos ? document.rfind("</programs>") : next + 1;
    programs_[*event->eventEPGUniqueID] = document.substr(at, end - at);
    at = end;
  }
  end_ = document.substr(at);
}

void FinishedDayFile::write(const std::vector<EPGEvent>& events, const std::string& path) const {
  std::string document;
  document.reserve(size_);
  document += start_;
  for (const EPGEvent* const event : sortedByStart(events)) {
    document += programs_.find(*event->eventEPGUniqueID)->second;
  }
  document += end_;
  writeFile(path, document, false);
}

}  // namespace epg::benchmarks
