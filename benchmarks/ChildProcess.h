#pragma once

#include <string>
#include <vector>

namespace epg::benchmarks {

/// What a program that ran to its end used and printed.
struct ChildRun {
  double processorSeconds = 0;  ///< Of all its threads, and of the system for it.
  double wallSeconds = 0;
  std::string output;
};

/// Runs the program, found by its path, and waits for it. Throws when it does not end with status 0.
ChildRun runProgram(const std::vector<std::string>& commandLine);

/// The path of the running program.
std::string ownProgram();

}  // namespace epg::benchmarks
