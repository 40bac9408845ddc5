#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Random values for the case that a property is tried with: see Property.h. The simplest case, which is looked for
// when the property breaks, has the first of all that it could have drawn, and as little as it can of what is repeated.

namespace epg::test {

/// Any number from 0 to `end` - 1, all equally often.
std::size_t below(std::size_t end);

/// Any number from `first` to `last`, all equally often.
std::int64_t between(std::int64_t first, std::int64_t last);

/// Any number of 64 bits; of how many digits is drawn first, so that small ones come as often as large ones.
std::uint64_t numberOfAnyLength();

bool onceIn(std::size_t times);

/// How much may be in the case: from 0 in the first to 100 in the last.
std::size_t sizeOfCase();

/// Up to `longest` bytes; in every second case they are ASCII, as any others are hardly ever UTF-8.
std::string anyBytes(std::size_t longest);

std::string oneTextOf(std::initializer_list<std::string_view> texts);

template <typename T>
T oneOf(std::initializer_list<T> values) {
  return values.begin()[below(values.size())];
}

template <typename T>
const T& oneOf(const std::vector<T>& values) {
  return values[below(values.size())];
}

/// A drawn number of times: `for (Times times(1, 5); times.next();)`. The simplest case leaves out every time that is
/// not needed for it to break the property.
class Times {
 public:
  Times(std::size_t fewest, std::size_t most);

  /// To be called before each time, until there is none left.
  bool next();

  /// How many there are.
  std::size_t count() const { return count_; }

 private:
  std::size_t place_;
  std::size_t count_;
  std::size_t left_;
  std::size_t begin_;
};

/// Up to `longest` of what the function draws.
template <typename Element>
auto upTo(std::size_t longest, const Element& element) {
  std::vector<decltype(element())> elements;
  for (Times times(0, longest); times.next();) elements.push_back(element());
  return elements;
}

/// What the function draws, or nothing in about one case of `cases`.
template <typename Value>
auto mostly(std::size_t cases, const Value& value) -> std::optional<decltype(value())> {
  if (onceIn(cases)) return std::nullopt;
  return value();
}

}  // namespace epg::test
