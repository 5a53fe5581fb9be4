// The bytes are a database file, which somebody opens, walks over and changes.
#include "tests/fuzz/fuzz_target.h"
#include "tests/store/hostile/database_walk.h"

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t length) {
  using namespace std::chrono_literals;
  static const fuzz::TempFile file;
  const std::string_view bytes = fuzz::textOf(data, length);
  file.write(bytes);
  store::WalkLimits limits{.writes = false, .mostTables = 6, .mostRecords = 30, .patience = 200ms};
  store::walkDatabase(file.path(), limits);
  fuzz::require(file.read() == bytes, "who only looks writes nothing");
  limits.writes = true;
  store::walkDatabase(file.path(), limits);
  return 0;
}
