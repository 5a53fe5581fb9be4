#pragma once

#include <chrono>
#include <string>

namespace store {

/// How far a walk over a database goes.
struct WalkLimits {
  bool writes = false;                    ///< changes, deletes and adds a record of each table, too
  int mostTables = 20;                    ///< of those that the file says it has
  int mostRecords = 200;                  ///< that are read of each
  std::chrono::milliseconds patience{0};  ///< with each opening, before it is stopped; 0: endless
};

/// Opens the file at `path` (UTF-8) and does with it what a user can do: looks at the catalogue, opens each
/// table plain, sorted and counted, reads its records, moves by bookmark. Whatever fails is passed over.
/// Returns how many of all these operations succeeded, 0 when the file was refused. The file itself may be
/// anything.
int walkDatabase(const std::string& path, const WalkLimits& limits);

}  // namespace store
