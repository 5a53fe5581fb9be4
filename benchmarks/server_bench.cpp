// server_bench RECORDS: the engine over a server's database, beside the server's own library. Run by
// tests/server/with-server.
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "benchmarks/server_measures.h"
#include "benchmarks/turns.h"

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
    const bench::Turns turns = bench::takeTurns(measure);
    within &= bench::report(measure, bench::medianOf(turns.engine), bench::medianOf(turns.bare), {});
  }
  std::filesystem::remove(link);
  return within ? 0 : 3;
}
