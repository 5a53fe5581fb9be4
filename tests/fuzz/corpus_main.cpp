// Runs a target over the files that are kept for it: corpus_main FOLDER. Fails without one.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/fuzz/fuzz_target.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    // Shows in the log which one it was.
    std::printf("%s\n", entry.path().filename().string().c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    ++count;
  }
  std::printf("%d inputs\n", count);
  return count > 0 ? 0 : 1;
}
