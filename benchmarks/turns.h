#pragma once

#include <algorithm>
#include <vector>

#include "benchmarks/measures.h"

namespace bench {

/// `seconds` is not empty.
inline double medianOf(std::vector<double> seconds) {
  std::sort(seconds.begin(), seconds.end());
  return seconds[seconds.size() / 2];
}

/// The seconds of both sides, as many of the one as of the other.
struct Turns {
  std::vector<double> engine;
  std::vector<double> bare;
};

/// Lets both sides take turns, after one of each that does not count.
inline Turns takeTurns(const Measure& measure) {
  Turns turns;
  measure.engine();
  measure.bare();
  for (int round = 0; round < measure.rounds; ++round) {
    turns.engine.push_back(measure.engine());
    turns.bare.push_back(measure.bare());
  }
  return turns;
}

}  // namespace bench
