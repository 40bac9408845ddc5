#include "tests/support/Drawing.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace epg::test {

namespace {

thread_local Drawing* current = nullptr;

}  // namespace

Drawing::Drawing(std::uint64_t seed, std::size_t size) : random_(seed), isGiven_(false), size_(size) {}

Drawing::Drawing(std::vector<std::uint64_t> given, std::size_t size)
    : given_(std::move(given)), isGiven_(true), size_(size) {}

std::uint64_t Drawing::number(std::uint64_t end) {
  std::uint64_t drawn = 0;
  if (!isGiven_) {
    drawn = random_();
    if (end != 0) drawn %= end;
  } else if (choices.numbers.size() < given_.size()) {
    drawn = given_[choices.numbers.size()];
    if (end != 0) drawn = std::min(drawn, end - 1);
  }
  choices.numbers.push_back(drawn);
  return drawn;
}

CurrentDrawing::CurrentDrawing(Drawing& drawing) : outer_(std::exchange(current, &drawing)) {}

CurrentDrawing::~CurrentDrawing() { current = outer_; }

Drawing& CurrentDrawing::get() {
  if (!current) throw std::logic_error("Random values are drawn inside of a property.");
  return *current;
}

}  // namespace epg::test
