#include "benchmarks/Memory.h"

#include <malloc.h>

#include <fstream>
#include <stdexcept>
#include <string>

namespace epg::benchmarks {

namespace {

/// A line of the system's account of this process, "VmRSS:     1234 kB".
std::size_t bytesOf(const std::string& name) {
  std::ifstream status("/proc/self/status");
  std::string word;
  std::size_t kilobytes = 0;
  while (status >> word) {
    if (word == name && status >> kilobytes) return kilobytes * 1024;
  }
  throw std::runtime_error("the system does not say " + name);
}

}  // namespace

std::size_t allocatedBytes() {
  const struct mallinfo2 info = ::mallinfo2();
  return info.uordblks + info.hblkhd;
}

PeakMemory::PeakMemory() {
  ::malloc_trim(0);
  // Makes the system forget the peak so far.
  std::ofstream reset("/proc/self/clear_refs");
  reset << "5";
  if (!reset.flush()) throw std::runtime_error("the system does not forget the peak of memory");
  start_ = bytesOf("VmRSS:");
}

std::size_t PeakMemory::bytes() const {
  const std::size_t peak = bytesOf("VmHWM:");
  return peak > start_ ? peak - start_ : 0;
}

}  // namespace epg::benchmarks
