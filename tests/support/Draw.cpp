#include "tests/support/Draw.h"

#include <stdexcept>

#include "tests/support/Drawing.h"

namespace epg::test {

std::size_t below(std::size_t end) {
  if (end == 0) throw std::logic_error("No number is below 0.");
  return static_cast<std::size_t>(CurrentDrawing::get().number(end));
}

std::int64_t between(std::int64_t first, std::int64_t last) {
  if (last < first) throw std::logic_error("The last number comes before the first.");
  const auto start = static_cast<std::uint64_t>(first);
  return static_cast<std::int64_t>(start + CurrentDrawing::get().number(static_cast<std::uint64_t>(last) - start + 1));
}

std::uint64_t numberOfAnyLength() {
  const std::size_t digits = below(65);
  if (digits == 0) return 0;
  return CurrentDrawing::get().number(digits == 64 ? 0 : std::uint64_t{1} << digits);
}

bool onceIn(std::size_t times) { return below(times) == times - 1; }

std::size_t sizeOfCase() { return CurrentDrawing::get().size(); }

std::string anyBytes(std::size_t longest) {
  std::string bytes;
  const std::size_t end = onceIn(2) ? 256 : 128;
  for (Times times(0, longest); times.next();) bytes += static_cast<char>(below(end));
  return bytes;
}

std::string oneTextOf(std::initializer_list<std::string_view> texts) {
  return std::string(texts.begin()[below(texts.size())]);
}

Times::Times(std::size_t fewest, std::size_t most)
    : place_(CurrentDrawing::get().choices.numbers.size()),
      count_(fewest + below(most - fewest + 1)),
      left_(count_),
      begin_(0) {}

bool Times::next() {
  Choices& choices = CurrentDrawing::get().choices;
  const std::size_t here = choices.numbers.size();
  if (left_ < count_) choices.repetitions.push_back({place_, begin_, here});
  if (left_ == 0) return false;
  --left_;
  begin_ = here;
  return true;
}

}  // namespace epg::test
