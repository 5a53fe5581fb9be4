#pragma once

#include <cstdio>
#include <string>

#include "benchmarks/measures.h"

namespace bench {

/// What a benchmark program is started with: DATABASE SCRATCH-DATABASE [FIGURES-FILE].
struct Arguments {
  std::string path;
  std::string scratchPath;
  std::string figuresPath;
};

inline bool readArguments(int argc, char** argv, Arguments* arguments) {
  if (argc < 3 || argc > 4) {
    std::fprintf(stderr, "usage: engine_bench DATABASE SCRATCH-DATABASE [FIGURES-FILE]\n");
    return false;
  }
  *arguments = {argv[1], argv[2], argc > 3 ? argv[3] : ""};
  return true;
}

inline bool reportMemory(const std::string& path) {
  const double bytes = bytesPerRecord(path);
  const bool within = bytes <= kMostBytesPerRecord;
  std::printf("  %-30s %10.3f bytes a record   (at most %.0f)%s\n", "memory of a recordset", bytes,
              kMostBytesPerRecord, within ? "" : "   OVER THE LIMIT");
  return within;
}

}  // namespace bench
