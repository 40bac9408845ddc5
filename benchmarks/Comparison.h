#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace epg::benchmarks {

/// Work that is measured: called again and again with the number of the round.
using Work = std::function<void(std::size_t round)>;

enum class Clock {
  Processor,  ///< For work that only computes: other programs on the machine do not count.
  Wall,       ///< For work that waits for the disk.
};

/// Measures the work as `subject` done by `who`. Of a subject that several do, the first is this project and the
/// others are what it is compared with; the ratios are printed at the end. `prepare` is called once, when the turn has
/// come, and gives the work.
void measure(const std::string& subject, const std::string& who, Clock clock, std::function<Work()> prepare);

/// Measures the work and says whether every single round of it ended within one frame of a screen.
void measureAgainstFrame(const std::string& subject, std::function<Work()> prepare);

/// The usual table, and below it how this project compares with the others.
class ComparisonReporter : public ::benchmark::ConsoleReporter {
 public:
  ComparisonReporter() : ConsoleReporter(OO_None) {}

  void ReportRuns(const std::vector<Run>& reports) override;
  void Finalize() override;

 private:
  using Times = std::vector<std::pair<std::string, double>>;  ///< Who, and the median in milliseconds.

  std::vector<std::string> subjects_;
  std::map<std::string, Times> times_;
};

}  // namespace epg::benchmarks
