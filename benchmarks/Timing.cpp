#include "benchmarks/Timing.h"

#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <cstdio>

namespace epg::benchmarks {

namespace {

double secondsOf(clockid_t clock) {
  struct timespec now {};
  ::clock_gettime(clock, &now);
  constexpr double nanosecond = 1e-9;
  return static_cast<double>(now.tv_sec) + nanosecond * static_cast<double>(now.tv_nsec);
}

}  // namespace

double processorSeconds() { return secondsOf(CLOCK_PROCESS_CPUTIME_ID); }

double threadSeconds() { return secondsOf(CLOCK_THREAD_CPUTIME_ID); }

double wallSeconds() { return secondsOf(CLOCK_MONOTONIC); }

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

double Rounds::seconds(std::size_t contender) const { return median(seconds_.at(contender)); }

double Rounds::ratio(std::size_t contender, std::size_t other) const {
  std::vector<double> ratios;
  for (std::size_t round = 0; round < seconds_.at(contender).size(); ++round) {
    ratios.push_back(seconds_[contender][round] / seconds_.at(other)[round]);
  }
  return median(std::move(ratios));
}

namespace {

/// Small pieces that one contender has freed make the next one's allocations slow, and memory that is still at hand
/// makes them fast. Everybody starts without either.
double tidyRound(const Round& contender) {
  ::malloc_trim(0);
  return contender();
}

}  // namespace

Rounds inTurns(std::size_t rounds, const std::vector<Round>& contenders) {
  if (rounds > 1) {
    for (const Round& contender : contenders) contender();
  }
  std::vector<std::vector<double>> seconds(contenders.size());
  for (std::size_t round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < contenders.size(); ++i) seconds[i].push_back(tidyRound(contenders[i]));
  }
  return Rounds(std::move(seconds));
}

void Calls::measure(const std::function<void()>& call) {
  const Stopwatch wall(wallSeconds);
  const Stopwatch thread(threadSeconds);
  call();
  thread_.push_back(thread.seconds());
  wall_.push_back(wall.seconds());
}

std::size_t Calls::nearlyAll() const { return count() - std::max(count() / 100, std::size_t{1}); }

double Calls::wallOfNearlyAll() const {
  std::vector<double> sorted(wall_);
  std::sort(sorted.begin(), sorted.end());
  return sorted.at(nearlyAll() - 1);
}

double Calls::worst() const { return *std::max_element(thread_.begin(), thread_.end()); }

std::string Calls::text() const {
  return std::to_string(nearlyAll()) + " of " + std::to_string(count()) + " in " + millisecondsText(wallOfNearlyAll()) +
         ", worst CPU " + millisecondsText(worst());
}

std::string millisecondsText(double seconds) {
  const double milliseconds = seconds * 1000;
  char text[40];
  std::snprintf(text, sizeof text, milliseconds < 10 ? "%.3f ms" : "%.1f ms", milliseconds);
  return text;
}

}  // namespace epg::benchmarks
