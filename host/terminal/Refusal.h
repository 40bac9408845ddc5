#pragma once

#include <stdexcept>
#include <string>

namespace epg {

/// Thrown when something is refused or has failed. The message is complete and meant for people. Exit status 1.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Thrown when the arguments make no sense. Exit status 2.
class WrongUsage : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace epg
