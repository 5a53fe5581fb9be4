#pragma once

#include <sqlite3.h>

namespace store {

/// Gives `connection` the collation kMomentCollation (platform/store/sql/moments.h). Returns SQLite's result
/// code.
int addMomentCollation(sqlite3* connection);

}  // namespace store
