#pragma once

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/find_measures.h"
#include "benchmarks/measures.h"
#include "benchmarks/order_measures.h"
#include "benchmarks/turns.h"

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

inline std::vector<Measure> allMeasures(const Arguments& arguments) {
  // First, because it changes the structure of the database.
  prepareFind(arguments.path);
  std::vector<Measure> measures = makeMeasures(arguments.path, arguments.scratchPath);
  for (Measure& measure : makeFindMeasures(arguments.path)) measures.push_back(std::move(measure));
  for (Measure& measure : makeOrderMeasures(arguments.path)) measures.push_back(std::move(measure));
  return measures;
}

/// Prints the medians, and from where to where each side went, and stores the former. Returns whether it is
/// in the limit.
inline bool reportTurns(const Measure& measure, const Turns& turns, const std::string& figuresPath) {
  const bool within = report(measure, medianOf(turns.engine), medianOf(turns.bare), figuresPath);
  const double scale = measure.unitsPerSecond / measure.operations;
  const auto [least, most] = std::minmax_element(turns.engine.begin(), turns.engine.end());
  const auto [bareLeast, bareMost] = std::minmax_element(turns.bare.begin(), turns.bare.end());
  std::printf("  %30s %10.3f to %.3f %s   bare %10.3f to %.3f %s   in %d turns\n", "", *least * scale,
              *most * scale, measure.unit.c_str(), *bareLeast * scale, *bareMost * scale,
              measure.unit.c_str(), static_cast<int>(turns.engine.size()));
  return within;
}

inline bool reportMatches(const std::string& path) {
  const double seconds = secondsOfMatch(path);
  const bool within = seconds <= kMostSecondsOfMatch;
  std::printf("  %-30s %10.3f ms   (at most %.0f)%s\n", "find the next of many", 1e3 * seconds,
              1e3 * kMostSecondsOfMatch, within ? "" : "   OVER THE LIMIT");
  return within;
}

inline bool reportMemory(const std::string& path) {
  const double bytes = bytesPerRecord(path);
  const bool within = bytes <= kMostBytesPerRecord;
  std::printf("  %-30s %10.3f bytes a record   (at most %.0f)%s\n", "memory of a recordset", bytes,
              kMostBytesPerRecord, within ? "" : "   OVER THE LIMIT");
  return within;
}

}  // namespace bench
