#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace bench {

/// One measurement: the engine's way of doing something beside the bare SQLite C API's, on the same file.
/// Each function does it once and returns the seconds that it took.
struct Measure {
  std::string name;
  std::string unit;       ///< of the figure that is printed
  double unitsPerSecond;  ///< what a second is in that unit
  int operations;         ///< operations in one call of either function
  double limit;           ///< the engine may take this many times the bare figure
  std::function<double()> engine;
  std::function<double()> bare;
  int rounds;  ///< how often each side is measured; odd
};

/// The time that `work` takes.
double secondsOf(const std::function<void()>& work);

/// The measurements on a copy of the database in `path`, as tools/make-data makes it; the copy, at
/// `scratchPath`, takes the writing. Ends the program with a message when the files can't be used.
std::vector<Measure> makeMeasures(const std::string& path, const std::string& scratchPath);

/// How often each side is measured, in turns, so that a slow moment of the machine meets both; the median
/// counts. What takes seconds is measured less often.
constexpr int kRounds = 15;
constexpr int kLongRounds = 9;

/// Bytes that a recordset of all records in an order of their own takes, for each record, over one without
/// records. (In the order of their row ids, which follow one another here, it takes next to nothing.)
double bytesPerRecord(const std::string& path);
constexpr double kMostBytesPerRecord = 12;

/// Prints "name: engine figure, bare figure, ratio, limit" for people, and stores the same for scripts,
/// tab-separated, behind the others in `figuresPath` (empty: nowhere). Returns whether it is in the limit.
bool report(const Measure& measure, double engineSeconds, double bareSeconds, const std::string& figuresPath);

}  // namespace bench
