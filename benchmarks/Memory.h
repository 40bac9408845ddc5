#pragma once

#include <cstddef>

namespace epg::benchmarks {

/// Bytes that the C library has handed out and not got back.
std::size_t allocatedBytes();

/// The most memory that the process has at any moment between `start` and `peakSince`, above what it has at the start:
/// pages that the system really gave it, as the system counts them. What was freed before the start does not hide
/// what is taken after it.
class PeakMemory {
 public:
  PeakMemory();

  std::size_t bytes() const;

 private:
  std::size_t start_;
};

}  // namespace epg::benchmarks
