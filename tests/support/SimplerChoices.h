#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "tests/support/Drawing.h"

namespace epg::test {

/// What a case might be made of instead: the same numbers without one of the repetitions, or with one of them lower.
class SimplerChoices {
 public:
  /// Starts with the change of this place, and goes on with those before it after the last.
  SimplerChoices(Choices choices, std::size_t place);

  /// Nothing once every change has been tried.
  std::optional<std::vector<std::uint64_t>> next();

  /// The place of the change that was made last.
  std::size_t place() const { return place_; }

 private:
  std::optional<std::vector<std::uint64_t>> changed(std::size_t place) const;

  Choices choices_;
  std::size_t places_;
  std::size_t place_;
  std::size_t tried_ = 0;
};

/// Whether a case of the first numbers is simpler than one of the second.
bool areSimpler(const std::vector<std::uint64_t>& numbers, const std::vector<std::uint64_t>& others);

}  // namespace epg::test
