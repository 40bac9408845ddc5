#include "tests/support/SimplerChoices.h"

#include <utility>

namespace epg::test {

namespace {

/// In how many ways a number is made lower at most: by all of it, by half of it, by a quarter of it and so on.
constexpr std::size_t waysToLower = 64;

}  // namespace

SimplerChoices::SimplerChoices(Choices choices, std::size_t place)
    : choices_(std::move(choices)),
      places_(choices_.repetitions.size() + choices_.numbers.size() * waysToLower),
      place_(place == 0 || place >= places_ ? places_ - 1 : place - 1) {}

std::optional<std::vector<std::uint64_t>> SimplerChoices::next() {
  while (tried_ < places_) {
    ++tried_;
    place_ = place_ + 1 < places_ ? place_ + 1 : 0;
    auto numbers = changed(place_);
    if (numbers) return numbers;
  }
  return std::nullopt;
}

std::optional<std::vector<std::uint64_t>> SimplerChoices::changed(std::size_t place) const {
  std::vector<std::uint64_t> numbers = choices_.numbers;
  const std::size_t repetitions = choices_.repetitions.size();
  if (place < repetitions) {
    // An outer repetition ends behind those in it: the large ones come first this way.
    const Choices::Repetition& leftOut = choices_.repetitions[repetitions - 1 - place];
    if (numbers[leftOut.count] == 0) return std::nullopt;
    --numbers[leftOut.count];
    numbers.erase(numbers.begin() + static_cast<std::ptrdiff_t>(leftOut.begin),
                  numbers.begin() + static_cast<std::ptrdiff_t>(leftOut.end));
    return numbers;
  }
  std::uint64_t& number = numbers[(place - repetitions) / waysToLower];
  const std::uint64_t difference = number >> (place - repetitions) % waysToLower;
  if (difference == 0) return std::nullopt;
  number -= difference;
  return numbers;
}

bool areSimpler(const std::vector<std::uint64_t>& numbers, const std::vector<std::uint64_t>& others) {
  return numbers.size() != others.size() ? numbers.size() < others.size() : numbers < others;
}

}  // namespace epg::test
