#include <algorithm>
#include <chrono>
#include <vector>

#include "benchmarks/bench_main.h"

namespace {

// The engine and the bare API take turns, so that a slow moment of the machine meets both.
constexpr int kRounds = 9;

double secondsOf(const std::function<void()>& work) {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::duration<double> kLeast{0.2};
  const Clock::time_point start = Clock::now();
  int calls = 0;
  std::chrono::duration<double> spent{};
  do {
    work();
    ++calls;
    spent = Clock::now() - start;
  } while (spent < kLeast);
  return spent.count() / calls;
}

double medianOf(std::vector<double> seconds) {
  std::nth_element(seconds.begin(), seconds.begin() + kRounds / 2, seconds.end());
  return seconds[kRounds / 2];
}

}  // namespace

int main(int argc, char** argv) {
  bench::Arguments arguments;
  if (!bench::readArguments(argc, argv, &arguments)) return 2;
  bool within = true;
  for (const bench::Measure& measure : bench::makeMeasures(arguments.path, arguments.scratchPath)) {
    std::vector<double> engine;
    std::vector<double> bare;
    measure.engine();
    measure.bare();
    for (int round = 0; round < kRounds; ++round) {
      engine.push_back(secondsOf(measure.engine));
      bare.push_back(secondsOf(measure.bare));
    }
    within &= bench::report(measure, medianOf(engine), medianOf(bare), arguments.figuresPath);
  }
  within &= bench::reportMemory(arguments.path);
  return within ? 0 : 3;
}
