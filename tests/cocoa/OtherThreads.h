#pragma once

#include <set>
#include <string>

/// The threads of the process when this is made, to wait until no others run any more. A thread that has left the
/// system's list holds nothing: what it was given, and what it kept for itself, is let go of.
class OtherThreads {
 public:
  OtherThreads() : before_(running()) {}

  /// Runs the run loop, for what threads leave the main one to do, until they are gone; false when they do not go.
  bool areGone() const;

 private:
  /// The system's numbers of those that run. Empty where the system does not list them.
  static std::set<std::string> running();

  const std::set<std::string> before_;
};
