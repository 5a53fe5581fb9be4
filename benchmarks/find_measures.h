#pragma once

#include <string>
#include <vector>

#include "benchmarks/measures.h"

namespace bench {

/// The search for a text beside a statement with LIKE or instr() over the same fields, on the database in
/// `path`, which prepareFind() has prepared. Ends the program with a message when it can't be used.
std::vector<Measure> makeFindMeasures(const std::string& path);

/// Adds to a database of tools/make-data a view of its table, and the same records in a table without row
/// ids.
void prepareFind(const std::string& path);

/// Seconds from one match to the next, where every record is one.
double secondsOfMatch(const std::string& path);
constexpr double kMostSecondsOfMatch = 0.005;

}  // namespace bench
