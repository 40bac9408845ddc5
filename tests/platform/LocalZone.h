#pragma once

#include <stdlib.h>
#include <time.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace epg::test {

/// The local time zone, until this goes out of sight. Only while no other thread converts times.
class LocalZone {
 public:
  explicit LocalZone(const std::string& name) {
    if (const char* const before = std::getenv("TZ")) before_ = before;
    change(name);
  }
  LocalZone(const LocalZone&) = delete;
  LocalZone& operator=(const LocalZone&) = delete;
  ~LocalZone() {
    if (before_) {
      change(*before_);
    } else {
      ::unsetenv("TZ");
      ::tzset();
    }
  }

  /// Only the environment: whoever reads the zone must notice by itself.
  void changeTo(const std::string& name) { ::setenv("TZ", name.c_str(), 1); }

 private:
  static void change(const std::string& name) {
    ::setenv("TZ", name.c_str(), 1);
    ::tzset();
  }

  std::optional<std::string> before_;
};

}  // namespace epg::test
