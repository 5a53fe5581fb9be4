#include <array>
#include <benchmark/benchmark.h>
#include <map>
#include <string>
#include <vector>

#include "benchmarks/bench_main.h"

namespace {

/// Keeps the times of each benchmark's repetitions instead of printing them.
class TurnsReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      seconds_[run.run_name.function_name].push_back(run.real_accumulated_time /
                                                     static_cast<double>(run.iterations));
    }
  }
  const std::vector<double>& secondsOf(const std::string& name) const { return seconds_.at(name); }

 private:
  std::map<std::string, std::vector<double>> seconds_;
};

void add(const std::string& name, const std::function<double()>& measure, int rounds) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [measure](benchmark::State& state) {
                                 for (auto _ : state) state.SetIterationTime(measure());
                               })
      ->Repetitions(rounds)
      ->Iterations(1)
      ->UseManualTime();
}

}  // namespace

int main(int argc, char** argv) {
  bench::Arguments arguments;
  if (!bench::readArguments(argc, argv, &arguments)) return 2;
  const std::vector<bench::Measure> measures = bench::allMeasures(arguments);
  for (const bench::Measure& measure : measures) {
    add(measure.name + "/engine", measure.engine, measure.rounds);
    add(measure.name + "/bare", measure.bare, measure.rounds);
  }
  std::string interleaving = "--benchmark_enable_random_interleaving=true";
  std::array<char*, 2> options{argv[0], interleaving.data()};
  int optionCount = static_cast<int>(options.size());
  benchmark::Initialize(&optionCount, options.data());
  TurnsReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  bool within = true;
  for (const bench::Measure& measure : measures) {
    within &= bench::reportTurns(
        measure, {reporter.secondsOf(measure.name + "/engine"), reporter.secondsOf(measure.name + "/bare")},
        arguments.figuresPath);
  }
  within &= bench::reportMemory(arguments.path);
  within &= bench::reportMatches(arguments.path);
  return within ? 0 : 3;
}
