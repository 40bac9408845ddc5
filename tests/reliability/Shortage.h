#pragma once

#include <cstddef>

namespace epg::test {

/// Makes one allocation on this thread fail, the one with this number counted from 0, or that one and all after it.
/// A program that contains this has the allocation of everything in it replaced. One at a time on a thread.
class Shortage {
 public:
  enum class Failing { Once, FromThenOn };

  Shortage(std::size_t number, Failing failing);
  ~Shortage();
  Shortage(const Shortage&) = delete;
  Shortage& operator=(const Shortage&) = delete;

  /// How many allocations failed under the last one on this thread.
  static std::size_t failures();

  /// For what does not allocate with `new`: null where the allocation fails. Freed with std::free.
  static void* allocate(std::size_t size);
};

}  // namespace epg::test
