#include <algorithm>
#include <vector>

#include "benchmarks/bench_main.h"
#include "benchmarks/turns.h"

namespace {

/// The ratios of the turns, from the least to the greatest.
void reportRatios(const bench::Turns& turns) {
  std::vector<double> ratios;
  for (std::size_t turn = 0; turn < turns.engine.size(); ++turn)
    ratios.push_back(turns.engine[turn] / turns.bare[turn]);
  const auto [least, most] = std::minmax_element(ratios.begin(), ratios.end());
  std::printf("  %30s ratios of the turns from %.2f to %.2f, median %.2f\n", "", *least, *most,
              bench::medianOf(ratios));
}

}  // namespace

int main(int argc, char** argv) {
  bench::Arguments arguments;
  if (!bench::readArguments(argc, argv, &arguments)) return 2;
  bool within = true;
  for (const bench::Measure& measure : bench::allMeasures(arguments)) {
    const bench::Turns turns = bench::takeTurns(measure);
    within &= bench::reportTurns(measure, turns, arguments.figuresPath);
    reportRatios(turns);
  }
  within &= bench::reportMemory(arguments.path);
  within &= bench::reportMatches(arguments.path);
  return within ? 0 : 3;
}
