#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/support/Draw.h"

namespace epg::test {

/// As many cases as a property is held against where nothing asks for more.
constexpr int usualCases = 100;

/// Holds the property against this many random cases, and fails the test when it breaks or when fewer were tried. It
/// draws its case with what Draw.h offers, and says what must be so with HOLDS. Of the cases that break it the simplest
/// is told that can be made of the first one.
/// RC_PARAMS in the environment goes before: "max_success=1000000" for a long run, "seed=…" to repeat one.
void expectForCases(int cases, const std::function<void()>& property);

/// Ends the case, which breaks the property.
[[noreturn]] void breakProperty(const char* expression, const char* file, int line);

/// Whether the case is run once more for its values to be told.
bool isTold();
void tellText(const char* name, std::string value);

/// Tells the value with the case when that breaks the property. Until then it costs next to nothing.
template <typename Value>
void tell(const char* name, const Value& value) {
  if (isTold()) tellText(name, ::testing::PrintToString(value));
}

}  // namespace epg::test

#define HOLDS(...) ((__VA_ARGS__) ? static_cast<void>(0) : ::epg::test::breakProperty(#__VA_ARGS__, __FILE__, __LINE__))
