// server_bench RECORDS: the engine over a server's database, beside the server's own library. Run by
// tests/server/with-server.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "benchmarks/server_measures.h"

namespace {

double medianOf(std::vector<double> seconds) {
  std::sort(seconds.begin(), seconds.end());
  return seconds[seconds.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  const char* port = std::getenv("QUIVANE_TEST_SERVER");
  const int count = argc == 2 ? std::atoi(argv[1]) : 0;
  if (port == nullptr || count < 1000) {
    std::fprintf(stderr, "usage: tests/server/with-server server_bench RECORDS\n");
    return 2;
  }
  const std::filesystem::path link =
      std::filesystem::temp_directory_path() / (std::string("bench-") + port + ".cdb");
  bool within = true;
  for (const bench::Measure& measure : bench::makeServerMeasures(port, link.string(), count)) {
    std::vector<double> engine;
    std::vector<double> bare;
    measure.engine();
    measure.bare();
    for (int round = 0; round < measure.rounds; ++round) {
      engine.push_back(measure.engine());
      bare.push_back(measure.bare());
    }
    within &= bench::report(measure, medianOf(engine), medianOf(bare), {});
  }
  std::filesystem::remove(link);
  return within ? 0 : 3;
}
