#pragma once

#include <cstdint>

#include "base/string.h"

/// Which records are to be written into another file.
struct ExportedRecords {
  String source;         ///< a statement, or the name of a table
  bool isTable = false;  ///< which of them it is
  String name;           ///< what they are called in the file, where that has a title
};

/// What an export came to.
struct ExportCounts {
  std::int64_t records = 0;
  std::int64_t changed = 0;  ///< values that will not come back as they are
  String format;             ///< "csv", "json", "jsonl", "html" or "sql"
};
