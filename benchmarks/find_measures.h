#pragma once

#include <string>
#include <vector>

#include "benchmarks/measures.h"

namespace bench {

/// The search for a text beside a statement with LIKE or instr() over the same fields, on the database in
/// `path`, which prepareFind() has prepared. Ends the program with a message when it can't be used.
std::vector<Measure> makeFindMeasures(const std::string& path);

constexpr const char* kKeyedTable = "Bench keyed";
constexpr const char* kSortedQuery = "Bench sorted";

/// Adds to a database of tools/make-data a view of its table, the same records in the table kKeyedTable,
/// which has no row ids, and the user's query kSortedQuery of the records in an order of their own.
void prepareFind(const std::string& path);

/// A search for which there is a bare statement: in all fields of the table, for a text that no record holds.
struct BareSearch {
  std::string name;
  std::string text;
  bool matchCase;
  std::string statement;
  double limit;  ///< the program may take this many times the statement's time
};
std::vector<BareSearch> bareSearches();

/// Every record holds it.
constexpr const char* kTextOfEveryRecord = "plot";
/// So many matches are gone to, one after the other.
constexpr int kMatches = 1000;

/// Seconds from one match to the next, where every record is one.
double secondsOfMatch(const std::string& path);
constexpr double kMostSecondsOfMatch = 0.005;

}  // namespace bench
