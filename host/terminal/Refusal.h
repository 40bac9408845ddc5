#pragma once

#include <stdexcept>
#include <string>

namespace epg {

/// What was asked for is refused or has failed; the message is for people and complete. Exit status 1.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The command line itself makes no sense. Exit status 2.
class WrongUsage : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace epg
