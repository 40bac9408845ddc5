#include "benchmarks/Table.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace epg::benchmarks {

namespace {

const char* verdict(bool met) { return met ? "met" : "NOT MET"; }

std::string number(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.2f", value);
  return text;
}

std::string peerText(const std::string& peer, const Rounds& rounds, std::size_t other) {
  return peer + ", " + millisecondsText(rounds.seconds(other));
}

}  // namespace

Table::Table() {
  const char* const path = std::getenv("EPG_BENCHMARK_ROWS");  // NOLINT(concurrency-mt-unsafe): nobody here sets it
  if (path) path_ = path;
}

void Table::atMost(const std::string& target, const std::string& ours, const std::string& peer, double ratio,
                   double limit) {
  row(target, ours, peer, number(ratio), "<= " + number(limit), verdict(ratio <= limit));
}

void Table::atMost(const std::string& target, const Rounds& rounds, std::size_t other, const std::string& peer,
                   double limit) {
  atMost(target, millisecondsText(rounds.seconds(0)), peerText(peer, rounds, other), rounds.ratio(0, other), limit);
}

void Table::atLeastAsFast(const std::string& target, const Rounds& rounds, std::size_t other, const std::string& peer,
                          double factor) {
  const double ratio = rounds.ratio(other, 0);
  row(target, millisecondsText(rounds.seconds(0)), peerText(peer, rounds, other), number(ratio), ">= " + number(factor),
      verdict(ratio >= factor));
}

void Table::figure(const std::string& target, double ours, double limit, const std::string& unit) {
  row(target, number(ours) + " " + unit, "", "", "<= " + number(limit) + " " + unit, verdict(ours <= limit));
}

void Table::calls(const std::string& target, const Calls& calls, double limit) {
  row(target, calls.text(), "", "", "<= " + millisecondsText(limit),
      verdict(calls.wallOfNearlyAll() <= limit && calls.worst() <= limit));
}

void Table::information(const std::string& target, const Rounds& rounds, std::size_t other, const std::string& peer) {
  information(target, rounds, 0, other, peer);
}

void Table::information(const std::string& target, const Rounds& rounds, std::size_t one, std::size_t other,
                        const std::string& peer) {
  row(target, millisecondsText(rounds.seconds(one)), peerText(peer, rounds, other), number(rounds.ratio(one, other)),
      "", "");
}

void Table::row(const std::string& target, const std::string& ours, const std::string& peer, const std::string& ratio,
                const std::string& wanted, const std::string& verdict) {
  const std::string line = target + "\t" + ours + "\t" + peer + "\t" + ratio + "\t" + wanted + "\t" + verdict + "\n";
  if (path_.empty()) {
    std::cout << line << std::flush;
    return;
  }
  std::ofstream file(path_, std::ios::app);
  file << line;
  if (!file.flush()) throw std::runtime_error("cannot write " + path_);
}

}  // namespace epg::benchmarks
