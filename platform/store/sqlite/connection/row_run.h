#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <sqlite3.h>
#include <vector>

#include "platform/store/rows/row_scan.h"
#include "platform/store/rows/status.h"

namespace store {

/// One run of a statement that lets a RowTest decide which rows it yields. Where the statement says
/// `quivane_wanted(run, number of the first value, value, ...)`, the first argument is bound as a pointer to
/// a RowRun of the type kPointer. A row is yielded if the test wants one of its values, and the run may stop
/// before any row: then that row is yielded unlooked-at, and `isStopped` is set.
struct RowRun {
  static constexpr char kPointer[] = "quivane row test";

  /// Lets statements on `connection` call the function. To be called once for each.
  static Status addFunction(sqlite3* connection);

  /// Which kinds of values of which columns `test` ignores, as a run takes it.
  static std::vector<char> ignoredBy(const RowTest& test);

  /// `test` and `ignored` outlive the run, which stops at `until` or before it looks at more than `mostRows`
  /// rows, `rowsBefore` of which were looked at before.
  RowRun(RowTest& test, const std::vector<char>& ignored, RowScan::Clock::time_point until,
         std::uint64_t mostRows, std::uint64_t rowsBefore = 0);

  std::uint64_t rowCount;
  bool isStopped = false;                          ///< before the row that the statement yields next
  const std::atomic<bool>* isAbandoned = nullptr;  ///< set by another thread to stop the run soon

 private:
  static void callFunction(sqlite3_context* context, int count, sqlite3_value** values);
  /// Called for each row: whether the run is to stop before it.
  bool stopsBeforeRow();
  bool isWanted(std::size_t number, sqlite3_value* value);

  RowTest& test_;
  const std::vector<char>& ignored_;
  RowScan::Clock::time_point until_;
  std::uint64_t mostRows_;
  unsigned rowsToLook_;
  std::size_t bytesToLook_;
};

}  // namespace store
