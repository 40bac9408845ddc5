#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace epg::test {

/// The numbers that one case of a property is made of, in the order in which it drew them.
struct Choices {
  /// One time of something that is done a drawn number of times.
  struct Repetition {
    std::size_t count;  ///< Which of the numbers tells how many times.
    std::size_t begin;  ///< The numbers that this time drew.
    std::size_t end;
  };

  std::vector<std::uint64_t> numbers;
  std::vector<Repetition> repetitions;
};

/// Where a case draws its numbers from, and what it drew.
class Drawing {
 public:
  /// New numbers. The size says how much a case may hold, from 0 to 100.
  Drawing(std::uint64_t seed, std::size_t size);
  /// Numbers of another case; those beyond their end are 0.
  Drawing(std::vector<std::uint64_t> given, std::size_t size);

  /// A number below the end; any number where the end is 0.
  std::uint64_t number(std::uint64_t end);

  std::size_t size() const { return size_; }
  Choices choices;

 private:
  std::mt19937_64 random_;
  std::vector<std::uint64_t> given_;
  bool isGiven_;
  std::size_t size_;
};

/// What the case that runs on this thread draws from, while this lives.
class CurrentDrawing {
 public:
  explicit CurrentDrawing(Drawing& drawing);
  ~CurrentDrawing();
  CurrentDrawing(const CurrentDrawing&) = delete;
  CurrentDrawing& operator=(const CurrentDrawing&) = delete;

  static Drawing& get();

 private:
  Drawing* outer_;
};

}  // namespace epg::test
