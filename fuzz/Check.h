#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the fuzzer with a finding when the condition does not hold; unlike assert, in every kind of build.
#define FUZZ_CHECK(condition)                                              \
  do {                                                                     \
    if (!(condition)) {                                                    \
      std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                        \
    }                                                                      \
  } while (false)
