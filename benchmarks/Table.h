#pragma once

#include <string>

#include "benchmarks/Timing.h"

namespace epg::benchmarks {

/// Rows of the table that ./bench shows, appended to a file: target, ours, peer, ratio, wanted and verdict, with tabs
/// in between.
class Table {
 public:
  /// Appends to the file that the environment variable EPG_BENCHMARK_ROWS names; without it, prints.
  Table();

  /// Ours is to take at most `limit` times as much as the peer.
  void atMost(const std::string& target, const std::string& ours, const std::string& peer, double ratio, double limit);
  /// The same of the times of two contenders; ours is the first.
  void atMost(const std::string& target, const Rounds& rounds, std::size_t other, const std::string& peer,
              double limit);
  /// Ours is to be at least `factor` times as fast as the peer.
  void atLeastAsFast(const std::string& target, const Rounds& rounds, std::size_t other, const std::string& peer,
                     double factor);
  /// A figure that is to be at most `limit`, both in `unit`.
  void figure(const std::string& target, double ours, double limit, const std::string& unit);
  /// Calls that are to return within the seconds: nearly all by the clock on the wall, each by the processor's.
  void calls(const std::string& target, const Calls& calls, double limit);
  /// Nothing that has to be met.
  void information(const std::string& target, const Rounds& rounds, std::size_t other, const std::string& peer);
  /// Of two contenders neither of which is ours.
  void information(const std::string& target, const Rounds& rounds, std::size_t one, std::size_t other,
                   const std::string& peer);

 private:
  void row(const std::string& target, const std::string& ours, const std::string& peer, const std::string& ratio,
           const std::string& wanted, const std::string& verdict);

  std::string path_;
};

}  // namespace epg::benchmarks
