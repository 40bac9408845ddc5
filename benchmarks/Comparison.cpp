#include "benchmarks/Comparison.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <ostream>

namespace epg::benchmarks {

namespace {

const char* const separator = " | ";
constexpr int repetitions = 5;
constexpr double frameInMilliseconds = 16;

std::string milliseconds(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.2f ms", value);
  return text;
}

class RoundTimes {
 public:
  void add(double taken) {
    ++rounds_;
    sum_ += taken;
    slowest_ = std::max(slowest_, taken);
    if (taken >= frameInMilliseconds) ++over_;
  }

  std::size_t over() const { return over_; }
  std::string text() const {
    const double mean = rounds_ == 0 ? 0 : sum_ / static_cast<double>(rounds_);
    return "mean " + milliseconds(mean) + ", slowest " + milliseconds(slowest_);
  }
  std::string overText() const { return std::to_string(over_) + " of " + std::to_string(rounds_) + " rounds over it"; }

 private:
  std::size_t rounds_ = 0;
  double sum_ = 0;
  double slowest_ = 0;
  std::size_t over_ = 0;
};

/// A round that is over the frame only by the clock on the wall had to wait for other programs.
std::string verdict(const RoundTimes& wall, const RoundTimes& processor) {
  if (wall.over() == 0) return "every round under it";
  if (processor.over() == 0) return "every round under it, were the machine not busy with something else";
  return "OVER, " + processor.overText();
}

}  // namespace

void measure(const std::string& subject, const std::string& who, Clock clock, std::function<Work()> prepare) {
  auto* const registered =
      ::benchmark::RegisterBenchmark((subject + separator + who).c_str(), [prepare](::benchmark::State& state) {
        const Work work = prepare();
        std::size_t round = 0;
        for (auto iteration : state) work(round++);
      });
  registered->Unit(::benchmark::kMillisecond)->Repetitions(repetitions)->ReportAggregatesOnly(true);
  if (clock == Clock::Wall) registered->UseRealTime();
}

void measureAgainstFrame(const std::string& subject, std::function<Work()> prepare) {
  auto* const registered = ::benchmark::RegisterBenchmark(subject.c_str(), [prepare](::benchmark::State& state) {
    const Work work = prepare();
    std::size_t round = 0;
    RoundTimes wall;
    RoundTimes processor;
    for (auto iteration : state) {
      const auto start = std::chrono::steady_clock::now();
      const std::clock_t processorStart = std::clock();
      work(round++);
      const std::clock_t processorEnd = std::clock();
      const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
      wall.add(taken.count());
      processor.add(static_cast<double>(processorEnd - processorStart) * 1000 / CLOCKS_PER_SEC);
      state.SetIterationTime(taken.count() / 1000);
    }
    state.SetLabel(wall.text() + "; of the processor " + processor.text() + "; frame " +
                   milliseconds(frameInMilliseconds) + ": " + verdict(wall, processor));
  });
  registered->Unit(::benchmark::kMillisecond)->UseManualTime()->MinTime(2);
}

void ComparisonReporter::ReportRuns(const std::vector<Run>& reports) {
  ConsoleReporter::ReportRuns(reports);
  for (const Run& run : reports) {
    if (run.aggregate_name != "median") continue;
    const std::string name = run.run_name.function_name;
    const std::size_t place = name.find(separator);
    if (place == std::string::npos) continue;
    const std::string subject = name.substr(0, place);
    if (times_.find(subject) == times_.end()) subjects_.push_back(subject);
    const bool wall = run.run_name.time_type == "real_time";
    times_[subject].emplace_back(name.substr(place + std::string(separator).size()),
                                 wall ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime());
  }
}

void ComparisonReporter::Finalize() {
  std::ostream& out = GetOutputStream();
  for (const std::string& subject : subjects_) {
    const Times& times = times_[subject];
    out << "\n" << subject << ": " << milliseconds(times.front().second) << " (median of " << repetitions << ")\n";
    for (std::size_t i = 1; i < times.size(); ++i) {
      char ratio[40];
      std::snprintf(ratio, sizeof ratio, "%.2f", times.front().second / times[i].second);
      out << "  " << ratio << " times " << times[i].first << " (" << milliseconds(times[i].second) << ")\n";
    }
  }
  out.flush();
}

}  // namespace epg::benchmarks
