#pragma once

#include <cstdint>

#include "base/string.h"

/// A former state of a database that was kept.
struct DatabaseCopy {
  /// Before what it was kept, as the data-access components number it.
  enum class Reason : long { change = 1, goingBack = 2, tableDeletion = 3, databaseDeletion = 4 };

  static constexpr std::int64_t kNotCounted = -1;

  String path;
  double time = 0;  ///< days since the end of 1899, universal time
  std::int64_t bytes = 0;
  std::int64_t records = kNotCounted;  ///< of all tables
  Reason reason = Reason::change;
};
