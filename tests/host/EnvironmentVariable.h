#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace epg::test {

/// Sets an environment variable, or takes it away, for as long as this lives. No other thread may look meanwhile.
class EnvironmentVariable {
 public:
  EnvironmentVariable(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
    const char* const before = std::getenv(name_.c_str());  // NOLINT(concurrency-mt-unsafe)
    if (before) before_ = before;
    set(value);
  }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() { set(before_); }

 private:
  void set(const std::optional<std::string>& value) const {
    if (value) {
      ::setenv(name_.c_str(), value->c_str(), 1);  // NOLINT(concurrency-mt-unsafe)
    } else {
      ::unsetenv(name_.c_str());  // NOLINT(concurrency-mt-unsafe)
    }
  }

  const std::string name_;
  std::optional<std::string> before_;
};

}  // namespace epg::test
