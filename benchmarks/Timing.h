#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace epg::benchmarks {

/// Seconds of the processor that all threads of this process have used so far. What other programs do on the machine
/// does not count, so the comparisons are made with it.
double processorSeconds();
/// The same of the calling thread alone.
double threadSeconds();
/// Seconds of the clock on the wall since some moment. For work that waits: for the disk, or for its turn.
double wallSeconds();

using Clock = double (*)();

/// Counts from when it is made.
class Stopwatch {
 public:
  explicit Stopwatch(Clock clock) : clock_(clock), start_(clock()) {}

  double seconds() const { return clock_() - start_; }

 private:
  Clock clock_;
  double start_;
};

/// Does the work once and answers the seconds that it took, without what it took to prepare and to tidy up.
using Round = std::function<double()>;

/// The times of several contenders for the same work.
class Rounds {
 public:
  explicit Rounds(std::vector<std::vector<double>> seconds) : seconds_(std::move(seconds)) {}

  /// The contender's median.
  double seconds(std::size_t contender) const;
  /// How many times as long as the other one the contender took: the median over the rounds, each of which compares two
  /// times taken one after the other. A machine that is slower for a while is so for both.
  double ratio(std::size_t contender, std::size_t other) const;

 private:
  std::vector<std::vector<double>> seconds_;  ///< For each contender, one for each round.
};

/// Every contender does its work once uncounted, then they take turns. A single round is all there is: nothing is done
/// before it.
Rounds inTurns(std::size_t rounds, const std::vector<Round>& contenders);

double median(std::vector<double> values);

/// The times of many single calls that a thread of the host makes.
class Calls {
 public:
  /// Makes the call and keeps its times.
  void measure(const std::function<void()>& call);

  std::size_t count() const { return wall_.size(); }
  /// All but one call of a hundred (of fewer, all but one) are back after these seconds of the clock on the wall. The
  /// thread of a call may have to wait for a processor that other threads use, which says nothing about the call.
  double wallOfNearlyAll() const;
  /// The seconds of the processor that the costliest call took.
  double worst() const;
  /// "507 of 512 in 0.011 ms, worst CPU 0.020 ms"
  std::string text() const;

 private:
  std::size_t nearlyAll() const;

  std::vector<double> wall_;
  std::vector<double> thread_;
};

/// "0.52 ms"
std::string millisecondsText(double seconds);

}  // namespace epg::benchmarks
