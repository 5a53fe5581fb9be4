#include <algorithm>
#include <vector>

#include "benchmarks/bench_main.h"

namespace {

double medianOf(std::vector<double> seconds) {
  std::nth_element(seconds.begin(), seconds.begin() + bench::kRounds / 2, seconds.end());
  return seconds[bench::kRounds / 2];
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
    for (int round = 0; round < bench::kRounds; ++round) {
      engine.push_back(measure.engine());
      bare.push_back(measure.bare());
    }
    within &= bench::report(measure, medianOf(engine), medianOf(bare), arguments.figuresPath);
  }
  within &= bench::reportMemory(arguments.path);
  return within ? 0 : 3;
}
