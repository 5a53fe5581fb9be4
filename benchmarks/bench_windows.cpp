#include <algorithm>
#include <vector>

#include "benchmarks/bench_main.h"

namespace {

double medianOf(std::vector<double> seconds) {
  std::sort(seconds.begin(), seconds.end());
  return seconds[seconds.size() / 2];
}

/// The ratios of the turns, from the least to the greatest.
void reportSpread(const std::vector<double>& engine, const std::vector<double>& bare) {
  std::vector<double> ratios;
  for (std::size_t turn = 0; turn < engine.size(); ++turn) ratios.push_back(engine[turn] / bare[turn]);
  const auto [least, most] = std::minmax_element(ratios.begin(), ratios.end());
  std::printf("  %30s %d turns, ratios from %.2f to %.2f, median %.2f\n", "", static_cast<int>(ratios.size()),
              *least, *most, medianOf(ratios));
}

}  // namespace

int main(int argc, char** argv) {
  bench::Arguments arguments;
  if (!bench::readArguments(argc, argv, &arguments)) return 2;
  bool within = true;
  for (const bench::Measure& measure : bench::allMeasures(arguments)) {
    std::vector<double> engine;
    std::vector<double> bare;
    measure.engine();
    measure.bare();
    for (int round = 0; round < measure.rounds; ++round) {
      engine.push_back(measure.engine());
      bare.push_back(measure.bare());
    }
    within &= bench::report(measure, medianOf(engine), medianOf(bare), arguments.figuresPath);
    reportSpread(engine, bare);
  }
  within &= bench::reportMemory(arguments.path);
  within &= bench::reportMatches(arguments.path);
  return within ? 0 : 3;
}
