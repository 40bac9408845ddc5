#pragma once

#include <cstdlib>
#include <string>

namespace epg::test {

/// Another time zone, in the environment only: whoever converts times must notice by itself.
inline void changeZoneTo(const std::string& name) {
  ::setenv("TZ", name.c_str(), 1);  // NOLINT(concurrency-mt-unsafe): no other thread runs
}

}  // namespace epg::test
