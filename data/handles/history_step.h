#pragma once

#include <cstdint>

#include "base/string.h"

/// Whether a change is taken back or done again.
enum class HistoryWay : long { back = 0, again = 1 };

/// One change of records that can be taken back or done again.
struct HistoryStep {
  /// As the data-access components number them.
  enum class Kind : long { none = 0, added = 1, changed = 2, deleted = 3, imported = 4, statement = 5 };

  Kind kind = Kind::none;
  String table;   ///< empty for a statement that changed several
  String record;  ///< what people know the one record by; may be empty
  std::int64_t records = 0;
};
