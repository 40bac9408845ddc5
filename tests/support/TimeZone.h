#pragma once

#include <time.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace epg::test {

/// The machine's time zone, for as long as this lives. No other thread may convert times while it comes or goes.
class TimeZone {
 public:
  explicit TimeZone(const std::string& name) {
    const char* const before = std::getenv("TZ");  // NOLINT(concurrency-mt-unsafe)
    if (before) before_ = before;
    use(name);
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
  ~TimeZone() {
    if (before_) {
      use(*before_);
    } else {
      ::unsetenv("TZ");  // NOLINT(concurrency-mt-unsafe)
      ::tzset();
    }
  }

  static void use(const std::string& name) {
    ::setenv("TZ", name.c_str(), 1);  // NOLINT(concurrency-mt-unsafe)
    ::tzset();
  }

 private:
  std::optional<std::string> before_;
};

}  // namespace epg::test
